// Computes the weights of area resampling along one side of a picture.
#ifndef ORVANEL_TARGETS_RESAMPLING_H
#define ORVANEL_TARGETS_RESAMPLING_H

#include <cstddef>
#include <vector>

#include "base/layers.h"

namespace orvanel::targets {

// A sample of the original, and the share of the new sample that it covers.
struct Share {
  std::size_t source;
  double weight;
};

// The samples of the original between two positions. Their weights sum to 1 if the extent is inside the original, and
// to less otherwise.
//   first, last  the extent, in samples of the original from its edge
//   count        samples of the original
std::vector<Share> Shares(double first, double last, int count);

}  // namespace orvanel::targets

#endif  // ORVANEL_TARGETS_RESAMPLING_H
