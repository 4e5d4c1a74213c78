// Looks up colours in a map.
#include "drawing/canvas/colour_map.h"

#include <algorithm>

namespace orvanel::drawing {

Colour ColourAt(const std::uint32_t (&map)[256], double position) {
  const std::uint32_t code = map[static_cast<std::size_t>(std::clamp(position, 0.0, 1.0) * 255.0 + 0.5)];
  return {static_cast<std::uint8_t>(code >> 16), static_cast<std::uint8_t>(code >> 8 & 0xff),
          static_cast<std::uint8_t>(code & 0xff)};
}

}  // namespace orvanel::drawing
