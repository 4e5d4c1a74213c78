// Draws the plot of the MTF sections.
#ifndef ORVANEL_DRAWING_SECTIONS_FIGURE_H
#define ORVANEL_DRAWING_SECTIONS_FIGURE_H

#include "base/layers.h"
#include "drawing/canvas/surface.h"
#include "models/results.h"

namespace orvanel::drawing {

constexpr double kSectionsFigureWidth = 744.0;

// Draws the MTF sections beside the diffraction limit, with an axis for each scale.
void DrawSections(Surface& surface, Point corner, const Results& results);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_SECTIONS_FIGURE_H
