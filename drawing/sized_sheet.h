// Draws a chart or picture of true angular size as shown and as seen.
#ifndef ORVANEL_DRAWING_SIZED_SHEET_H
#define ORVANEL_DRAWING_SIZED_SHEET_H

#include "base/layers.h"
#include "evaluation/simulated_eye.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

// Both panels have one magnification, which a scale bar shows. The simulated eye has a sized view.
ColourPicture DrawSizedView(const SimulatedEye& simulated);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_SIZED_SHEET_H
