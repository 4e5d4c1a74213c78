// The plane figures of a simulation.
#ifndef ORVANEL_CLI_FIGURES_H
#define ORVANEL_CLI_FIGURES_H

#include "cli/plane_figure.h"
#include "cli/scales.h"
#include "cli/simulation.h"

namespace orvanel::cli {

//   side  of the eye, by which nasal and temporal are marked
PlaneFigure WavefrontFigure(const Simulation& simulation, Side side);
PlaneFigure PsfFigure(const Simulation& simulation, const Scales& scales, Side side);
PlaneFigure PsfLogFigure(const Simulation& simulation, const Scales& scales, Side side);
PlaneFigure MtfFigure(const Simulation& simulation, const Scales& scales);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_FIGURES_H
