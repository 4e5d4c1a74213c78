// Makes names of rings from their acuities.
#include "cli/ring_files.h"

#include "base/number_text.h"
#include "models/sampling.h"

namespace orvanel::cli {

std::string RingStem(double drawnAcuity, Gap gap) {
  constexpr int kDigits = 4;
  return "ring_acuity-" + NumberText(drawnAcuity, kDigits) + "_gap-" + Word(gap);
}

std::string RingStem(Millimetres pupil, const RingRequest& request) {
  return RingStem(EffectiveAcuity(pupil, RingDiameter(pupil, request.acuity)), request.gap);
}

}  // namespace orvanel::cli
