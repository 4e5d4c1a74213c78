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

// A window that loses light, and samples that miss details: the PSF has none smaller than half of lambda/D.
void AddPsfWarnings(const Results& results, std::vector<std::string>& warnings) {
  if (results.psf.empty()) return;
  const PhysicalResults& own = *results.physical;
  constexpr double kMinutesPerDegree = 60.0;
  const double finest = kMinutesPerDegree / own.cutOff.value() / 2.0, step = results.retinaAxis.step.value();
  if (step > finest * (1.0 + 1e-9)) {
    warnings.push_back("the samples of the PSF are " + NumberText(step, 3) +
                       " arc minutes apart, more than half of lambda/D, " + NumberText(finest, 3) +
                       ": they are exact, but miss details between them; use more samples or a smaller field");
    return;
  }
  constexpr double kEnough = 0.5;
  if (own.psfLight < kEnough) {
    warnings.push_back("the window of the PSF has " + NumberText(100.0 * own.psfLight, 3) +
                       " % of the light; use a larger field");
  }
}

}  // namespace

std::vector<std::string> Warnings(const Results& results) {
  std::vector<std::string> warnings;
  if (results.physical) {
    AddPsfWarnings(results, warnings);
    return warnings;
  }
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
