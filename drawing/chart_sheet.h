// One sheet with every ring as the eye sees it.
#ifndef ORVANEL_DRAWING_CHART_SHEET_H
#define ORVANEL_DRAWING_CHART_SHEET_H

#include "base/layers.h"
#include "evaluation/results.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

// A row for each acuity and a column for each gap direction; where there is one direction only, rows of several
// acuities. All rings have one magnification, which a bar tells; panels are as large as their rings need.
ColourPicture DrawChart(const Results& results);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_CHART_SHEET_H
