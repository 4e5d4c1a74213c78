// What a sample of a picture of another size takes from the samples of the original, along one side.
#ifndef ORVANEL_TARGETS_RESAMPLING_H
#define ORVANEL_TARGETS_RESAMPLING_H

#include <cstddef>
#include <vector>

#include "base/layers.h"

namespace orvanel::targets {

// One sample of the original and the part of the new sample's extent that it covers.
struct Share {
  std::size_t source;
  double weight;
};

// The samples of the original that lie between two positions. They add up to 1 where the extent lies within the
// original, and to less where it does not.
//   first, last  the extent, in samples of the original from its edge
//   count        samples of the original
std::vector<Share> Shares(double first, double last, int count);

}  // namespace orvanel::targets

#endif  // ORVANEL_TARGETS_RESAMPLING_H
