// Draws one sheet with the retinal image of every ring.
#ifndef ORVANEL_DRAWING_CHART_SHEET_H
#define ORVANEL_DRAWING_CHART_SHEET_H

#include "base/layers.h"
#include "evaluation/simulated_eye.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

// Draws a row for each acuity and a column for each gap direction. With one direction only, a row has several acuities.
// All rings have one magnification, which a scale bar shows. Panels are as large as their rings need.
ColourPicture DrawChart(const SimulatedEye& simulated);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_CHART_SHEET_H
