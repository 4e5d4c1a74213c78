// Text that keeps to its area: broken into lines, or shortened where there would be too many.
#ifndef ORVANEL_DRAWING_CANVAS_TEXT_LAYOUT_H
#define ORVANEL_DRAWING_CANVAS_TEXT_LAYOUT_H

#include <cstddef>
#include <string>
#include <vector>

#include "base/layers.h"
#include "drawing/canvas/canvas.h"

namespace orvanel::drawing {

double TextWidth(const std::string& text, const TextStyle& style);

// Lines no wider than `width`, broken at blanks, and within a word where it alone is wider. Where there would be more
// than `most` lines, the last ends in an ellipsis.
std::vector<std::string> Wrapped(const std::string& text, const TextStyle& style, double width, std::size_t most);

// The style, smaller where the text would else be wider than `width`.
TextStyle Fitted(const std::string& text, TextStyle style, double width);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_CANVAS_TEXT_LAYOUT_H
