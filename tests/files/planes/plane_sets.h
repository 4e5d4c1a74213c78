// Makes a small set of planes for the tests of formats.
#ifndef ORVANEL_TESTS_FILES_PLANES_PLANE_SETS_H
#define ORVANEL_TESTS_FILES_PLANES_PLANE_SETS_H

#include <limits>
#include <vector>

#include "files/planes/plane_set.h"
#include "orvanel/orvanel.h"

namespace orvanel::files {

// 0 to 1, different in every sample; the first is not a number.
inline Plane Ramp() {
  Plane samples(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
  for (std::size_t k = 0; k < samples.size(); ++k) samples[k] = static_cast<double>(k) / 65536.0;
  samples[0] = std::numeric_limits<double>::quiet_NaN();
  return samples;
}

// One plane of these samples, which must outlive it.
inline PlaneSet SetOfOne(const Plane& samples) {
  return {{{"ramp-0.5", "a ramp", "mm", &samples, 400.0, {{"sample_spacing_mm", 0.025}}, {{"view", "pupil"}}}},
          {{"name", "\u00c5sa"}, {"pupil_diameter_mm", 4.5}, {"coefficients", std::vector<double>{0.25, -0.5}}}};
}

}  // namespace orvanel::files

#endif  // ORVANEL_TESTS_FILES_PLANES_PLANE_SETS_H
