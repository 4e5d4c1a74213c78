// Makes the plane figures of a simulation: wavefront, PSF, logarithmic PSF, MTF.
#ifndef ORVANEL_DRAWING_FIGURES_H
#define ORVANEL_DRAWING_FIGURES_H

#include "base/layers.h"
#include "drawing/plane_figure.h"
#include "evaluation/simulation.h"
#include "models/scales.h"

namespace orvanel::drawing {

//   side  of the eye; it marks nasal and temporal
PlaneFigure WavefrontFigure(const Simulation& simulation, Side side);
PlaneFigure PsfFigure(const Simulation& simulation, const Scales& scales, Side side);
PlaneFigure PsfLogFigure(const Simulation& simulation, const Scales& scales, Side side);
PlaneFigure MtfFigure(const Simulation& simulation, const Scales& scales);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_FIGURES_H
