// Draws gratings, checkerboards, Siemens stars and points, area-true.
#ifndef ORVANEL_TARGETS_CHARTS_PATTERNS_H
#define ORVANEL_TARGETS_CHARTS_PATTERNS_H

#include "base/layers.h"
#include "targets/charts/shape.h"
#include "targets/plane.h"

namespace orvanel::targets::charts {

// A grating in pixels. The wave is sin(2 pi cycles u + phase), where u grows perpendicular to the bars: to the right
// for vertical bars, downwards for horizontal ones.
struct GratingWave {
  double cyclesPerPixel;
  double barDegrees;    // anticlockwise as seen; 0: horizontal bars, 90: vertical bars
  double phaseDegrees;  // at the origin
  Point origin;         // in pixels from the top left corner
};

// The mean of the wave over the area of each pixel, -1 to 1.
Plane SineGrating(int columns, int rows, const GratingWave& wave);

// The share of each pixel where the wave is positive, 0 to 1.
Plane SquareGrating(int columns, int rows, const GratingWave& wave);

// The share of each pixel in the checks whose corner is at the origin, to the lower right and upper left of it, and in
// those diagonally beside them.
Plane Checkerboard(int columns, int rows, double side, Point origin);

// Sectors of one colour; `cycles` of them, as wide as the gaps between. The first goes anticlockwise from the right.
Shape SiemensStar(Point centre, double diameter, int cycles);

// A square grid of discs around a centre.
Shape Points(Point centre, double diameter, int perSide, double spacing);

}  // namespace orvanel::targets::charts

#endif  // ORVANEL_TARGETS_CHARTS_PATTERNS_H
