// Computes sizes of optotypes from acuities.
#include "targets/charts/sizes.h"

#include <cmath>

#include "base/elementary.h"

namespace orvanel::targets::charts {
namespace {

constexpr double kLog10 = 0x1.26bb1bbb55516p+1;

}  // namespace

ArcMinutes HeightOfLogMar(double logMar) { return kHeightOfAcuityOne * Power(10.0, logMar); }

double LogMarOfHeight(ArcMinutes height) { return Logarithm(height / kHeightOfAcuityOne) / kLog10; }

ArcMinutes HeightOfDecimal(double acuity) { return kHeightOfAcuityOne / acuity; }

double DecimalOfHeight(ArcMinutes height) { return kHeightOfAcuityOne / height; }

std::vector<double> Steps(double first, double last, double step, std::size_t most) {
  constexpr double kRounding = 1e-9;  // of a step
  const double intervals = std::fabs(last - first) / step + kRounding;
  if (!(step > 0.0) || !(intervals < static_cast<double>(most))) return {};
  std::vector<double> steps;
  for (int i = 0; i <= static_cast<int>(intervals); ++i) steps.push_back(first + (last < first ? -i * step : i * step));
  return steps;
}

}  // namespace orvanel::targets::charts
