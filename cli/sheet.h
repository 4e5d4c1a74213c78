// What sheets of pictures have in common: their header and their panels.
#ifndef ORVANEL_CLI_SHEET_H
#define ORVANEL_CLI_SHEET_H

#include <string>

#include "cli/canvas.h"
#include "cli/results.h"

namespace orvanel::cli {

constexpr double kHeaderHeight = 196.0;

// The eye's name, its numbers, how it was measured, what was done to it, and its source. The box has the height above
// and is at least 1600 wide.
void DrawSheetHeader(Canvas& canvas, const Box& box, const Results& results);

// A picture with an outline, and a label below it.
void DrawPanel(Canvas& canvas, const Box& box, const ColourPicture& picture, const std::string& label);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_SHEET_H
