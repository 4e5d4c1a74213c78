// Computes metrics of image quality of an eye behind a range of lenses: through focus.
//
// Lenses are spheres at the pupil, in dioptres. A plus lens makes the eye short-sighted, so that the lens of the best
// focus is the one to be worn.
#ifndef ORVANEL_EVALUATION_THROUGH_FOCUS_H
#define ORVANEL_EVALUATION_THROUGH_FOCUS_H

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/layers.h"
#include "evaluation/focus_curve.h"
#include "evaluation/quality_evaluator.h"
#include "eye/eye.h"
#include "metrics/quality_names.h"

namespace orvanel::evaluation {

// The depth of focus is given for these shares of the best value.
constexpr double kDepthShares[] = {0.8, 0.5};

constexpr double kFarthestLens = 30.0, kSmallestLensStep = 0.001;  // dioptres
constexpr int kMostLenses = 1001;

// Parses "-2:2:0.125": the first lens, the last one, and the step. The last lens is left out where the steps miss it.
// Throws Error.
std::vector<double> LensesOfRange(std::string_view text);

// A metric of each lens.
struct FocusCurve {
  QualityColumn column;
  std::vector<double> values;    // not a number where the metric has none
  std::vector<double> tooSteep;  // lenses without a value, since the wavefront behind them is too steep for the metric
  std::optional<FocusOptimum> optimum;
};

struct ThroughFocus {
  std::vector<double> lenses;
  std::vector<FocusCurve> curves;  // in the order of ColumnsOf
  std::vector<double> tooSteep;    // lenses with which no metric has a value; curves do not name them again
};

// Of all metrics of the evaluator's request. A metric has no value behind lenses where the wavefront is too steep for
// it. Throws what the evaluator throws, and its refusal where no metric has a value with any lens.
//   eye     adjusted already
//   lenses  rising
ThroughFocus ThroughFocusOf(QualityEvaluator& evaluator, const Eye& eye, std::span<const double> lenses);

// Sentences about curves whose optimum or depth is uncertain, and about lenses without values.
std::vector<std::string> FocusWarnings(const ThroughFocus& focus);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_THROUGH_FOCUS_H
