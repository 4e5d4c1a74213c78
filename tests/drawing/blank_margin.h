// Checks that a drawing stays inside its area.
#ifndef ORVANEL_TESTS_DRAWING_BLANK_MARGIN_H
#define ORVANEL_TESTS_DRAWING_BLANK_MARGIN_H

#include "files/pictures/png.h"

namespace orvanel::drawing {

// Whether the outermost pixels are all white: `sides` wide at the left and right, `ends` high at the top and bottom.
inline bool HasBlankMargin(const ColourPicture& picture, int sides, int ends) {
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      if (x >= sides && x < picture.width - sides && y >= ends && y < picture.height - ends) continue;
      const Colour c = picture.pixels[static_cast<std::size_t>(y * picture.width + x)];
      if (c.red != 255 || c.green != 255 || c.blue != 255) return false;
    }
  }
  return true;
}

inline bool HasBlankMargin(const ColourPicture& picture, int margin) { return HasBlankMargin(picture, margin, margin); }

}  // namespace orvanel::drawing

#endif  // ORVANEL_TESTS_DRAWING_BLANK_MARGIN_H
