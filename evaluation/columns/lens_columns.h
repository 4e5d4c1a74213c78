// Computes columns of the lens that maximises a metric of image quality.
#ifndef ORVANEL_EVALUATION_COLUMNS_LENS_COLUMNS_H
#define ORVANEL_EVALUATION_COLUMNS_LENS_COLUMNS_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/columns/column_values.h"
#include "evaluation/correction/best_correction.h"

namespace orvanel::evaluation {

// Sphere, cylinder and axis of the best lens and of the best one in the trial case; the metric without a lens and with
// each of the two. Lenses are to be worn, with minus cylinders and axes of trial frames.
//   request  has one metric
std::vector<std::string> LensColumnNames(const QualityRequest& request);

// Where the wavefront is too steep for the search, all values are missing. Throws what BestCorrection throws for other
// reasons.
void AddLensColumns(QualityEvaluator& evaluator, const Eye& eye, const CorrectionRequest& request,
                    ColumnValues& columns);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_COLUMNS_LENS_COLUMNS_H
