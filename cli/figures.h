// The plane figures of a simulation.
#ifndef ORVANEL_CLI_FIGURES_H
#define ORVANEL_CLI_FIGURES_H

#include "cli/plane_figure.h"
#include "cli/scales.h"
#include "cli/simulation.h"

namespace orvanel::cli {

PlaneFigure WavefrontFigure(const Simulation& simulation);
PlaneFigure PsfFigure(const Simulation& simulation, const Scales& scales);
PlaneFigure PsfLogFigure(const Simulation& simulation, const Scales& scales);
PlaneFigure MtfFigure(const Simulation& simulation, const Scales& scales);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_FIGURES_H
