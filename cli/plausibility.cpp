// Doubts about pupils, wavefronts and ring sizes.
#include "cli/plausibility.h"

#include <cmath>

#include "cli/eyes/preparation.h"
#include "cli/number_text.h"
#include "cli/refraction.h"
#include "cli/rings.h"
#include "orvanel/sampling.h"

namespace orvanel::cli {
namespace {

constexpr Millimetres kSmallestPupil{0.5}, kLargestPupil{12.0};  // no living human eye's lies outside
constexpr double kLargestRefraction = 30.0;                      // dioptres, of mean sphere or any meridian
constexpr int kLargestRing = ORVANEL_GRID_SIZE * 7 / 8;          // samples; leaves the blur some room at the edges

}  // namespace

std::vector<std::string> EyeWarnings(const Eye& eye) {
  std::vector<std::string> warnings;
  if (eye.pupil < kSmallestPupil || eye.pupil > kLargestPupil) {
    warnings.push_back("the pupil of " + Text(eye.pupil.value(), 6) +
                       " mm is unlike a human eye's, which measures 2 to 8 mm");
  }
  const PowerVector powers = LeastSquaresRefraction(OsaCoefficients(eye), eye.pupil);
  const double m = powers.m.value(), j0 = powers.j0.value(), j45 = powers.j45.value();
  const double astigmatism = std::sqrt(j0 * j0 + j45 * j45);
  const double strongest = m < 0.0 ? m - astigmatism : m + astigmatism;
  if (std::abs(strongest) > kLargestRefraction) {
    warnings.push_back("the refraction of " + FixedText(strongest, 1) + " D in its strongest meridian is beyond " +
                       Text(kLargestRefraction, 2) + " D; check unit, normalisation and pupil");
  }
  return warnings;
}

std::vector<std::string> Warnings(const Simulation& simulation) {
  std::vector<std::string> warnings;
  const Wavefront& wavefront = simulation.wavefront;
  if (wavefront.aliasedShare > kLargestUndersampledShare) {
    warnings.push_back(
        "in " + Text(100.0 * wavefront.aliasedShare, 2) +
        " % of the pupil the wavefront changes by more than half a wave from one sample to the next, by " +
        Text(wavefront.steepestStep / ToMicrometres(Wavelength()), 3) +
        " waves at most: the light from there comes out in wrong places in all results");
  }
  double warned = 0.0;  // rings of one acuity follow each other
  for (const Ring& ring : simulation.rings) {
    if (!IsFarOff(ring) || ring.request.acuity == warned) continue;
    warned = ring.request.acuity;
    warnings.push_back("the ring asked for with acuity " + ShortestText(warned) + " is drawn with acuity " +
                       Text(ring.effectiveAcuity, 3) + ", " + DeviationText(ring) +
                       " that: rings have a multiple of 5 samples, this one " + std::to_string(ring.diameter) +
                       ", and its files are named by the acuity drawn");
  }
  constexpr int kFits = kLargestRing - 5;  // a ring's diameter is rounded to fives
  double reported = 0.0;                   // rings of one acuity follow each other
  for (const Ring& ring : simulation.rings) {
    if (ring.diameter <= kLargestRing || ring.request.acuity == reported) continue;
    reported = ring.request.acuity;
    warnings.push_back(
        "the ring of acuity " + ShortestText(reported) + " is " + std::to_string(ring.diameter) +
        " samples wide in a field of 256: it is cut off or its light wraps round at the edges; rings fit "
        "from acuity " +
        ShortestText(std::ceil(100.0 * ring.effectiveAcuity * ring.diameter / kFits) / 100.0) + " on");
  }
  return warnings;
}

void TableDoubts::Add(const Eye& eye, const std::string& place) {
  ++eyes_;
  const std::vector<std::string> warnings = EyeWarnings(eye);
  if (warnings.empty()) return;
  if (doubtful_ == 0) first_ = place + ": " + warnings.front();
  ++doubtful_;
}

std::string TableDoubts::Summary() const {
  if (doubtful_ == 0) return {};
  return std::to_string(doubtful_) + " of " + std::to_string(eyes_) + (eyes_ == 1 ? " eye is" : " eyes are") +
         " unlike a human's; the first in " + first_;
}

}  // namespace orvanel::cli
