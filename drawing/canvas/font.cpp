// Rasterises glyphs with stb_truetype.
#include "drawing/canvas/font.h"

#include <stb_truetype.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

#include "base/error.h"

// The bytes of DejaVuSans.ttf and DejaVuSans-Bold.ttf.
extern "C" const unsigned char orvanel_font_regular[];
extern "C" const unsigned char orvanel_font_bold[];

namespace orvanel::drawing {
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

// The code points of UTF-8 text; each invalid byte becomes a replacement character.
std::vector<int> CodePoints(const std::string& text) {
  constexpr int kReplacement = 0xfffd;
  std::vector<int> points;
  int missing = 0;  // bytes of the last character that are still to come
  for (const char c : text) {
    const auto byte = static_cast<std::uint8_t>(c);
    const bool continues = (byte & 0xc0) == 0x80;
    if (continues && missing > 0) {
      points.back() = points.back() << 6 | (byte & 0x3f);
      --missing;
      continue;
    }
    if (missing > 0) points.back() = kReplacement;
    const bool begins = byte < 0x80 || (byte >= 0xc2 && byte < 0xf5);
    missing = !begins || byte < 0x80 ? 0 : byte < 0xe0 ? 1 : byte < 0xf0 ? 2 : 3;
    points.push_back(!begins ? kReplacement : byte < 0x80 ? byte : byte & (0x3f >> missing));
  }
  if (missing > 0) points.back() = kReplacement;
  return points;
}

// First and last code points of the ranges that need no shaping.
constexpr std::pair<int, int> kSet[] = {
    {0x0020, 0x007e},  // ASCII
    {0x00a0, 0x00ac},  // Latin, without the soft hyphen
    {0x00ae, 0x02ff},  //
    {0x0370, 0x0482},  // Greek and Cyrillic, without the combining marks of Cyrillic
    {0x048a, 0x052f},  //
    {0x0531, 0x058a},  // Armenian
    {0x10a0, 0x10ff},  // Georgian
    {0x1e00, 0x1fff},  // Latin with marks, also for Vietnamese; Greek with marks
    {0x2010, 0x2027},  // punctuation, without directional marks
    {0x2030, 0x205e},  //
    {0x2070, 0x20bf},  // superscripts, subscripts, currencies
    {0x2100, 0x2bff},  // letter-like symbols, arrows, mathematics, shapes
};

bool IsSet(int point) {
  if (std::none_of(std::begin(kSet), std::end(kSet),
                   [point](const auto& range) { return point >= range.first && point <= range.second; })) {
    return false;
  }
  return stbtt_FindGlyphIndex(&Font(false), point) != 0 && stbtt_FindGlyphIndex(&Font(true), point) != 0;
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

bool IsDrawable(const std::string& text) {
  const std::vector<int> points = CodePoints(text);
  return std::all_of(points.begin(), points.end(), IsSet);
}

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

}  // namespace orvanel::drawing
