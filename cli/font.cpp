// Glyphs by stb_truetype.
#include "cli/font.h"

#include <stb_truetype.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "cli/error.h"

// The bytes of DejaVuSans.ttf and DejaVuSans-Bold.ttf.
extern "C" const unsigned char orvanel_font_regular[];
extern "C" const unsigned char orvanel_font_bold[];

namespace orvanel::cli {
namespace {

const stbtt_fontinfo& Font(bool bold) {
  const auto open = [](const unsigned char* bytes) {
    stbtt_fontinfo font;
    if (!stbtt_InitFont(&font, bytes, 0)) throw Error("the embedded typeface cannot be read");
    return font;
  };
  static const stbtt_fontinfo kRegular = open(orvanel_font_regular);
  static const stbtt_fontinfo kBold = open(orvanel_font_bold);
  return bold ? kBold : kRegular;
}

// The code points of UTF-8; what is none becomes a replacement character.
std::vector<int> CodePoints(const std::string& text) {
  std::vector<int> points;
  for (const char c : text) {
    const auto byte = static_cast<std::uint8_t>(c);
    if ((byte & 0xc0) == 0x80 && !points.empty()) {
      points.back() = (points.back() & 0xffffff) << 6 | (byte & 0x3f);
    } else {
      points.push_back(byte < 0x80 ? byte : byte < 0xe0 ? byte & 0x1f : byte < 0xf0 ? byte & 0x0f : byte & 0x07);
    }
  }
  for (int& point : points) {
    if (point < 0 || point > 0x10ffff) point = 0xfffd;
  }
  return points;
}

// Calls visit(glyph, position) for each glyph and returns the length.
template <class Visit>
double Typeset(const std::string& text, const stbtt_fontinfo& font, float scale, const Visit& visit) {
  double position = 0.0;
  int previous = 0;
  for (const int point : CodePoints(text)) {
    const int glyph = stbtt_FindGlyphIndex(&font, point);
    if (previous != 0) position += scale * static_cast<float>(stbtt_GetGlyphKernAdvance(&font, previous, glyph));
    visit(glyph, position);
    int advance, bearing;
    stbtt_GetGlyphHMetrics(&font, glyph, &advance, &bearing);
    position += scale * static_cast<float>(advance);
    previous = glyph;
  }
  return position;
}

float ScaleFor(const stbtt_fontinfo& font, double size) {
  return stbtt_ScaleForMappingEmToPixels(&font, static_cast<float>(size));
}

}  // namespace

double TextLength(const std::string& text, double size, bool bold) {
  const stbtt_fontinfo& font = Font(bold);
  return Typeset(text, font, ScaleFor(font, size), [](int, double) {});
}

void RasterizeText(const std::string& text, double size, bool bold, const TouchPixel& touch) {
  const stbtt_fontinfo& font = Font(bold);
  const float scale = ScaleFor(font, size);
  std::vector<unsigned char> bitmap;
  Typeset(text, font, scale, [&](int glyph, double position) {
    const double whole = std::floor(position);
    const auto shift = static_cast<float>(position - whole);
    int left, top, right, bottom;
    stbtt_GetGlyphBitmapBoxSubpixel(&font, glyph, scale, scale, shift, 0.0F, &left, &top, &right, &bottom);
    const int width = right - left, height = bottom - top;
    if (width <= 0 || height <= 0) return;
    bitmap.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
    stbtt_MakeGlyphBitmapSubpixel(&font, bitmap.data(), width, height, width, scale, scale, shift, 0.0F, glyph);
    std::size_t i = 0;
    for (int y = top; y < bottom; ++y) {
      for (int x = left; x < right; ++x, ++i) {
        if (bitmap[i] != 0) touch(whole + x, y, bitmap[i] / 255.0);
      }
    }
  });
}

}  // namespace orvanel::cli
