// PNG files.
#ifndef ORVANEL_CLI_PNG_H
#define ORVANEL_CLI_PNG_H

#include <cstdint>
#include <string>
#include <vector>

namespace orvanel::cli {

struct Colour {
  std::uint8_t red, green, blue;
};

// width x height pixels, row-major, row 0 at the top.
template <class Pixel>
struct Picture {
  int width = 0, height = 0;
  std::vector<Pixel> pixels;
};

using GreyPicture = Picture<std::uint8_t>;
using ColourPicture = Picture<Colour>;

// A plane of 256 x 256 values as grey pixels: round(255 v), values outside 0 to 1 and not-a-number clipped.
GreyPicture GreyPictureOf(const std::vector<double>& plane);

// The bytes of the file. 8 bits a channel. Throws Error where there is no memory for it.
std::string EncodePng(const GreyPicture& picture);
std::string EncodePng(const ColourPicture& picture);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_PNG_H
