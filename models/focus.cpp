// Names the measures of focus.
#include "models/focus.h"

namespace orvanel::models {
namespace {

constexpr FocusMeasureText kStrehlText{"Strehl ratio", "the Strehl ratio", "", "", false};
constexpr FocusMeasureText kCircleText{"Deviation", "the deviation from a circle", "um", "from a circle", true};
constexpr FocusMeasureText kAxisText{"Strehl ratio", "the Strehl ratio on the axis", "", "on the axis", false};
constexpr FocusMeasureText kPeakText{"Strehl ratio", "the Strehl ratio at the peak", "", "at the peak", false};
constexpr FocusMeasureText kMeanText{"MTF", "the MTF", "", "mean of all directions", false};
constexpr FocusMeasureText kHorizontalText{"MTF", "the horizontal MTF", "", "horizontal", false};
constexpr FocusMeasureText kVerticalText{"MTF", "the vertical MTF", "", "vertical", false};

}  // namespace

const FocusMeasureText& TextOf(FocusMeasure measure) {
  switch (measure) {
    case FocusMeasure::kStrehl:
      return kStrehlText;
    case FocusMeasure::kCircle:
      return kCircleText;
    case FocusMeasure::kStrehlAxis:
      return kAxisText;
    case FocusMeasure::kStrehlPeak:
      return kPeakText;
    case FocusMeasure::kMtfMean:
      return kMeanText;
    case FocusMeasure::kMtfHorizontal:
      return kHorizontalText;
    case FocusMeasure::kMtfVertical:
      return kVerticalText;
  }
  return kStrehlText;
}

bool IsMtf(FocusMeasure measure) {
  return measure == FocusMeasure::kMtfMean || measure == FocusMeasure::kMtfHorizontal ||
         measure == FocusMeasure::kMtfVertical;
}

}  // namespace orvanel::models
