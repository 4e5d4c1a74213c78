// Draws one sheet with every picture of a simulation.
#ifndef ORVANEL_DRAWING_OVERVIEW_H
#define ORVANEL_DRAWING_OVERVIEW_H

#include "base/layers.h"
#include "evaluation/simulated_eye.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

ColourPicture DrawOverview(const SimulatedEye& simulated);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_OVERVIEW_H
