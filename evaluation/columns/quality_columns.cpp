// Asks for all metrics at once, and for each alone where the wavefront is too steep for some.
#include "evaluation/columns/quality_columns.h"

#include <cmath>
#include <limits>
#include <optional>

#include "metrics/quality_names.h"

namespace orvanel::evaluation {
namespace {

// Empty if the wavefront is too steep for one of the metrics.
std::optional<Quality> AllTogether(QualityEvaluator& evaluator, const Eye& eye) {
  try {
    return evaluator.Evaluate(eye);
  } catch (const PhysicalRefusal& refusal) {
    if (!IsTooSteep(refusal)) throw;
    return std::nullopt;
  }
}

void AddAlone(QualityEvaluator& evaluator, const Eye& eye, QualityMetric metric, ColumnValues& columns) {
  const std::string name = RowOf(metric).name;
  try {
    AddQuality(evaluator.EvaluateOne(eye, metric), name, columns);
  } catch (const PhysicalRefusal& refusal) {
    if (!IsTooSteep(refusal)) throw;
    columns.Add(std::numeric_limits<double>::quiet_NaN());
    columns.Note(name, refusal.what());
  }
}

}  // namespace

std::vector<std::string> QualityColumnNames(const QualityRequest& request) {
  std::vector<std::string> names;
  for (const QualityMetric metric : request.metrics) names.push_back(ColumnNameOf(metric, request));
  return names;
}

bool IsTooSteep(const PhysicalRefusal& refusal) { return refusal.refusal.problem == physical::Problem::kTooSteep; }

void AddQualityColumns(QualityEvaluator& evaluator, const Eye& eye, ColumnValues& columns) {
  if (const std::optional<Quality> quality = AllTogether(evaluator, eye)) {
    for (const QualityValue& value : quality->values) AddQuality(value, RowOf(value.metric).name, columns);
    return;
  }
  for (const QualityMetric metric : evaluator.request().metrics) AddAlone(evaluator, eye, metric, columns);
}

void AddQuality(const QualityValue& quality, const std::string& subject, ColumnValues& columns) {
  columns.Add(quality.value);
  if (quality.note != QualityNote::kNone) {
    columns.Note(subject, metrics::TextOf(quality.note));
  } else if (!std::isfinite(quality.value)) {
    columns.Note(subject, "there is no value");
  }
}

}  // namespace orvanel::evaluation
