// PNG writer for 8 and 16 bits, grey and colour.
#ifndef ORVANEL_FILES_PICTURES_PNG_H
#define ORVANEL_FILES_PICTURES_PNG_H

#include <cstdint>
#include <string>
#include <vector>

#include "base/layers.h"
#include "targets/plane.h"

namespace orvanel::files {

// A colour with one or two bytes per channel.
template <class Channel>
struct Rgb {
  Channel red, green, blue;
};
using Colour = Rgb<std::uint8_t>;

// width x height pixels, row-major, row 0 at the top.
template <class Pixel>
struct Picture {
  int width = 0, height = 0;
  std::vector<Pixel> pixels;
};

using GreyPicture = Picture<std::uint8_t>;
using ColourPicture = Picture<Colour>;
using DeepGreyPicture = Picture<std::uint16_t>;
using DeepColourPicture = Picture<Rgb<std::uint16_t>>;

// A plane of 256 x 256 values as grey pixels: round(255 v). Values outside 0 to 1, and NaN, are clipped.
GreyPicture GreyPictureOf(const Plane& plane);

// The meaning of pixels: colours for the screen, or numbers that viewers must not change.
enum class Pixels { kSrgb, kNumbers };

// The bytes of the file, with 8 or 16 bits per channel as the pixels have, marked as sRGB or unmarked. The same picture
// and zlib give the same bytes. Throws Error for a picture without pixels and if the memory is exhausted.
std::string EncodePng(const GreyPicture& picture, Pixels kind);
std::string EncodePng(const ColourPicture& picture, Pixels kind = Pixels::kSrgb);
std::string EncodePng(const DeepGreyPicture& picture, Pixels kind);
std::string EncodePng(const DeepColourPicture& picture, Pixels kind);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_PNG_H
