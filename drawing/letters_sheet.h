// Draws lines of letters as shown and as seen, and one letter through focus.
#ifndef ORVANEL_DRAWING_LETTERS_SHEET_H
#define ORVANEL_DRAWING_LETTERS_SHEET_H

#include <vector>

#include "base/layers.h"
#include "drawing/canvas/canvas.h"
#include "evaluation/simulated_eye.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

// A line of letters as shown, below it as seen, with its size, a scale bar and the view.
constexpr double kLetterLineWidth = 990.0;  // 3 pixels of the canvas for a pixel
constexpr double kLetterLineHeight = 270.0;
constexpr double kLetterCellHeight = 760.0;
constexpr double kBelowLetters = 64.0;  // scale bar and view
void DrawLetterCell(Canvas& canvas, Point corner, const LetterLine& line, const SimulatedEye& simulated);

// A line of letters in a box, with a scale bar at its lower left and the view in the middle below it.
void DrawLetterBox(Canvas& canvas, const Box& box, const std::vector<Plane>& channels, ArcMinutes pixel, View view,
                   Side side);

// A row for each size: as shown on the left, as seen on the right; below them one letter through focus. Without
// letters the sheet says that the blur is too wide.
ColourPicture DrawLetters(const SimulatedEye& simulated);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_LETTERS_SHEET_H
