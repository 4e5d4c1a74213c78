// Runs the engine's searches.
#include "evaluation/best_focus.h"

#include <algorithm>
#include <array>

#include "orvanel/optics_engine.h"
#include "orvanel/sampling.h"

namespace orvanel::evaluation {
namespace {

constexpr std::size_t kDefocus = 4;

using Bare = std::array<double, ORVANEL_COEFFICIENTS>;

// With astigmatism or without, as the walks see the eye.
FocusQuality Judge(OpticsEngine& engine, const Bare& coefficients, double pupil, bool astigmatism) {
  FocusQuality quality{};
  engine.synthesizeWavefront(coefficients.data(), pupil, astigmatism ? 1 : 0, 0, 1);
  quality.deviation = ToMicrometres(Millimetres(FitCircle(engine).deviation));
  quality.strehl = engine.ComputeStrehl(kWavelength);
  quality.undersampled =
      UndersampledShare(engine.wavefrontPlane.data(), ORVANEL_GRID_SIZE, engine.pupilSamples, kWavelength);
  return quality;
}

}  // namespace

BestFocus FindBestFocus(const LibraryCoefficients& coefficients, Millimetres pupil, const FocusRequest& request) {
  Bare bare;
  std::transform(coefficients.begin(), coefficients.end(), bare.begin(), [](Millimetres c) { return c.value(); });
  const double diameter = pupil.value();
  OpticsEngine engine(ORVANEL_GRID_SIZE);
  BestFocus best;
  const bool astigmatism = !request.withoutAstigmatism;
  best.before = Judge(engine, bare, diameter, astigmatism);
  switch (request.method) {
    case FocusMethod::kOptimise: {
      FocusSearch search;
      search.astigmatism = request.astigmatism;
      search.maximumUndersampled = kLargestUndersampledShare;
      const FocusResult result = engine.OptimiseFocus(bare.data(), diameter, search);
      std::copy(result.coefficients.begin(), result.coefficients.end(), bare.begin());
      best.trials = result.trials;
      best.converged = result.converged;
      break;
    }
    case FocusMethod::kWalkToPsf:
    case FocusMethod::kWalkToFit: {
      const FocusWalk walk{request.step.value(), astigmatism, request.maximumTrials};
      const WalkResult result = request.method == FocusMethod::kWalkToPsf
                                    ? engine.WalkByPsf(bare.data(), diameter, walk)
                                    : engine.WalkByFit(bare.data(), diameter, walk);
      bare[kDefocus] = result.defocus;
      best.trials = result.trials;
      best.converged = result.converged;
      break;
    }
  }
  best.after = Judge(engine, bare, diameter, astigmatism);
  std::transform(bare.begin(), bare.end(), best.coefficients.begin(), [](double c) { return Millimetres(c); });
  return best;
}

}  // namespace orvanel::evaluation
