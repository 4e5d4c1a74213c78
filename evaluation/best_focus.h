// The engine's searches for the best focus, and what each has judged by before and after.
#ifndef ORVANEL_EVALUATION_BEST_FOCUS_H
#define ORVANEL_EVALUATION_BEST_FOCUS_H

#include <cstdint>

#include "base/layers.h"
#include "base/units.h"
#include "eye/conventions/convention.h"

namespace orvanel::evaluation {

enum class FocusMethod {
  kOptimise,   // the highest Strehl ratio within bounds, by OptimiseFocus
  kWalkToPsf,  // steps towards a higher Strehl ratio, by WalkByPsf
  kWalkToFit,  // steps towards a smaller deviation from a circle, by WalkByFit
};

struct FocusRequest {
  FocusMethod method = FocusMethod::kOptimise;
  Millimetres step{1e-5};              // of the walks, on the library's defocus coefficient
  bool astigmatism = false;            // OptimiseFocus varies the two terms of astigmatism too
  bool withoutAstigmatism = false;     // the walks judge the eye without its astigmatism
  std::int64_t maximumTrials = 10000;  // of the walks
};

// How good an eye is by each measure.
struct FocusQuality {
  double strehl;
  Micrometres deviation;  // from the circle fitted to the wavefront
  double undersampled;    // share of the pupil's samples; the Strehl ratio of much is not the eye's
};

struct BestFocus {
  LibraryCoefficients coefficients;
  FocusQuality before, after;
  std::int64_t trials = 0;  // wavefronts tried
  bool converged = true;    // whether the search has come to its end
};

BestFocus FindBestFocus(const LibraryCoefficients& coefficients, Millimetres pupil, const FocusRequest& request);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_BEST_FOCUS_H
