// Draws in software: computes how much of each pixel a shape covers, then blends.
#include "drawing/canvas/canvas.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "drawing/canvas/font.h"
#include "targets/resampling.h"

namespace orvanel::drawing {
namespace {

int Pixel(double position) { return static_cast<int>(std::lround(position)); }

double DistanceToSegment(Point p, Point a, Point b) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  const double length2 = dx * dx + dy * dy;
  const double t = length2 > 0.0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / length2, 0.0, 1.0) : 0.0;
  return Distance({p.x - t * dx, p.y - t * dy}, a);
}

// The part of a row or column of the original picture that one pixel of the scaled picture shows.
std::vector<Share> PixelShares(int pixel, int pixels, int sources) {
  return Shares(static_cast<double>(pixel) * sources / pixels, static_cast<double>(pixel + 1) * sources / pixels,
                sources);
}

// Rounds a value from 0 to 255.
std::uint8_t Channel(double value) { return static_cast<std::uint8_t>(value + 0.5); }

std::uint8_t Mix(std::uint8_t under, std::uint8_t over, double coverage) {
  return Channel(under + (over - under) * coverage);
}

}  // namespace

double Distance(Point a, Point b) { return std::sqrt((b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y)); }

Canvas::Canvas(double width, double height, double scale)
    : scale_(scale), picture_{Pixel(width * scale), Pixel(height * scale), {}} {
  picture_.pixels.assign(static_cast<std::size_t>(picture_.width) * static_cast<std::size_t>(picture_.height), kPaper);
}

void Canvas::Blend(int x, int y, Colour colour, double coverage) {
  if (x < 0 || y < 0 || x >= picture_.width || y >= picture_.height) return;
  Colour& pixel =
      picture_
          .pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(picture_.width) + static_cast<std::size_t>(x)];
  if (coverage == 1.0) {
    pixel = colour;
    return;
  }
  pixel = {Mix(pixel.red, colour.red, coverage), Mix(pixel.green, colour.green, coverage),
           Mix(pixel.blue, colour.blue, coverage)};
}

void Canvas::Fill(const Box& box, Colour colour) {
  const int left = Pixel(box.x * scale_), right = Pixel(box.right() * scale_);
  const int top = Pixel(box.y * scale_), bottom = Pixel(box.bottom() * scale_);
  for (int y = top; y < bottom; ++y) {
    for (int x = left; x < right; ++x) Blend(x, y, colour, 1.0);
  }
}

void Canvas::Outline(const Box& box, double lineWidth, Colour colour) {
  const double w = lineWidth;
  Fill({box.x - w, box.y - w, box.width + 2 * w, w}, colour);
  Fill({box.x - w, box.bottom(), box.width + 2 * w, w}, colour);
  Fill({box.x - w, box.y, w, box.height}, colour);
  Fill({box.right(), box.y, w, box.height}, colour);
}

void Canvas::Line(const std::vector<Point>& points, double lineWidth, Colour colour) {
  if (points.size() < 2) return;
  // The maximum coverage by any segment, so that joints are not painted twice.
  const double reach = 0.5 * lineWidth * scale_ + 0.5;
  const auto [leftmost, rightmost] =
      std::minmax_element(points.begin(), points.end(), [](Point a, Point b) { return a.x < b.x; });
  const auto [highest, lowest] =
      std::minmax_element(points.begin(), points.end(), [](Point a, Point b) { return a.y < b.y; });
  const int left = static_cast<int>(std::floor(leftmost->x * scale_ - reach));
  const int top = static_cast<int>(std::floor(highest->y * scale_ - reach));
  const int width = static_cast<int>(std::ceil(rightmost->x * scale_ + reach)) - left + 1;
  const int height = static_cast<int>(std::ceil(lowest->y * scale_ + reach)) - top + 1;
  std::vector<float> coverage(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0.0F);

  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    const Point a{points[i].x * scale_ - left, points[i].y * scale_ - top};
    const Point b{points[i + 1].x * scale_ - left, points[i + 1].y * scale_ - top};
    const int firstX = std::max(0, static_cast<int>(std::min(a.x, b.x) - reach));
    const int lastX = std::min(width - 1, static_cast<int>(std::max(a.x, b.x) + reach));
    const int firstY = std::max(0, static_cast<int>(std::min(a.y, b.y) - reach));
    const int lastY = std::min(height - 1, static_cast<int>(std::max(a.y, b.y) + reach));
    for (int y = firstY; y <= lastY; ++y) {
      for (int x = firstX; x <= lastX; ++x) {
        const double covered = std::clamp(reach - DistanceToSegment({x + 0.5, y + 0.5}, a, b), 0.0, 1.0);
        float& most =
            coverage[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
        most = std::max(most, static_cast<float>(covered));
      }
    }
  }
  std::size_t i = 0;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x, ++i) {
      if (coverage[i] > 0.0F) Blend(left + x, top + y, colour, coverage[i]);
    }
  }
}

void Canvas::Paste(const Box& box, const ColourPicture& picture) {
  const int left = Pixel(box.x * scale_), width = Pixel(box.right() * scale_) - left;
  const int top = Pixel(box.y * scale_), height = Pixel(box.bottom() * scale_) - top;
  std::vector<std::vector<Share>> columns;
  for (int x = 0; x < width; ++x) columns.push_back(PixelShares(x, width, picture.width));
  for (int y = 0; y < height; ++y) {
    const std::vector<Share> rows = PixelShares(y, height, picture.height);
    for (int x = 0; x < width; ++x) {
      double red = 0.0, green = 0.0, blue = 0.0;
      for (const Share& row : rows) {
        for (const Share& column : columns[static_cast<std::size_t>(x)]) {
          const Colour& c = picture.pixels[row.source * static_cast<std::size_t>(picture.width) + column.source];
          const double weight = row.weight * column.weight;
          red += weight * c.red;
          green += weight * c.green;
          blue += weight * c.blue;
        }
      }
      Blend(left + x, top + y, {Channel(red), Channel(green), Channel(blue)}, 1.0);
    }
  }
}

void Canvas::Text(Point baseline, const std::string& text, const TextStyle& style) {
  const double length = TextWidth(text, style) * scale_;
  const double before = style.align == Align::kLeft ? 0.0 : style.align == Align::kCentre ? length / 2.0 : length;
  const double x0 = baseline.x * scale_, y0 = baseline.y * scale_;
  RasterizeText(text, style.size * scale_, style.bold, [&](double along, int down, double coverage) {
    const int forth = Pixel(along - before);
    if (style.upwards) {
      Blend(Pixel(x0) + down, Pixel(y0) - forth, style.colour, coverage);
    } else {
      Blend(Pixel(x0) + forth, Pixel(y0) + down, style.colour, coverage);
    }
  });
}

double Canvas::TextWidth(const std::string& text, const TextStyle& style) const {
  return TextLength(text, style.size * scale_, style.bold) / scale_;
}

std::string Canvas::Shortened(std::string text, const TextStyle& style, double width) const {
  if (TextWidth(text, style) <= width) return text;
  // Bisection for the longest prefix that fits, since a file may contain a name of any length.
  const auto beginning = [&text](std::size_t bytes) {
    while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xc0) == 0x80) --bytes;  // whole characters
    return text.substr(0, bytes) + "\u2026";
  };
  std::size_t fits = 0;
  std::size_t tooLong = text.size();
  while (tooLong - fits > 1) {
    const std::size_t middle = fits + (tooLong - fits) / 2;
    (TextWidth(beginning(middle), style) <= width ? fits : tooLong) = middle;
  }
  return beginning(fits);
}

}  // namespace orvanel::drawing
