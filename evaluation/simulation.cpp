// Evaluates an eye with all needs, then computes its images.
#include "evaluation/simulation.h"

#include <cmath>

#include "models/errors.h"
#include "targets/sector_star.h"

namespace orvanel::evaluation {
namespace {

constexpr Needs kEverything = {
    Need::kUndersampled, Need::kWavefront, Need::kWavefrontRange, Need::kStrehl,      Need::kStrehlPeak,
    Need::kPsf,          Need::kMtf,       Need::kSections,       Need::kLineSpreads, Need::kImages};

void RequireFinite(const Results& results) {
  for (const double scalar :
       {results.strehl, results.retinaAxis.step.value(), results.frequencyAxis.step.value(), results.mtf[0]}) {
    if (!std::isfinite(scalar)) throw PupilOutOfRange(results.pupil);
  }
}

StarImages ImagesOfStar(Evaluator& evaluator) {
  StarImages star{SectorStar(), {}, {}};
  if (evaluator.results().model == ModelKind::kClassic) {
    star.stretched = evaluator.ImageOf(star.original, ImageKind::kStretched);
  }
  star.totalLight = evaluator.ImageOf(star.original, ImageKind::kTotalLight);
  return star;
}

}  // namespace

Results Simulate(Evaluator& evaluator, const Eye& eye, const std::vector<RingRequest>& rings) {
  Results results = evaluator.Evaluate(eye, kEverything);
  RequireFinite(results);
  results.star = ImagesOfStar(evaluator);
  for (const RingRequest& request : rings) results.rings.push_back(evaluator.SeeRing(request));
  return results;
}

}  // namespace orvanel::evaluation
