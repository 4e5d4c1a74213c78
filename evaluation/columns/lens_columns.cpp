// Orders the numbers of a correction as columns.
#include "evaluation/columns/lens_columns.h"

#include <limits>
#include <optional>

#include "evaluation/columns/quality_columns.h"
#include "metrics/quality_names.h"

namespace orvanel::evaluation {
namespace {

void AddLens(const Refraction& lens, ColumnValues& columns) {
  for (const double number : {lens.sphere.value(), lens.cylinder.value(), lens.axis.value()}) columns.Add(number);
}

}  // namespace

std::vector<std::string> LensColumnNames(const QualityRequest& request) {
  const QualityMetric metric = request.metrics.front();
  const std::string by = "_by_" + std::string(RowOf(metric).name), value = ColumnNameOf(metric, request);
  std::vector<std::string> names;
  for (const std::string& which : {by, by + "_trial_case"}) {
    for (const char* const part : {"sphere_d", "cylinder_d", "axis_deg"}) {
      names.push_back("refraction_" + std::string(part) + which);
    }
  }
  for (const char* const lens : {"without_lens_", "best_lens_", "trial_case_"}) names.push_back(lens + value);
  return names;
}

void AddLensColumns(QualityEvaluator& evaluator, const Eye& eye, const CorrectionRequest& request,
                    ColumnValues& columns) {
  const std::string name = RowOf(evaluator.request().metrics.front()).name;
  std::optional<Correction> found;
  try {
    found = BestCorrection(evaluator, eye, request);
  } catch (const PhysicalRefusal& refusal) {
    if (!IsTooSteep(refusal)) throw;
    columns.Note("lens by " + name, refusal.what());
    const std::size_t count = LensColumnNames(evaluator.request()).size();
    for (std::size_t i = 0; i < count; ++i) columns.Add(std::numeric_limits<double>::quiet_NaN());
    return;
  }
  AddLens(found->best.lens.power, columns);
  AddLens(found->inCase.lens.power, columns);
  AddQuality(found->none.quality, name + " without a lens", columns);
  AddQuality(found->best.quality, name + " with the best lens", columns);
  AddQuality(found->inCase.quality, name + " with that of the trial case", columns);
  if (!found->converged) columns.Note("lens by " + name, "the search ended before its steps were small enough");
}

}  // namespace orvanel::evaluation
