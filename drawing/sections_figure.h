// The plot of the sections of the modulation transfer function.
#ifndef ORVANEL_DRAWING_SECTIONS_FIGURE_H
#define ORVANEL_DRAWING_SECTIONS_FIGURE_H

#include "base/layers.h"
#include "drawing/canvas/canvas.h"
#include "evaluation/simulation.h"
#include "models/scales.h"

namespace orvanel::drawing {

constexpr double kSectionsFigureWidth = 744.0;

// The sections of the modulation transfer function beside the diffraction limit, with an axis for either scale.
void DrawSections(Canvas& canvas, Point corner, const Simulation& simulation, const Scales& scales);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_SECTIONS_FIGURE_H
