// PNG files.
#ifndef ORVANEL_FILES_PICTURES_PNG_H
#define ORVANEL_FILES_PICTURES_PNG_H

#include <cstdint>
#include <string>
#include <vector>

#include "base/layers.h"

namespace orvanel::files {

// A colour of one byte or two a channel.
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

// A plane of 256 x 256 values as grey pixels: round(255 v), values outside 0 to 1 and not-a-number clipped.
GreyPicture GreyPictureOf(const std::vector<double>& plane);

// What pixels are: colours for the screen, or numbers that are not to be changed on their way.
enum class Pixels { kSrgb, kNumbers };

// The bytes of the file: 8 or 16 bits a channel as the pixels have, marked as sRGB or without a mark, the same bytes
// for the same picture and zlib. Throws Error for a picture without pixels and where there is no memory for the file.
std::string EncodePng(const GreyPicture& picture, Pixels kind);
std::string EncodePng(const ColourPicture& picture, Pixels kind = Pixels::kSrgb);
std::string EncodePng(const DeepGreyPicture& picture, Pixels kind);
std::string EncodePng(const DeepColourPicture& picture, Pixels kind);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_PNG_H
