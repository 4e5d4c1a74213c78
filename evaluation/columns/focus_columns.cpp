// Orders the numbers of curves through focus as columns.
#include "evaluation/columns/focus_columns.h"

#include <cmath>
#include <limits>
#include <optional>

#include "base/number_text.h"
#include "evaluation/columns/quality_columns.h"
#include "evaluation/through_focus.h"
#include "metrics/quality_names.h"

namespace orvanel::evaluation {
namespace {

constexpr const char* kSubject = "through focus";
constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

// The columns of one curve.
void AddNames(const std::string& by, const std::string& value, std::vector<std::string>& names) {
  names.push_back("best_focus_lens_d_by_" + by);
  names.push_back("best_focus_" + value);
  for (const double share : kDepthShares) {
    names.push_back("depth_of_focus_d_at_" + ShortestText(std::round(100.0 * share)) + "_percent_by_" + by);
  }
}

void AddCurve(const std::optional<FocusOptimum>& optimum, ColumnValues& columns) {
  columns.Add(optimum ? optimum->lens : kMissing);
  columns.Add(optimum ? optimum->value : kMissing);
  for (const double share : kDepthShares) {
    double width = kMissing;
    if (optimum) {
      for (const DepthOfFocus& depth : optimum->depths) {
        if (depth.share == share && depth.isWhole()) width = depth.width();
      }
    }
    columns.Add(width);
  }
}

}  // namespace

std::vector<std::string> FocusColumnNames(const QualityRequest& request) {
  std::vector<std::string> names;
  for (const QualityMetric metric : request.metrics) AddNames(RowOf(metric).name, ColumnNameOf(metric, request), names);
  for (const double frequency : request.mtfAtCpd) {
    const std::string mtf = "mtf_mean_over_angle_at_" + ShortestText(frequency) + "_cpd";
    AddNames(mtf, mtf + "_physical", names);
  }
  return names;
}

void AddFocusColumns(QualityEvaluator& evaluator, const Eye& eye, std::span<const double> lenses,
                     ColumnValues& columns) {
  std::optional<ThroughFocus> focus;
  try {
    focus = ThroughFocusOf(evaluator, eye, lenses);
  } catch (const PhysicalRefusal& refusal) {
    if (!IsTooSteep(refusal)) throw;
    columns.Note(kSubject, refusal.what());
    const std::size_t count = FocusColumnNames(evaluator.request()).size();
    for (std::size_t i = 0; i < count; ++i) columns.Add(kMissing);
    return;
  }
  for (const FocusCurve& curve : focus->curves) AddCurve(curve.optimum, columns);
  for (std::string sentence : FocusWarnings(*focus)) {
    sentence.pop_back();  // the full stop
    columns.Note(kSubject, sentence);
  }
}

}  // namespace orvanel::evaluation
