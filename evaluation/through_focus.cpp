// Evaluates the eye behind each lens, and words what is uncertain.
#include "evaluation/through_focus.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"
#include "evaluation/letters.h"
#include "models/adapters/physical_refusal.h"

namespace orvanel::evaluation {
namespace {

constexpr int kLensDigits = 4;

std::string ShareText(double share) { return NumberText(100.0 * share, 3) + " %"; }

std::string LensText(double lens) { return NumberText(lens, kLensDigits) + " D"; }

// "50 % of its best value"; "2 times its best value" where low values are better.
std::string LevelText(const FocusCurve& curve, const DepthOfFocus& depth) {
  return curve.column.higherIsBetter ? ShareText(depth.share) + " of its best value"
                                     : NumberText(1.0 / depth.share, 3) + " times its best value";
}

void AddWarnings(const FocusCurve& curve, std::vector<std::string>& warnings) {
  const std::string& name = curve.column.name;
  if (!curve.optimum) {
    warnings.push_back(name + " has no value with any lens.");
    return;
  }
  const FocusOptimum& optimum = *curve.optimum;
  if (optimum.atEdge) {
    warnings.push_back(name + " is best with the last lens that has a value, " + LensText(optimum.lens) +
                       "; its best focus may be farther out.");
  }
  if (optimum.depths.empty()) {
    warnings.push_back(name + (curve.column.hasZero ? " has no depth of focus, since its best value is not above 0."
                                                    : " has no depth of focus, since its zero depends on a unit."));
  }
  const bool fallsBelow = curve.column.higherIsBetter;
  for (const DepthOfFocus& depth : optimum.depths) {
    if (!depth.isWhole()) {
      const std::string side = depth.endsBelow ? "plus" : depth.endsAbove ? "minus" : "both";
      warnings.push_back(name + (fallsBelow ? " does not fall to " : " does not rise to ") + LevelText(curve, depth) +
                         " towards " + (side == "both" ? "either end" : "the " + side + " end") +
                         " of the range; the depth of focus is longer than " + NumberText(depth.width(), kLensDigits) +
                         " D.");
    }
    if (depth.again) {
      warnings.push_back(name + " is better than " + LevelText(curve, depth) +
                         " with other lenses too, outside of the depth of focus.");
    }
  }
  if (optimum.coarse) {
    const DepthOfFocus& depth = optimum.depths.back();
    warnings.push_back(name + " has fewer than " + std::to_string(kFewestSamples) +
                       " lenses within its depth of focus of " + ShareText(depth.share) +
                       ", so that numbers between them are uncertain; use a smaller step.");
  }
}

// Adds the values of a request in the order of ColumnsOf, none where the wavefront is too steep. What one metric
// refuses may be within reach of the others: each half of a refused request is tried on its own.
void AddValues(QualityEvaluator& evaluator, const Eye& eye, const QualityRequest& request,
               std::vector<std::optional<double>>& values, std::exception_ptr& refusal) {
  try {
    for (const double value : ValuesOf(evaluator.Evaluate(eye, request))) values.emplace_back(value);
    return;
  } catch (const PhysicalRefusal& error) {
    if (error.refusal.problem != physical::Problem::kTooSteep) throw;
    refusal = std::current_exception();
  }
  const std::size_t metrics = request.metrics.size(), count = metrics + request.mtfAtCpd.size();
  if (count == 1) {
    values.emplace_back();
    return;
  }
  const auto part = [&](std::size_t first, std::size_t end) {
    QualityRequest half = request;
    half.metrics.clear();
    half.mtfAtCpd.clear();
    for (std::size_t i = first; i < end; ++i) {
      if (i < metrics) {
        half.metrics.push_back(request.metrics[i]);
      } else {
        half.mtfAtCpd.push_back(request.mtfAtCpd[i - metrics]);
      }
    }
    AddValues(evaluator, eye, half, values, refusal);
  };
  part(0, count / 2);
  part(count / 2, count);
}

}  // namespace

std::vector<double> LensesOfRange(std::string_view text) {
  const auto wrong = [text](const std::string& why) {
    return Error(Quoted(text) + " " + why + "; write the first lens, the last one and the step in dioptres, as in " +
                 "-2:2:0.125");
  };
  std::vector<double> numbers;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(':', begin), text.size());
    try {
      numbers.push_back(ParseNumber(text.substr(begin, end - begin)));
    } catch (const Error&) {
      throw wrong("is not a range of lenses");
    }
    begin = end + 1;
  }
  if (numbers.size() != 3) throw wrong("is not a range of lenses");
  const double first = numbers[0], last = numbers[1], step = numbers[2];
  if (!(first < last)) throw wrong("does not rise");
  if (!(std::fabs(first) <= kFarthestLens && std::fabs(last) <= kFarthestLens)) {
    throw wrong("has lenses above " + ShortestText(kFarthestLens) + " D");
  }
  if (!(step >= kSmallestLensStep)) throw wrong("has a step below " + ShortestText(kSmallestLensStep) + " D");
  constexpr double kRounding = 1e-9;
  const double count = std::floor((last - first) / step + kRounding) + 1.0;
  if (count > kMostLenses) throw wrong("has more than " + std::to_string(kMostLenses) + " lenses");
  std::vector<double> lenses;
  // Decimal steps stay decimal: 0.3 is not 0.30000000000000004.
  constexpr double kDecimals = 1e9;
  for (int k = 0; k < static_cast<int>(count); ++k) {
    lenses.push_back(std::round((first + k * step) * kDecimals) / kDecimals + 0.0);
  }
  return lenses;
}

ThroughFocus ThroughFocusOf(QualityEvaluator& evaluator, const Eye& eye, std::span<const double> lenses) {
  ThroughFocus focus;
  focus.lenses.assign(lenses.begin(), lenses.end());
  for (QualityColumn& column : ColumnsOf(evaluator.request())) focus.curves.push_back({std::move(column), {}, {}, {}});
  std::exception_ptr refusal;
  for (const double lens : lenses) {
    std::vector<std::optional<double>> values;
    AddValues(evaluator, BehindLens(eye, lens), evaluator.request(), values, refusal);
    const bool none = std::none_of(values.begin(), values.end(), [](const auto& value) { return value.has_value(); });
    if (none) focus.tooSteep.push_back(lens);
    for (std::size_t i = 0; i < values.size(); ++i) {
      focus.curves[i].values.push_back(values[i].value_or(std::numeric_limits<double>::quiet_NaN()));
      if (!values[i] && !none) focus.curves[i].tooSteep.push_back(lens);
    }
  }
  if (focus.tooSteep.size() == lenses.size() && refusal) std::rethrow_exception(refusal);
  for (FocusCurve& curve : focus.curves) {
    const FocusShape shape{curve.column.higherIsBetter, curve.column.isSmooth, curve.column.hasZero};
    curve.optimum = OptimumOf(focus.lenses, curve.values, shape, kDepthShares);
  }
  return focus;
}

std::vector<std::string> FocusWarnings(const ThroughFocus& focus) {
  std::vector<std::string> warnings;
  if (!focus.tooSteep.empty()) {
    warnings.push_back(std::to_string(focus.tooSteep.size()) + " of " + std::to_string(focus.lenses.size()) +
                       " lenses have no values, from " + LensText(focus.tooSteep.front()) + " to " +
                       LensText(focus.tooSteep.back()) + ": the wavefront behind them is too steep for the model.");
  }
  for (const FocusCurve& curve : focus.curves) {
    const std::vector<double>& missing = curve.tooSteep;
    if (missing.empty()) continue;
    const bool one = missing.size() == 1;
    warnings.push_back(std::to_string(missing.size()) + " of " + std::to_string(focus.lenses.size()) +
                       (one ? " lenses has no value of " : " lenses have no values of ") + curve.column.name +
                       (one ? ", " + LensText(missing.front())
                            : ", from " + LensText(missing.front()) + " to " + LensText(missing.back())) +
                       ": the wavefront behind " + (one ? "it" : "them") + " is too steep for it.");
  }
  for (const FocusCurve& curve : focus.curves) AddWarnings(curve, warnings);
  return warnings;
}

}  // namespace orvanel::evaluation
