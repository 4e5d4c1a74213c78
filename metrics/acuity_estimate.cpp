// Inverts the regression between its ends.
#include "metrics/acuity_estimate.h"

#include <numbers>

#include "base/elementary.h"
#include "base/number_text.h"

namespace orvanel::metrics {
namespace {

bool HasRegression(QualityMetric metric) { return metric == QualityMetric::kVsx || metric == QualityMetric::kVsOtf; }

double LogarithmToBase10(double x) { return Logarithm(x) / std::numbers::ln10; }

}  // namespace

std::variant<double, NoAcuity> AcuityFrom(const QualityValue& value) {
  if (!HasRegression(value.metric)) return NoAcuity::kOtherMetric;
  if (!(value.value > 0.0)) return NoAcuity::kNotAboveZero;
  const double logVsx = LogarithmToBase10(value.value);
  if (logVsx < kShortestLogVsxOfAcuity) return NoAcuity::kTooLow;
  if (logVsx > kLongestLogVsxOfAcuity) return NoAcuity::kTooHigh;
  return (logVsx - kLogVsxAtLogMar0) / kLogVsxPerLogMar;
}

std::string TextOf(NoAcuity reason) {
  switch (reason) {
    case NoAcuity::kOtherMetric:
      return "the regression is one of VSX alone";
    case NoAcuity::kNotAboveZero:
      return "the value is not above 0 and has no logarithm";
    case NoAcuity::kTooLow:
      return "log10 VSX is below " + ShortestText(kShortestLogVsxOfAcuity) + ", where the regression ends";
    case NoAcuity::kTooHigh:
      return "log10 VSX is above " + ShortestText(kLongestLogVsxOfAcuity) + ", where the regression ends";
  }
  return "";
}

std::optional<double> NoticeableDifferences(const QualityValue& before, const QualityValue& after) {
  if (!HasRegression(before.metric) || !(before.value > 0.0) || !(after.value > 0.0)) return std::nullopt;
  return (LogarithmToBase10(after.value) - LogarithmToBase10(before.value)) / kNoticeableStep;
}

}  // namespace orvanel::metrics
