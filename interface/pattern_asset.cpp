// Decoding of the embedded sector star: a device-independent bitmap of 8 bits a pixel, bottom row first.
#include "interface/pattern_asset.h"

#include <cstddef>

#include "orvanel/orvanel.h"

// The bytes of assets/sector_star.dib.
extern "C" const unsigned char orvanel_sector_star[];

namespace orvanel {

void LoadPatternAsset(double* pattern) {
  constexpr std::size_t kSide = ORVANEL_GRID_SIZE;
  constexpr double kByteToUnit = 0.00392156862745098;  // 1/255; 255 times it is exactly 1.0
  const unsigned char* const colours = orvanel_sector_star + 40;
  const unsigned char* const pixels = colours + 256 * 4;
  for (std::size_t row = 0; row < kSide; ++row) {
    for (std::size_t column = 0; column < kSide; ++column) {
      const unsigned char index = pixels[(kSide - 1 - row) * kSide + column];
      const unsigned char blue = colours[index * 4];
      pattern[row * kSide + column] = blue * kByteToUnit;
    }
  }
}

}  // namespace orvanel
