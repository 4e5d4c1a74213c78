// The area where samples of a smooth function are above a level.
#ifndef ORVANEL_METRICS_QUALITY_AREA_ABOVE_H
#define ORVANEL_METRICS_QUALITY_AREA_ABOVE_H

namespace orvanel::metrics {

// In cells of the grid, whose three outermost rows and columns only serve for interpolation. Cells that the border
// crosses are divided by interpolation through 6 x 6 samples.
// Error: 1e-3 for areas of 100 cells or more whose function has no less than 6 samples a period.
//   samples  rows x columns
constexpr int kAreaRim = 3;
double AreaAbove(double level, const double* samples, int rows, int columns);

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_QUALITY_AREA_ABOVE_H
