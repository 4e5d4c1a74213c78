// Computes how uncertain metrics of image quality and the refraction are where the coefficients of an eye are.
#ifndef ORVANEL_EVALUATION_UNCERTAINTY_UNCERTAINTY_H
#define ORVANEL_EVALUATION_UNCERTAINTY_UNCERTAINTY_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/quality_evaluator.h"
#include "eye/adjustments.h"
#include "eye/eye.h"

namespace orvanel::evaluation {

// The covariance of some coefficients of an eye over its pupil; the others are certain.
struct CoefficientSpread {
  std::vector<std::size_t> terms;  // OSA indices, each once
  std::vector<double> covariance;  // um^2, row by row
};

// The spread of repeated measurements of one eye: of their mean, or of one of them. At least two; all over one pupil.
//   measurements  orthonormal, um, y up
//   ofMean        the covariance is that of the mean, which is smaller by their number
CoefficientSpread SpreadOf(std::span<const Coefficients> measurements, bool ofMean);
Coefficients MeanOf(std::span<const Coefficients> measurements);

struct UncertainValue {
  std::string name;              // of a metric, "MTF@10", or "M", "J0", "J45" of the least-squares refraction
  std::string unit;              // "1" for pure numbers
  double value = 0.0;            // of the eye itself
  double mean = 0.0;             // of the distribution
  double deviation = 0.0;        // its standard deviation; not a number where a metric has no gradient
  double low = 0.0, high = 0.0;  // an interval that holds 95 % of it
  std::size_t missing = 0;       // draws for which it is not a number
};

// To first order: by the gradient of each metric. The mean is the value of the eye, and the interval that of a normal
// distribution. Metrics without a gradient have no deviation. The refraction is linear, so that it is exact. Throws
// what CovarianceFactors throws.
//   measured     the spread is that of its coefficients
//   adjustments  of the eye, after which its metrics are computed
std::vector<UncertainValue> FirstOrderUncertainty(const PhysicalSettings& settings, QualityRequest request,
                                                  const Eye& measured, const Adjustments& adjustments,
                                                  const CoefficientSpread& spread);

// From eyes drawn from a normal distribution: mean and standard deviation of their values, and the interval between
// their quantiles at 2.5 and 97.5 %. Values that are not numbers are left out and counted. Throws what
// CovarianceFactors throws.
//   draws  at least kFewestDraws
constexpr int kFewestDraws = 40;  // below this, no value is beyond a quantile
std::vector<UncertainValue> DrawnUncertainty(const PhysicalSettings& settings, const QualityRequest& request,
                                             const Eye& measured, const Adjustments& adjustments,
                                             const CoefficientSpread& spread, int draws, std::uint64_t seed);

// The names of values that are far from linear in the coefficients within the covariance. Their mean or deviation to
// first order differs from that of drawn eyes by more than four sampling errors.
std::vector<std::string> FarFromFirstOrder(std::span<const UncertainValue> firstOrder,
                                           std::span<const UncertainValue> drawn, int draws);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_UNCERTAINTY_UNCERTAINTY_H
