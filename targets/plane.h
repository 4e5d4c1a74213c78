// A plane of samples.
#ifndef ORVANEL_TARGETS_PLANE_H
#define ORVANEL_TARGETS_PLANE_H

#include <vector>

#include "base/layers.h"

namespace orvanel::targets {

// 256 x 256 samples, row-major, row 0 at the top.
using Plane = std::vector<double>;

}  // namespace orvanel::targets

#endif  // ORVANEL_TARGETS_PLANE_H
