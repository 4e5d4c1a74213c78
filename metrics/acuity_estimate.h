// Estimates visual acuity from a metric of image quality.
#ifndef ORVANEL_METRICS_ACUITY_ESTIMATE_H
#define ORVANEL_METRICS_ACUITY_ESTIMATE_H

#include <optional>
#include <string>
#include <variant>

#include "base/layers.h"
#include "metrics/quality/quality.h"

namespace orvanel::metrics {

// log10 VSX = -2.98 logMAR - 0.31, fitted to averages of four observers who read blurred charts. Source: Ravikumar,
// Marsack, Bedell, Shi and Applegate (2011), Change in visual acuity is well correlated with change in image-quality
// metrics for both normal and keratoconic wavefront errors.
constexpr double kLogVsxPerLogMar = -2.98, kLogVsxAtLogMar0 = -0.31;
constexpr double kAcuitySpread = 0.05;     // logMAR
constexpr double kNoticeableStep = 0.049;  // of log10 VSX, just noticeable; the same source
constexpr double kNoticeableStepSpread = 0.012;
constexpr const char* kAcuitySource = "Ravikumar et al. 2011";

// Why a value gives no estimate.
enum class NoAcuity {
  kOtherMetric,   // neither VSX nor VSOTF
  kNotAboveZero,  // no logarithm
  kTooLow,        // log10 VSX is below the values of the regression
  kTooHigh,
};

// In logMAR.
std::variant<double, NoAcuity> AcuityFrom(const QualityValue& value);

// A clause: "the regression ends at a log10 VSX of -0.9".
std::string TextOf(NoAcuity reason);

// The change of log10 VSX in just noticeable differences; empty for other metrics and for values not above 0.
std::optional<double> NoticeableDifferences(const QualityValue& before, const QualityValue& after);

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_ACUITY_ESTIMATE_H
