// Measures and rasterises text in the embedded typeface, DejaVu Sans, regular and bold.
#ifndef ORVANEL_DRAWING_CANVAS_FONT_H
#define ORVANEL_DRAWING_CANVAS_FONT_H

#include <functional>
#include <string>

#include "base/layers.h"

namespace orvanel::drawing {

// Whether both faces have all characters of a UTF-8 text and can set them left to right without shaping. These are
// Latin, Greek, Cyrillic, Armenian, Georgian, numbers, punctuation and symbols. Combining marks, control characters and
// invalid UTF-8 are not among them.
bool IsDrawable(const std::string& text);

// Width of a line of UTF-8 text at `size` pixels of the em.
double TextLength(const std::string& text, double size, bool bold);

// Visits each pixel that the text covers.
//   along     pixels from the text's start; whole numbers
//   down      pixels from the baseline, negative above it
//   coverage  above 0.0, at most 1.0
using TouchPixel = std::function<void(double along, int down, double coverage)>;

void RasterizeText(const std::string& text, double size, bool bold, const TouchPixel& touch);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_CANVAS_FONT_H
