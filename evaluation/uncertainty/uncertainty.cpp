// Propagates a covariance by gradients, and by drawn eyes.
#include "evaluation/uncertainty/uncertainty.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "eye/conventions/column_name.h"
#include "eye/population/covariance.h"
#include "eye/population/random.h"
#include "eye/refraction.h"
#include "metrics/quality_names.h"
#include "models/adapters/physical_eye.h"

namespace orvanel::evaluation {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kLowShare = 0.025, kHighShare = 0.975;  // between them lie 95 %

// The eye with changes of some coefficients, adjusted.
Eye AdjustedWith(const Eye& measured, const Adjustments& adjustments, const std::vector<std::size_t>& terms,
                 const std::vector<double>& changes) {
  Eye eye = measured;
  Coefficients osa = eye.coefficients.osa();
  for (std::size_t i = 0; i < terms.size(); ++i) {
    if (osa.size() <= terms[i]) osa.resize(terms[i] + 1);
    osa[terms[i]] += changes[i];
  }
  eye.coefficients.Replace(std::move(osa));
  return Adjusted(std::move(eye), adjustments);
}

// M, J0 and J45.
std::vector<double> PowersOf(const Eye& eye) {
  const PowerVector powers = LeastSquaresRefraction(eye.coefficients.osa(), eye.pupil);
  return {powers.m.value(), powers.j0.value(), powers.j45.value()};
}

// The metrics, then the refraction.
std::vector<double> AllValuesOf(QualityEvaluator& evaluator, const Eye& eye) {
  std::vector<double> values = ValuesOf(evaluator.Evaluate(eye));
  for (const double power : PowersOf(eye)) values.push_back(power);
  return values;
}

std::vector<UncertainValue> NamesOf(const QualityRequest& request) {
  std::vector<UncertainValue> named;
  for (const QualityColumn& column : ColumnsOf(request)) named.push_back({column.name, column.unit});
  for (const char* const name : {"M", "J0", "J45"}) named.push_back({name, "D"});
  return named;
}

CovarianceFactors FactorsOf(const CoefficientSpread& spread) {
  std::vector<std::string> names;
  for (const std::size_t term : spread.terms) names.push_back(NameIn(IndexScheme::kOsa, Term(term)));
  return {spread.covariance, names};
}

// The changes of a value with each uncertain coefficient of the measured eye. Adjustments are linear in them.
std::vector<double> SlopesOf(const std::vector<double>& gradient, const std::vector<physical::Eye>& changed,
                             const physical::Eye& own) {
  std::vector<double> slopes;
  for (const physical::Eye& eye : changed) {
    double slope = gradient.empty() ? kNan : 0.0;
    for (std::size_t j = 0; j < gradient.size(); ++j) slope += gradient[j] * (eye.modesUm[j] - own.modesUm[j]);
    slopes.push_back(slope);
  }
  return slopes;
}

// The standard deviation of a linear function of the uncertain coefficients.
double DeviationOf(const std::vector<double>& slopes, const CoefficientSpread& spread) {
  double variance = 0.0;
  const std::size_t n = slopes.size();
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) variance += slopes[i] * spread.covariance[i * n + j] * slopes[j];
  }
  return std::sqrt(variance < 0.0 ? 0.0 : variance);  // below 0 by rounding alone
}

// The quantile of sorted numbers, linear between them.
double QuantileOf(const std::vector<double>& sorted, double share) {
  const double place = share * static_cast<double>(sorted.size() - 1);
  const auto before = static_cast<std::size_t>(place);
  if (before + 1 == sorted.size()) return sorted.back();
  return sorted[before] + (place - static_cast<double>(before)) * (sorted[before + 1] - sorted[before]);
}

void Describe(std::vector<double> drawn, UncertainValue& result) {
  const std::size_t draws = drawn.size();
  drawn.erase(std::remove_if(drawn.begin(), drawn.end(), [](double value) { return !std::isfinite(value); }),
              drawn.end());
  result.missing = draws - drawn.size();
  result.mean = result.deviation = result.low = result.high = kNan;
  if (drawn.size() < 2) return;
  std::sort(drawn.begin(), drawn.end());
  const auto count = static_cast<double>(drawn.size());
  double sum = 0.0, squares = 0.0;
  for (const double value : drawn) sum += value - drawn.front();  // so that equal values have no deviation
  result.mean = drawn.front() + sum / count;
  for (const double value : drawn) squares += (value - result.mean) * (value - result.mean);
  result.deviation = std::sqrt(squares / (count - 1.0));
  result.low = QuantileOf(drawn, kLowShare);
  result.high = QuantileOf(drawn, kHighShare);
}

}  // namespace

Coefficients MeanOf(std::span<const Coefficients> measurements) {
  Coefficients mean;
  for (const Coefficients& one : measurements) {
    if (mean.size() < one.size()) mean.resize(one.size());
    for (std::size_t j = 0; j < one.size(); ++j) mean[j] += one[j];
  }
  for (double& value : mean) value /= static_cast<double>(measurements.size());
  return mean;
}

CoefficientSpread SpreadOf(std::span<const Coefficients> measurements, bool ofMean) {
  const Coefficients mean = MeanOf(measurements);
  const std::size_t n = mean.size();
  const auto count = static_cast<double>(measurements.size());
  CoefficientSpread spread;
  for (std::size_t j = 0; j < n; ++j) spread.terms.push_back(j);
  spread.covariance.assign(n * n, 0.0);
  const auto difference = [&mean](const Coefficients& one, std::size_t j) {
    return (j < one.size() ? one[j] : 0.0) - mean[j];
  };
  for (const Coefficients& one : measurements) {
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j < n; ++j) spread.covariance[i * n + j] += difference(one, i) * difference(one, j);
    }
  }
  for (double& element : spread.covariance) element /= (count - 1.0) * (ofMean ? count : 1.0);
  return spread;
}

std::vector<UncertainValue> FirstOrderUncertainty(const PhysicalSettings& settings, QualityRequest request,
                                                  const Eye& measured, const Adjustments& adjustments,
                                                  const CoefficientSpread& spread) {
  FactorsOf(spread);  // refuses what is no covariance
  std::vector<UncertainValue> results = NamesOf(request);
  const Eye eye = AdjustedWith(measured, adjustments, {}, {});
  const std::vector<double> powers = PowersOf(eye);
  // The eye with one um more of each coefficient.
  std::vector<physical::Eye> changed;
  std::vector<std::vector<double>> powerSlopes(powers.size());
  for (const std::size_t term : spread.terms) {
    const Eye other = AdjustedWith(measured, adjustments, {term}, {1.0});
    changed.push_back(models::PhysicalEyeOf(other));
    const std::vector<double> otherPowers = PowersOf(other);
    for (std::size_t k = 0; k < powers.size(); ++k) powerSlopes[k].push_back(otherPowers[k] - powers[k]);
  }
  request.gradient = true;
  const Quality quality = QualityEvaluator(settings, request).Evaluate(eye);
  const std::vector<double> values = ValuesOf(quality);
  const physical::Eye own = models::PhysicalEyeOf(eye);
  for (std::size_t r = 0; r < results.size(); ++r) {
    const bool isMetric = r < values.size();
    const std::vector<double> gradient = r < quality.values.size() ? quality.values[r].gradient : std::vector<double>();
    UncertainValue& result = results[r];
    result.value = result.mean = isMetric ? values[r] : powers[r - values.size()];
    result.deviation =
        DeviationOf(isMetric ? SlopesOf(gradient, changed, own) : powerSlopes[r - values.size()], spread);
    const double reach = NormalQuantile(kHighShare) * result.deviation;
    result.low = result.mean - reach;
    result.high = result.mean + reach;
  }
  return results;
}

std::vector<UncertainValue> DrawnUncertainty(const PhysicalSettings& settings, const QualityRequest& request,
                                             const Eye& measured, const Adjustments& adjustments,
                                             const CoefficientSpread& spread, int draws, std::uint64_t seed) {
  std::vector<UncertainValue> results = NamesOf(request);
  QualityEvaluator evaluator(settings, request);
  const CovarianceFactors factors = FactorsOf(spread);
  std::vector<std::vector<double>> drawn(results.size());
  for (int row = 0; row < draws; ++row) {
    std::vector<double> independent;
    for (std::size_t place = 0; place < factors.rank(); ++place) {
      independent.push_back(NormalNumber(seed, static_cast<std::uint64_t>(row), static_cast<std::uint32_t>(place)));
    }
    const Eye eye = AdjustedWith(measured, adjustments, spread.terms, factors.Correlate(independent));
    const std::vector<double> values = AllValuesOf(evaluator, eye);
    for (std::size_t r = 0; r < values.size(); ++r) drawn[r].push_back(values[r]);
  }
  const std::vector<double> own = AllValuesOf(evaluator, AdjustedWith(measured, adjustments, {}, {}));
  for (std::size_t r = 0; r < results.size(); ++r) {
    results[r].value = own[r];
    Describe(std::move(drawn[r]), results[r]);
  }
  return results;
}

std::vector<std::string> FarFromFirstOrder(std::span<const UncertainValue> firstOrder,
                                           std::span<const UncertainValue> drawn, int draws) {
  constexpr double kErrors = 4.0;
  constexpr double kRounding = 1e-12;  // deviations of values that depend on no uncertain coefficient
  const double ofMean = kErrors / std::sqrt(draws), ofDeviation = kErrors / std::sqrt(2.0 * (draws - 1));
  std::vector<std::string> far;
  for (std::size_t i = 0; i < firstOrder.size(); ++i) {
    const UncertainValue &first = firstOrder[i], &other = drawn[i];
    if (!std::isfinite(first.deviation) || !std::isfinite(other.deviation)) continue;
    if (std::abs(other.mean - first.mean) > ofMean * first.deviation + kRounding ||
        std::abs(other.deviation - first.deviation) > ofDeviation * first.deviation + kRounding) {
      far.push_back(first.name);
    }
  }
  return far;
}

}  // namespace orvanel::evaluation
