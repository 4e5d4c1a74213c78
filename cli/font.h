// The embedded typeface, DejaVu Sans, regular and bold.
#ifndef ORVANEL_CLI_FONT_H
#define ORVANEL_CLI_FONT_H

#include <functional>
#include <string>

namespace orvanel::cli {

// Length of a line of UTF-8 text at `size` pixels of the em.
double TextLength(const std::string& text, double size, bool bold);

// Receives each pixel that the text touches.
//   along     pixels from the text's start; whole numbers
//   down      pixels from the baseline, negative above it
//   coverage  above 0.0, at most 1.0
using TouchPixel = std::function<void(double along, int down, double coverage)>;

void RasterizeText(const std::string& text, double size, bool bold, const TouchPixel& touch);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_FONT_H
