// Checks a PNG file by libpng, if it is available: order, checksums and lengths of the chunks.
#ifndef ORVANEL_TESTS_SUPPORT_WELL_FORMED_PNG_H
#define ORVANEL_TESTS_SUPPORT_WELL_FORMED_PNG_H

#include <string>
#ifdef ORVANEL_HAS_LIBPNG
#include <png.h>

#include <vector>
#endif

namespace orvanel::test {

// Its error or warning; empty where there is none.
inline std::string PngComplaint([[maybe_unused]] const std::string& file) {
  std::string complaint;
#ifdef ORVANEL_HAS_LIBPNG
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_memory(&image, file.data(), file.size())) {
    std::vector<char> pixels(PNG_IMAGE_SIZE(image));
    png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr);
  }
  if (image.warning_or_error != 0) complaint = image.message;
  png_image_free(&image);
#endif
  return complaint;
}

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_SUPPORT_WELL_FORMED_PNG_H
