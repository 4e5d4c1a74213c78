// Makes names of rings from their acuities.
#include "cli/ring_files.h"

#include "base/number_text.h"
#include "models/sampling.h"

namespace orvanel::cli {

namespace {

std::string Stem(const std::string& acuity, Gap gap) { return "ring_acuity-" + acuity + "_gap-" + Word(gap); }

}  // namespace

std::string RingStem(double drawnAcuity, Gap gap) {
  constexpr int kDigits = 4;
  return Stem(NumberText(drawnAcuity, kDigits), gap);
}

std::string RingStem(const Request& request, const RingRequest& ring) {
  if (request.model == ModelKind::kPhysical) return Stem(ShortestText(ring.acuity), ring.gap);
  return RingStem(EffectiveAcuity(request.pupil, RingDiameter(request.pupil, ring.acuity)), ring.gap);
}

}  // namespace orvanel::cli
