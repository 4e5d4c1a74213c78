// Fits text to an area: breaks it into lines, shortens it, or makes it smaller.
#ifndef ORVANEL_DRAWING_CANVAS_TEXT_LAYOUT_H
#define ORVANEL_DRAWING_CANVAS_TEXT_LAYOUT_H

#include <cstddef>
#include <string>
#include <vector>

#include "base/layers.h"
#include "drawing/canvas/canvas.h"

namespace orvanel::drawing {

double TextWidth(const std::string& text, const TextStyle& style);

// Lines of at most `width`, broken at blanks. A word that is wider than a line is broken too. After `most` lines the
// text ends in an ellipsis.
std::vector<std::string> Wrapped(const std::string& text, const TextStyle& style, double width, std::size_t most);

// The style, made smaller if the text would be wider than `width`.
TextStyle Fitted(const std::string& text, TextStyle style, double width);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_CANVAS_TEXT_LAYOUT_H
