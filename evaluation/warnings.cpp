// Finds undersampled wavefronts, and rings of a wrong size, and words the warnings.
#include "evaluation/warnings.h"

#include <cmath>

#include "base/number_text.h"
#include "evaluation/rings.h"
#include "models/sampling.h"
#include "orvanel/sampling.h"

namespace orvanel::evaluation {
namespace {

constexpr int kLargestRing = ORVANEL_GRID_SIZE * 7 / 8;  // samples; leaves space for the blur at the edges

}  // namespace

std::vector<std::string> Warnings(const Results& results) {
  std::vector<std::string> warnings;
  if (results.undersampled > kLargestUndersampledShare) {
    warnings.push_back(
        "in " + NumberText(100.0 * results.undersampled, 2) +
        " % of the pupil the wavefront changes by more than half a wave from one sample to the next, by " +
        NumberText(results.wavefront.steepestStep / ToMicrometres(Wavelength()), 3) +
        " waves at most: all results show the light from there in wrong places");
  }
  double warned = 0.0;  // rings of the same acuity are adjacent
  for (const Ring& ring : results.rings) {
    if (!IsFarOff(ring) || ring.request.acuity == warned) continue;
    warned = ring.request.acuity;
    warnings.push_back("the ring requested with acuity " + ShortestText(warned) + " is drawn with acuity " +
                       NumberText(ring.effectiveAcuity, 3) + ", " + DeviationText(ring) +
                       " that: the diameter of a ring is a multiple of 5 samples, here " +
                       std::to_string(ring.diameter) + "; the names of its files have the acuity drawn");
  }
  constexpr int kFits = kLargestRing - 5;  // diameters are rounded to multiples of 5
  double reported = 0.0;                   // rings of the same acuity are adjacent
  for (const Ring& ring : results.rings) {
    if (ring.diameter <= kLargestRing || ring.request.acuity == reported) continue;
    reported = ring.request.acuity;
    warnings.push_back("the ring of acuity " + ShortestText(reported) + " is " + std::to_string(ring.diameter) +
                       " samples wide in a field of 256: it is cut off, or its light wraps around the edges; use an "
                       "acuity of at least " +
                       ShortestText(std::ceil(100.0 * ring.effectiveAcuity * ring.diameter / kFits) / 100.0));
  }
  return warnings;
}

}  // namespace orvanel::evaluation
