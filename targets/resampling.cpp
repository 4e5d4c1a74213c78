// Computes the overlap of an interval with each sample.
#include "targets/resampling.h"

#include <algorithm>

namespace orvanel::targets {

std::vector<Share> Shares(double first, double last, int count) {
  std::vector<Share> shares;
  for (int s = static_cast<int>(std::max(first, 0.0)); s < count && s < last; ++s) {
    const double weight = (std::min(last, s + 1.0) - std::max(first, static_cast<double>(s))) / (last - first);
    if (weight > 0.0) shares.push_back({static_cast<std::size_t>(s), weight});
  }
  return shares;
}

}  // namespace orvanel::targets
