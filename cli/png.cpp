// PNG through libpng's simplified interface, into memory.
#include "cli/png.h"

#include <png.h>

#include <algorithm>
#include <cmath>

#include "cli/error.h"
#include "orvanel/orvanel.h"

namespace orvanel::cli {
namespace {

static_assert(sizeof(Colour) == 3, "libpng reads the pixels as they stand in memory");

std::string Encode(const void* pixels, int width, int height, png_uint_32 format) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width);
  image.height = static_cast<png_uint_32>(height);
  image.format = format;
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::string bytes(size, '\0');
  if (!png_image_write_to_memory(&image, bytes.data(), &size, 0, pixels, 0, nullptr)) {
    throw Error(std::string("cannot make a PNG file: ") + image.message);
  }
  bytes.resize(size);
  return bytes;
}

}  // namespace

GreyPicture GreyPictureOf(const std::vector<double>& plane) {
  GreyPicture picture{ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, {}};
  picture.pixels.reserve(plane.size());
  for (const double v : plane) {
    const double clipped = v > 0.0 ? std::min(v, 1.0) : 0.0;
    picture.pixels.push_back(static_cast<std::uint8_t>(std::lround(255.0 * clipped)));
  }
  return picture;
}

std::string EncodePng(const GreyPicture& picture) {
  return Encode(picture.pixels.data(), picture.width, picture.height, PNG_FORMAT_GRAY);
}

std::string EncodePng(const ColourPicture& picture) {
  return Encode(picture.pixels.data(), picture.width, picture.height, PNG_FORMAT_RGB);
}

}  // namespace orvanel::cli
