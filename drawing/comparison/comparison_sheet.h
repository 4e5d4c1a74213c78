// Draws one sheet with two eyes side by side, and their differences.
#ifndef ORVANEL_DRAWING_COMPARISON_COMPARISON_SHEET_H
#define ORVANEL_DRAWING_COMPARISON_COMPARISON_SHEET_H

#include "base/layers.h"
#include "evaluation/comparison/comparison.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

// Wavefront, PSF, MTF and letters of both eyes in columns with the same colour scales; beside them the differences, and
// below them a table of metrics. Both eyes need their planes.
ColourPicture DrawComparisonSheet(const Comparison& comparison);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_COMPARISON_COMPARISON_SHEET_H
