// Lists the lenses of a trial lens case near a wanted one.
#ifndef ORVANEL_EVALUATION_CORRECTION_LENS_GRID_H
#define ORVANEL_EVALUATION_CORRECTION_LENS_GRID_H

#include <vector>

#include "base/layers.h"
#include "eye/refraction.h"

namespace orvanel::evaluation {

// Spheres and minus cylinders in steps from 0; axes in steps up to 180 degrees, which they divide.
struct LensGrid {
  Dioptres step{0.25};
  Degrees axisStep{5.0};
  bool sphereOnly = false;
};

// The limits of the steps that callers may choose, in dioptres and degrees.
constexpr double kSmallestTrialStep = 0.01, kLargestTrialStep = 1.0;
constexpr double kSmallestAxisStep = 1.0, kLargestAxisStep = 45.0;

// Whether steps of an axis end at 180 degrees.
bool DividesHalfTurn(Degrees axisStep);

// The lenses whose power vectors are closest to that of a wanted lens, the closest first. Lenses without a cylinder
// have the axis 180.
//   count  at most; lenses more than 4 steps away are left out
std::vector<Refraction> LensesNear(const LensGrid& grid, const PowerVector& wanted, int count);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_CORRECTION_LENS_GRID_H
