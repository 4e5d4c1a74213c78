// Draws shapes area-true: the value of a pixel is the share of its area inside the shapes.
#ifndef ORVANEL_TARGETS_CHARTS_COVERAGE_H
#define ORVANEL_TARGETS_CHARTS_COVERAGE_H

#include <vector>

#include "base/layers.h"
#include "targets/charts/shape.h"
#include "targets/plane.h"

namespace orvanel::targets::charts {

// The largest error of a pixel from rounding, for planes of up to 4096 x 4096 pixels. Nearer values to 0 and 1 become
// these.
constexpr double kCoverageError = 1e-10;

class Coverage {
 public:
  Coverage(int columns, int rows);

  // Adds a shape that does not overlap the earlier ones. Parts outside the plane are clipped. Pixel (row r, column c)
  // is the square from (c, r) to (c + 1, r + 1).
  void Add(const Shape& shape);

  // The plane of all shapes, once. The area of each pixel is integrated in closed form, up to rounding.
  Plane Take();

 private:
  void AddPart(const Edge& part);
  void AddPiece(const Edge& part, Point from, Point to);

  // Each row: the differences of the coverage of neighbouring pixels.
  Plane steps_;
  std::vector<Point> atRows_, atColumns_;  // where a part crosses the borders of pixels
};

}  // namespace orvanel::targets::charts

#endif  // ORVANEL_TARGETS_CHARTS_COVERAGE_H
