// Draws one letter through focus, as a row of retinal images.
#ifndef ORVANEL_DRAWING_STRIP_SHEET_H
#define ORVANEL_DRAWING_STRIP_SHEET_H

#include <string>

#include "base/layers.h"
#include "drawing/canvas/canvas.h"
#include "evaluation/simulated_eye.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

// "logMAR 0.3, decimal acuity 0.5, letters 9.98′ high".
std::string LetterSizeText(double logMar);

// The images from left to right, the lens of each below it. Up to 20 fit into the width of a sheet.
constexpr double kStripHeight = 334.0;
void DrawStrip(Canvas& canvas, Point corner, double width, const FocusStrip& strip, const SimulatedEye& simulated);

// The strip below the head of a sheet.
ColourPicture DrawStripSheet(const SimulatedEye& simulated);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_STRIP_SHEET_H
