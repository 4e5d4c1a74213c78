// Shuffles each line with random integers of a separate counter.
#include "targets/charts/letter_order.h"

#include <numeric>
#include <utility>

#include "base/philox.h"

namespace orvanel::targets::charts {

std::vector<int> RandomLine(int kinds, int count, std::uint64_t seed, std::uint32_t line) {
  std::uint32_t drawn = 0;
  const auto below = [&](int limit) {
    const auto low = static_cast<std::uint32_t>(seed), high = static_cast<std::uint32_t>(seed >> 32U);
    const std::uint64_t bits = Philox({drawn++, line, 0, 0}, {low, high})[0];
    // The chances of two results differ by at most 2^-32.
    return static_cast<std::size_t>(bits * static_cast<std::uint64_t>(limit) >> 32U);
  };
  std::vector<int> order;
  while (static_cast<int>(order.size()) < count) {
    std::vector<int> all(static_cast<std::size_t>(kinds));
    std::iota(all.begin(), all.end(), 0);
    // Source: Fisher and Yates, as by Durstenfeld (1964), Algorithm 235.
    for (int i = kinds - 1; i > 0; --i) std::swap(all[static_cast<std::size_t>(i)], all[below(i + 1)]);
    if (!order.empty() && all.front() == order.back()) std::swap(all.front(), all.back());
    order.insert(order.end(), all.begin(), all.end());
  }
  order.resize(static_cast<std::size_t>(count));
  return order;
}

}  // namespace orvanel::targets::charts
