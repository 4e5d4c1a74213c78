// Makes the plane figures of results: wavefront, PSF, logarithmic PSF, MTF.
#ifndef ORVANEL_DRAWING_FIGURES_H
#define ORVANEL_DRAWING_FIGURES_H

#include <string>

#include "base/layers.h"
#include "drawing/plane_figure.h"
#include "models/results.h"

namespace orvanel::drawing {

// "classic model".
std::string ModelText(const Results& results);

// Both Strehl ratios with what they are.
std::string StrehlText(const Results& results);

//   side  of the eye; it marks nasal and temporal
PlaneFigure WavefrontFigure(const Results& results, Side side);
PlaneFigure PsfFigure(const Results& results, Side side);
PlaneFigure PsfLogFigure(const Results& results, Side side);
PlaneFigure MtfFigure(const Results& results);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_FIGURES_H
