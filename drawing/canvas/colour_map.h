// Maps values to colours.
#ifndef ORVANEL_DRAWING_CANVAS_COLOUR_MAP_H
#define ORVANEL_DRAWING_CANVAS_COLOUR_MAP_H

#include <cstdint>

#include "base/layers.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

// 256 colours as 0xRRGGBB whose lightness changes by equal steps.
extern const std::uint32_t kViridis[256];    // for values that are never negative
extern const std::uint32_t kInferno[256];    // the same, with black for 0
extern const std::uint32_t kDiverging[256];  // blue below the middle, red above

// The colour at a position of a map, 0.0 to 1.0. Positions outside get the colour of the nearer end.
Colour ColourAt(const std::uint32_t (&map)[256], double position);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_CANVAS_COLOUR_MAP_H
