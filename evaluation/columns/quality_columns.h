// Computes columns of metrics of image quality.
#ifndef ORVANEL_EVALUATION_COLUMNS_QUALITY_COLUMNS_H
#define ORVANEL_EVALUATION_COLUMNS_QUALITY_COLUMNS_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/columns/column_values.h"
#include "evaluation/quality_evaluator.h"
#include "models/adapters/physical_refusal.h"

namespace orvanel::evaluation {

// The names of the columns, in the order of the request.
std::vector<std::string> QualityColumnNames(const QualityRequest& request);

// True if the wavefront is too steep for a value. The eye itself is valid.
bool IsTooSteep(const PhysicalRefusal& refusal);

// Adds one value for each metric, with its note. Where the wavefront is too steep for some metrics, only those are
// missing, so that a value does not depend on the other metrics of the request. Throws what the evaluator throws for
// other reasons.
void AddQualityColumns(QualityEvaluator& evaluator, const Eye& eye, ColumnValues& columns);

// Adds one value. Its note, or the fact that there is no value, is noted for the subject.
void AddQuality(const QualityValue& quality, const std::string& subject, ColumnValues& columns);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_COLUMNS_QUALITY_COLUMNS_H
