// Names the measures of focus.
#include "models/focus.h"

namespace orvanel::models {
namespace {

constexpr FocusMeasureText kStrehlText{"Strehl ratio", "the Strehl ratio", "", "", false};
constexpr FocusMeasureText kCircleText{"Deviation", "the deviation from a circle", "um", "from a circle", true};

}  // namespace

const FocusMeasureText& TextOf(FocusMeasure measure) {
  return measure == FocusMeasure::kStrehl ? kStrehlText : kCircleText;
}

}  // namespace orvanel::models
