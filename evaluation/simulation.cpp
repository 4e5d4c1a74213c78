// Evaluates an eye with all needs, then computes its images.
#include "evaluation/simulation.h"

#include <cmath>

#include "models/errors.h"
#include "models/sampling.h"
#include "orvanel/ring.h"
#include "targets/sector_star.h"

namespace orvanel::evaluation {
namespace {

constexpr Needs kEverything = {
    Need::kUndersampled, Need::kWavefront, Need::kWavefrontRange, Need::kStrehl,      Need::kStrehlPeak,
    Need::kPsf,          Need::kMtf,       Need::kSections,       Need::kLineSpreads, Need::kImages};

void RequireFinite(const Results& results) {
  for (const double scalar : {results.strehl, results.scales.library.halfWidth.value(),
                              results.scales.frequencyRange.value(), results.mtf[0]}) {
    if (!std::isfinite(scalar)) throw PupilOutOfRange(results.pupil);
  }
}

StarImages ImagesOfStar(Evaluator& evaluator) {
  StarImages star{SectorStar(), {}, {}};
  star.stretched = evaluator.ImageOf(star.original, ImageKind::kStretched);
  star.totalLight = evaluator.ImageOf(star.original, ImageKind::kTotalLight);
  return star;
}

Ring ImageOfRing(Evaluator& evaluator, Millimetres pupil, const RingRequest& request) {
  Ring ring{request, RingDiameter(pupil, request.acuity), 0.0, Plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE), {}};
  ring.effectiveAcuity = EffectiveAcuity(pupil, ring.diameter);
  DrawRing(ring.original.data(), ORVANEL_GRID_SIZE, ring.diameter, static_cast<int>(request.gap));
  ring.seen = evaluator.ImageOf(ring.original, ImageKind::kTotalLight);
  return ring;
}

}  // namespace

Results Simulate(Evaluator& evaluator, const Eye& eye, const std::vector<RingRequest>& rings) {
  Results results = evaluator.Evaluate(eye, kEverything);
  RequireFinite(results);
  results.star = ImagesOfStar(evaluator);
  for (const RingRequest& request : rings) results.rings.push_back(ImageOfRing(evaluator, eye.pupil, request));
  return results;
}

}  // namespace orvanel::evaluation
