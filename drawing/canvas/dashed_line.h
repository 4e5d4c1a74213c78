// Draws lines with dashes of equal length.
#ifndef ORVANEL_DRAWING_CANVAS_DASHED_LINE_H
#define ORVANEL_DRAWING_CANVAS_DASHED_LINE_H

#include <vector>

#include "base/layers.h"
#include "drawing/canvas/surface.h"

namespace orvanel::drawing {

// Lengths in units of the surface.
struct Dashes {
  double dash = 9.0, period = 17.0;
};

struct LineStyle {
  Colour colour;
  double width;
  Dashes dashes = {0.0, 0.0};  // with a period of 0 the line is whole
};

void DrawLine(Surface& surface, const std::vector<Point>& points, const LineStyle& style);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_CANVAS_DASHED_LINE_H
