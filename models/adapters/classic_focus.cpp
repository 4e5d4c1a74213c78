// Finds the best focus by the searches of the engine.
#include <array>
#include <cstddef>
#include <utility>

#include "eye/conventions/mode.h"
#include "models/adapters/classic_model.h"
#include "orvanel/sampling.h"

namespace orvanel::models {
namespace {

constexpr std::size_t kDefocus = 4;
constexpr std::array<std::size_t, 3> kVaried = {3, kDefocus, 5};

constexpr std::array<FocusMethod, 3> kMethods = {{
    {"optimise", FocusStrategy::kOptimise, FocusMeasure::kStrehl},
    {"psf", FocusStrategy::kWalk, FocusMeasure::kStrehl},
    {"fit", FocusStrategy::kWalk, FocusMeasure::kCircle},
}};

using EngineCoefficients = std::array<double, ORVANEL_COEFFICIENTS>;

// The eye with the terms that a search has changed. A term that it has not changed keeps its stated number.
Eye WithVariedTerms(const Eye& eye, const EngineCoefficients& before, const EngineCoefficients& after) {
  const Convention& convention = eye.coefficients.convention();
  const Coefficients found = Converted({after.begin(), after.end()}, kLibraryConvention, convention);
  Coefficients stated = eye.coefficients.AsStated();
  if (stated.size() <= kVaried.back()) stated.resize(kVaried.back() + 1);
  for (const std::size_t j : kVaried) {
    if (after[j] != before[j]) stated[j] = found[j];
  }
  Eye changed = eye;
  changed.coefficients = {convention, std::move(stated)};
  return changed;
}

}  // namespace

std::span<const FocusMethod> ClassicModel::FocusMethods() { return kMethods; }

FocusQuality ClassicModel::QualityOf(const EngineCoefficients& coefficients, Millimetres pupil,
                                     const FocusRequest& request) {
  FocusQuality quality;
  engine_.synthesizeWavefront(coefficients.data(), pupil.value(), request.withoutAstigmatism ? 0 : 1, 0, 1);
  quality.strehl = engine_.ComputeStrehl(kWavelength);
  quality.value = request.method.measure == FocusMeasure::kCircle
                      ? ToMicrometres(Millimetres(FitCircle(engine_).deviation)).value()
                      : quality.strehl;
  quality.undersampled =
      UndersampledShare(engine_.wavefrontPlane.data(), ORVANEL_GRID_SIZE, engine_.pupilSamples, kWavelength);
  return quality;
}

BestFocus ClassicModel::FindBestFocus(const Eye& eye, const FocusRequest& request) {
  const EngineCoefficients before = Bare(ToLibrary(eye.coefficients));
  EngineCoefficients after = before;
  const double pupil = eye.pupil.value();
  BestFocus best;
  best.before = QualityOf(before, eye.pupil, request);
  if (request.method.strategy == FocusStrategy::kOptimise) {
    FocusSearch search;
    search.astigmatism = request.astigmatism;
    search.maximumUndersampled = kLargestUndersampledShare;
    const FocusResult result = engine_.OptimiseFocus(before.data(), pupil, search);
    after = result.coefficients;
    best.trials = result.trials;
    best.converged = result.converged;
  } else {
    const double step = ToMillimetres(request.step * NormFactor(Term(kDefocus))).value();
    const FocusWalk walk{step, !request.withoutAstigmatism, request.maximumTrials};
    const WalkResult result = request.method.measure == FocusMeasure::kCircle
                                  ? engine_.WalkByFit(before.data(), pupil, walk)
                                  : engine_.WalkByPsf(before.data(), pupil, walk);
    after[kDefocus] = result.defocus;
    best.trials = result.trials;
    best.converged = result.converged;
  }
  best.after = QualityOf(after, eye.pupil, request);
  best.eye = WithVariedTerms(eye, before, after);
  return best;
}

}  // namespace orvanel::models
