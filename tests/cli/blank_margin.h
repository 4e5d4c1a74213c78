// Whether a drawing keeps to its area.
#ifndef ORVANEL_TESTS_CLI_BLANK_MARGIN_H
#define ORVANEL_TESTS_CLI_BLANK_MARGIN_H

#include "cli/png.h"

namespace orvanel::cli {

// Whether the outermost pixels, `margin` wide, are all white.
inline bool HasBlankMargin(const ColourPicture& picture, int margin) {
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      if (x >= margin && x < picture.width - margin && y >= margin && y < picture.height - margin) continue;
      const Colour c = picture.pixels[static_cast<std::size_t>(y * picture.width + x)];
      if (c.red != 255 || c.green != 255 || c.blue != 255) return false;
    }
  }
  return true;
}

}  // namespace orvanel::cli

#endif  // ORVANEL_TESTS_CLI_BLANK_MARGIN_H
