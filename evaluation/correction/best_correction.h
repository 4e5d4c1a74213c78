// Searches the lens that maximises a metric of image quality.
#ifndef ORVANEL_EVALUATION_CORRECTION_BEST_CORRECTION_H
#define ORVANEL_EVALUATION_CORRECTION_BEST_CORRECTION_H

#include <functional>

#include "base/layers.h"
#include "evaluation/correction/lens_grid.h"
#include "evaluation/quality_evaluator.h"
#include "eye/eye.h"
#include "eye/prescription.h"

namespace orvanel::evaluation {

struct CorrectionRequest {
  LensGrid grid;                          // of the trial lens case; its sphereOnly holds for the free search too
  Millimetres vertex;                     // distance of all lenses from the cornea, 0 for contact lenses
  int evaluations = 300;                  // at most, of the free search
  double toleranceShare = 0.005;          // of the focus width: the free search ends when its steps are shorter
  std::function<void()> afterValue = {};  // called after each lens of the searches; it may throw
};

// A lens to be worn, with a minus cylinder, and the metric of the eye behind it. The value is not a number where the
// wavefront is too steep for the model.
struct LensValue {
  Lens lens;
  QualityValue quality;
};

struct Correction {
  Quality conditions;                // the metric with the best free lens, its place and light
  LensValue none;                    // without a lens
  LensValue best;                    // of all lenses
  LensValue inCase;                  // of those in the trial lens case
  LensValue leastSquares, paraxial;  // the lenses that correct these refractions
  int evaluations = 0;               // of the free search
  int evaluationsInCase = 0;         // of the search in the case, in addition
  bool converged = false;            // the free search ended before its evaluations did
};

// The change of sphere that changes metrics of an eye clearly. The free search scans in steps of half of it.
Dioptres FocusWidth(Millimetres pupil);

// The lens with the highest value of the evaluator's only metric, or the lowest where lower is better. The free search
// looks along the line from the least-squares to the paraxial refraction and beyond both ends, and climbs from its best
// places. The other search goes through the lenses of the case around the best of these. Results have the same bits on
// every instruction set. Throws what the evaluator and AtCornea throw. A wavefront too steep for the model counts as
// worse than any value, unless it is so with all lenses tried.
//   evaluator  with gradients where its request has them: then the search needs fewer values, each of more time
//   eye        adjusted already
Correction BestCorrection(QualityEvaluator& evaluator, const Eye& eye, const CorrectionRequest& request);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_CORRECTION_BEST_CORRECTION_H
