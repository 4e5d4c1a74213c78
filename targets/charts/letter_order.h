// Orders the optotypes of a chart at random.
#ifndef ORVANEL_TARGETS_CHARTS_LETTER_ORDER_H
#define ORVANEL_TARGETS_CHARTS_LETTER_ORDER_H

#include <cstdint>
#include <vector>

#include "base/layers.h"

namespace orvanel::targets::charts {

// The order of one line: numbers from 0 to kinds - 1, `count` of them. None comes twice if there are enough; otherwise
// each comes equally often or once less, and neighbours differ (unless there is only one kind). A line of a seed is the
// same on every machine, and for any number of lines.
std::vector<int> RandomLine(int kinds, int count, std::uint64_t seed, std::uint32_t line);

}  // namespace orvanel::targets::charts

#endif  // ORVANEL_TARGETS_CHARTS_LETTER_ORDER_H
