// Writes the elements of SVG as text, one a line.
#include "drawing/canvas/svg.h"

#include <cstdint>

#include "base/number_text.h"
#include "drawing/canvas/font.h"

namespace orvanel::drawing {
namespace {

// Without zeros at the end.
std::string Number(double value) {
  std::string text = FixedText(value, 2);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text == "-0" ? "0" : text;
}

// ' name="value"'
std::string Attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=\"" + value + "\"";
}

std::string BoxAttributes(const Box& box) {
  return Attribute("x", Number(box.x)) + Attribute("y", Number(box.y)) + Attribute("width", Number(box.width)) +
         Attribute("height", Number(box.height));
}

std::string ColourText(Colour colour) {
  constexpr const char* kDigits = "0123456789abcdef";
  std::string text = "#";
  for (const std::uint8_t channel : {colour.red, colour.green, colour.blue}) {
    text += kDigits[channel >> 4];
    text += kDigits[channel & 15];
  }
  return text;
}

// XML has no control characters.
std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    }
  }
  return escaped;
}

// Source: RFC 4648.
std::string Base64(const std::string& bytes) {
  constexpr const char* kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t group = 0;
    for (std::size_t k = i; k < i + 3; ++k) {
      group = group << 8 | (k < bytes.size() ? static_cast<unsigned char>(bytes[k]) : 0U);
    }
    const std::size_t digits = bytes.size() - i + 1;  // the others are '='
    for (std::size_t k = 0; k < 4; ++k) text += k < digits ? kDigits[group >> (18 - 6 * k) & 63] : '=';
  }
  return text;
}

}  // namespace

Svg::Svg(double width, double height, double scale)
    : text_(
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
          "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\"" +
          Attribute("version", "1.1") + Attribute("width", Number(width * scale)) +
          Attribute("height", Number(height * scale)) +
          Attribute("viewBox", "0 0 " + Number(width) + " " + Number(height)) +
          Attribute("font-family", "'DejaVu Sans', Verdana, sans-serif") + ">\n") {
  Fill({0.0, 0.0, width, height}, kPaper);
}

void Svg::Fill(const Box& box, Colour colour) {
  text_ += "<rect" + BoxAttributes(box) + Attribute("fill", ColourText(colour)) + "/>\n";
}

void Svg::Outline(const Box& box, double lineWidth, Colour colour) {
  const double half = lineWidth / 2.0;
  text_ += "<rect" + BoxAttributes({box.x - half, box.y - half, box.width + lineWidth, box.height + lineWidth}) +
           Attribute("fill", "none") + Attribute("stroke", ColourText(colour)) +
           Attribute("stroke-width", Number(lineWidth)) + "/>\n";
}

void Svg::Line(const std::vector<Point>& points, double lineWidth, Colour colour) {
  if (points.size() < 2) return;
  std::string places;
  for (const Point& point : points) {
    if (!places.empty()) places += ' ';
    places += Number(point.x) + "," + Number(point.y);
  }
  text_ += "<polyline" + Attribute("points", places) + Attribute("fill", "none") +
           Attribute("stroke", ColourText(colour)) + Attribute("stroke-width", Number(lineWidth)) +
           Attribute("stroke-linecap", "round") + Attribute("stroke-linejoin", "round") + "/>\n";
}

void Svg::Paste(const Box& box, const ColourPicture& picture) {
  text_ += "<image" + BoxAttributes(box) + Attribute("preserveAspectRatio", "none") +
           Attribute("style", "image-rendering:pixelated") +
           Attribute("xlink:href", "data:image/png;base64," + Base64(EncodePng(picture))) + "/>\n";
}

void Svg::Text(Point baseline, const std::string& text, const TextStyle& style) {
  constexpr const char* kAnchors[] = {"start", "middle", "end"};
  if (text.empty()) return;
  const std::string x = Number(baseline.x), y = Number(baseline.y);
  text_ += "<text" + Attribute("x", x) + Attribute("y", y) + Attribute("font-size", Number(style.size));
  if (style.bold) text_ += Attribute("font-weight", "bold");
  if (style.align != Align::kLeft) text_ += Attribute("text-anchor", kAnchors[static_cast<std::size_t>(style.align)]);
  if (style.upwards) text_ += Attribute("transform", "rotate(-90 " + x + " " + y + ")");
  text_ += Attribute("fill", ColourText(style.colour)) + Attribute("textLength", Number(TextWidth(text, style))) +
           Attribute("lengthAdjust", "spacingAndGlyphs") + ">" + Escaped(text) + "</text>\n";
}

double Svg::TextWidth(const std::string& text, const TextStyle& style) const {
  return TextLength(text, style.size, style.bold);
}

}  // namespace orvanel::drawing
