// The plot of the sections of the modulation transfer function.
#ifndef ORVANEL_CLI_SECTIONS_FIGURE_H
#define ORVANEL_CLI_SECTIONS_FIGURE_H

#include "cli/canvas.h"
#include "cli/scales.h"
#include "cli/simulation.h"

namespace orvanel::cli {

constexpr double kSectionsFigureWidth = 744.0;

// The sections of the modulation transfer function beside the diffraction limit, with an axis for either scale.
void DrawSections(Canvas& canvas, Point corner, const Simulation& simulation, const Scales& scales);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_SECTIONS_FIGURE_H
