// Converts between visual acuity and the angular height of an optotype.
#ifndef ORVANEL_TARGETS_CHARTS_SIZES_H
#define ORVANEL_TARGETS_CHARTS_SIZES_H

#include <vector>

#include "base/layers.h"
#include "base/units.h"

namespace orvanel::targets::charts {

// An optotype of acuity 1 is 5' high, with strokes of 1'. Source: ISO 8596.
constexpr ArcMinutes kHeightOfAcuityOne(5.0);

// logMAR is the decimal logarithm of the stroke in arc minutes.
ArcMinutes HeightOfLogMar(double logMar);
double LogMarOfHeight(ArcMinutes height);

// Decimal acuity is the reciprocal of the stroke in arc minutes. A Snellen fraction such as 20/40 is its decimal
// acuity.
ArcMinutes HeightOfDecimal(double acuity);
double DecimalOfHeight(ArcMinutes height);

// The numbers from `first` towards `last` in steps; `last` is included if a step meets it up to rounding. Empty if a
// number is not finite, if the step is not above 0, or if there are more than `most`.
std::vector<double> Steps(double first, double last, double step, std::size_t most);

}  // namespace orvanel::targets::charts

#endif  // ORVANEL_TARGETS_CHARTS_SIZES_H
