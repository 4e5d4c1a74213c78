// Draws one sheet with letters as an eye sees them without a lens and with its best ones.
#ifndef ORVANEL_DRAWING_CORRECTION_SHEET_H
#define ORVANEL_DRAWING_CORRECTION_SHEET_H

#include <string>

#include "base/layers.h"
#include "evaluation/correction/corrected_view.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

struct CorrectionSheet {
  std::string name;        // of the eye
  std::string conditions;  // pupil, light, metric: one line
  Side side = Side::kUnknown;
  CorrectedView view;
  std::string without, best, inCase;  // the metric with each lens
};

ColourPicture DrawCorrectionSheet(const CorrectionSheet& sheet, const Correction& correction);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_CORRECTION_SHEET_H
