// Computes columns of the best focus and the depth of focus.
#ifndef ORVANEL_EVALUATION_COLUMNS_FOCUS_COLUMNS_H
#define ORVANEL_EVALUATION_COLUMNS_FOCUS_COLUMNS_H

#include <span>
#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/columns/column_values.h"
#include "evaluation/quality_evaluator.h"

namespace orvanel::evaluation {

// Of each metric, and of the MTF at each frequency: the lens of the best focus, the value behind it, and the depth of
// focus for each of kDepthShares.
std::vector<std::string> FocusColumnNames(const QualityRequest& request);

// Computes the metrics behind each lens. A depth of focus that reaches the end of the range is missing, and noted.
// Where the wavefront is too steep behind all lenses, all values are missing. Throws what ThroughFocusOf throws for
// other reasons.
//   lenses  rising, in dioptres
void AddFocusColumns(QualityEvaluator& evaluator, const Eye& eye, std::span<const double> lenses,
                     ColumnValues& columns);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_COLUMNS_FOCUS_COLUMNS_H
