// Evaluates the polynomial, or the table.
#include "metrics/quality/contrast_sensitivity.h"

#include <algorithm>
#include <numbers>

#include "base/elementary.h"

namespace orvanel::metrics {
namespace {

constexpr double kLinear = 0.12704, kConstant = 1.8636;

}  // namespace

std::optional<ContrastSensitivity> ContrastSensitivity::Of(std::vector<Point> table, int& wrong) {
  constexpr std::size_t kMost = 10000;
  wrong = static_cast<int>(table.size());
  if (table.size() < 2 || table.size() > kMost) return std::nullopt;
  for (std::size_t i = 0; i < table.size(); ++i) {
    const auto [frequency, sensitivity] = table[i];
    const bool rises = i == 0 ? frequency >= 0.0 : frequency > table[i - 1].frequency;
    if (!(rises && frequency <= kHighestFrequency && sensitivity >= 0.0 && sensitivity <= kLargestSensitivity)) {
      wrong = static_cast<int>(i);
      return std::nullopt;
    }
  }
  ContrastSensitivity result;
  result.table_ = std::move(table);
  return result;
}

double ContrastSensitivity::Continued(double f) const {
  if (table_.empty()) {
    const double log10 =
        ((((2.8876e-8 * f - 5.2957e-6) * f + 3.5818e-4) * f - 1.1241e-2) * f + kLinear) * f + kConstant;
    return Exponential(log10 * std::numbers::ln10);
  }
  const auto above = std::upper_bound(table_.begin(), table_.end(), f,
                                      [](double frequency, const Point& point) { return frequency < point.frequency; });
  if (above == table_.begin()) return above->sensitivity;
  const Point& below = *(above - 1);
  if (above == table_.end()) return below.sensitivity;
  const double share = (f - below.frequency) / (above->frequency - below.frequency);
  return below.sensitivity + share * (above->sensitivity - below.sensitivity);
}

double ContrastSensitivity::At(double frequency) const { return frequency > end() ? 0.0 : Continued(frequency); }

double ContrastSensitivity::SlopeAtZero() const {
  if (table_.empty()) return kLinear * std::numbers::ln10 * Continued(0.0);
  const Point &first = table_[0], &second = table_[1];
  if (first.frequency > 0.0) return 0.0;
  return (second.sensitivity - first.sensitivity) / second.frequency;
}

}  // namespace orvanel::metrics
