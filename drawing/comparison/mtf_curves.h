// Draws the MTF of two eyes over frequency, mean of all directions.
#ifndef ORVANEL_DRAWING_COMPARISON_MTF_CURVES_H
#define ORVANEL_DRAWING_COMPARISON_MTF_CURVES_H

#include "base/layers.h"
#include "drawing/canvas/surface.h"
#include "models/results.h"

namespace orvanel::drawing {

constexpr double kMtfCurvesWidth = 744.0;

// The curves A and B with the diffraction limits of their pupils, in the height of a figure. A curve is left out where
// the blur is too wide for it.
void DrawMtfCurves(Surface& surface, Point corner, const Results& a, const Results& b);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_COMPARISON_MTF_CURVES_H
