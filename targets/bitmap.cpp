// Decodes bitmaps with a palette, bottom row first.
#include "targets/bitmap.h"

#include <cstddef>

#include "orvanel/orvanel.h"

namespace orvanel::targets {

void DecodeBitmap(const unsigned char* bitmap, double* pattern) {
  constexpr std::size_t kSide = ORVANEL_GRID_SIZE;
  constexpr std::size_t kHeader = 40;  // bytes of a BITMAPINFOHEADER
  const unsigned char* const colours = bitmap + kHeader;
  const unsigned char* const pixels = colours + 256 * 4;
  for (std::size_t row = 0; row < kSide; ++row) {
    for (std::size_t column = 0; column < kSide; ++column) {
      const unsigned char index = pixels[(kSide - 1 - row) * kSide + column];
      const unsigned char blue = colours[index * 4];
      pattern[row * kSide + column] = blue * kByteToUnit;
    }
  }
}

}  // namespace orvanel::targets
