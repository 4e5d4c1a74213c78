// Draws curves of metrics through focus, with their optimum and depth of focus.
#ifndef ORVANEL_DRAWING_QUALITY_FOCUS_FIGURE_H
#define ORVANEL_DRAWING_QUALITY_FOCUS_FIGURE_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "evaluation/through_focus.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

struct FocusSheet {
  std::string name;                   // of the eye
  std::string conditions;             // pupil, light, metrics
  std::vector<std::string> warnings;  // below the plots
};

// One plot for each unit, of at most five curves; then the next. Lines between samples are straight.
ColourPicture DrawFocusSheet(const FocusSheet& sheet, const ThroughFocus& focus);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_QUALITY_FOCUS_FIGURE_H
