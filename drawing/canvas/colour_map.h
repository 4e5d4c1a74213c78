// From a value to a colour.
#ifndef ORVANEL_DRAWING_CANVAS_COLOUR_MAP_H
#define ORVANEL_DRAWING_CANVAS_COLOUR_MAP_H

#include <cstdint>

#include "base/layers.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

// 256 colours as 0xRRGGBB whose lightness changes by equal steps.
extern const std::uint32_t kViridis[256];    // for what is never negative
extern const std::uint32_t kInferno[256];    // the same, with black for 0
extern const std::uint32_t kDiverging[256];  // blue below the middle, red above

// The colour at position 0.0 to 1.0 of a map; what lies outside takes the end's colour.
Colour ColourAt(const std::uint32_t (&map)[256], double position);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_CANVAS_COLOUR_MAP_H
