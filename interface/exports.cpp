// Implements the eight exported functions: each is a check, and a call or a copy.
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

#include "interface/module_state.h"
#include "interface/pattern_asset.h"
#include "optics/kernels/dispatch.h"
#include "optics/mtf.h"
#include "optics/samples.h"
#include "orvanel/orvanel.h"
#include "orvanel/sampling.h"

namespace {

using orvanel::ActiveKernels;
using orvanel::CutSections;
using orvanel::DiffractionLimit;
using orvanel::FrequencyRange;
using orvanel::GridPlane;
using orvanel::kWavelength;
using orvanel::LoadPatternAsset;
using orvanel::ModuleState;
using orvanel::Store;
using orvanel::StoreAll;
using orvanel::WhyNoKernels;

constexpr int kDone = 1;
constexpr int kRefused = 0;

ModuleState module;

// Creates something once and keeps it; false if it cannot be created. Hosts call one function at a time. If two threads
// of a host call at the same time, the one that comes while the other creates something is refused.
bool Once(std::atomic<bool>& made, bool (*make)()) {
  if (made.load(std::memory_order_acquire)) return true;
  if (module.allocating.test_and_set(std::memory_order_acquire)) return false;
  const bool done = made.load(std::memory_order_relaxed) || make();
  if (done) made.store(true, std::memory_order_release);
  module.allocating.clear(std::memory_order_release);
  return done;
}

bool HasEngine() {
  return Once(module.hasEngine, [] { return module.MakeEngine(); });
}

// Refuses a call without an engine. Reports once if no call can have one.
int RefusedWithoutEngine() {
  static std::atomic_flag said;
  if (ActiveKernels() == nullptr && !said.test_and_set()) std::fprintf(stderr, "orvanel: %s\n", WhyNoKernels());
  return kRefused;
}

bool HasResults() { return module.hasResults.load(std::memory_order_acquire); }

bool HasRoomForResults() {
  return Once(module.hasResults, [] {
    module.mtfPlane = GridPlane(std::nothrow, ORVANEL_GRID_SIZE);
    return module.mtfPlane.data() != nullptr;
  });
}

bool HasPattern() {
  return Once(module.hasPattern, [] {
    GridPlane pattern(std::nothrow, ORVANEL_GRID_SIZE);
    if (pattern.data() == nullptr) return false;
    LoadPatternAsset(pattern.data());
    module.preparedPattern = module.engine->Prepare(std::nothrow, pattern.data());
    if (module.preparedPattern.empty()) return false;
    module.patternPlane = std::move(pattern);
    return true;
  });
}

}  // namespace

void OrvanelInputPupil(double pupilDiameter) noexcept {
  module.pupilDiameter = pupilDiameter;
  module.wavelength = kWavelength;
}

int OrvanelInputZer(const double* coefficients) noexcept {
  if (!(module.pupilDiameter < 0.0 || module.pupilDiameter > 0.0)) return kRefused;
  if (!HasEngine()) return RefusedWithoutEngine();
  if (!HasRoomForResults()) return kRefused;
  std::memcpy(module.coefficients.data(), static_cast<const void*>(coefficients), sizeof module.coefficients);

  double frequencyStep = 0.0;
  module.engine->synthesizeWavefront(module.coefficients.data(), module.pupilDiameter, 1, 1, 1);
  module.engine->ComputeMtf(module.wavelength, module.mtfPlane.data(), &frequencyStep, nullptr, nullptr, nullptr,
                            ORVANEL_GRID_SIZE);
  module.mtfFrequencyRange = FrequencyRange(ORVANEL_GRID_SIZE, frequencyStep);
  return kDone;
}

int OrvanelGetPSF(double* psf, double* strehl, double* psfHalfWidth) noexcept {
  if (!module.hasEngine.load(std::memory_order_acquire)) return RefusedWithoutEngine();
  module.engine->psfPlane.CopyTo(psf);
  Store(strehl, 0, module.engine->strehlRatio);
  Store(psfHalfWidth, 0, module.engine->psfHalfWidth);
  return kDone;
}

int OrvanelGetMTF(double* mtf, double* frequencyRange) noexcept {
  if (!HasResults()) return kRefused;
  StoreAll(mtf, module.mtfPlane.data(), module.mtfPlane.size());
  Store(frequencyRange, 0, module.mtfFrequencyRange);
  return kDone;
}

int OrvanelGetMTFGraph(double* rowSection, double* columnSection, double* diffractionLimit,
                       double* frequencyRange) noexcept {
  if (!HasResults()) return kRefused;
  constexpr int kCount = ORVANEL_SECTION_SAMPLES;
  double row[kCount];
  double column[kCount];
  CutSections({module.mtfPlane.data(), ORVANEL_GRID_SIZE}, kCount, row, column);
  StoreAll(rowSection, row, kCount);
  StoreAll(columnSection, column, kCount);
  if (diffractionLimit != nullptr) {
    double limit[kCount];
    DiffractionLimit(module.engine->psfHalfWidth, module.engine->pupilSamples, kCount, limit);
    StoreAll(diffractionLimit, limit, kCount);
  }
  Store(frequencyRange, 0, module.mtfFrequencyRange);
  return kDone;
}

int OrvanelGetOrvanel(double acuity, double* image, double* effectiveAcuity, double* optotype,
                      int gapDirection) noexcept {
  if (!HasResults() || image == nullptr) return kRefused;
  if (gapDirection != 1 && gapDirection != 2 && gapDirection != 4) gapDirection = 3;
  module.engine->normaliseOutput = 0;
  double drawnAcuity = 0.0;
  // A host that wants no optotype lends its image for it, which is written last.
  double* const drawing = optotype != nullptr ? optotype : image;
  module.engine->RingRetinalImage(image, drawing, acuity, &drawnAcuity, gapDirection);
  Store(effectiveAcuity, 0, drawnAcuity);
  return kDone;
}

int OrvanelGetPattern(double* image) noexcept {
  if (!HasResults()) return kRefused;
  if (!HasPattern()) return kRefused;
  module.engine->PreparedRetinalImage(image, module.preparedPattern);
  return kDone;
}

int OrvanelGetPatternOriginal(double* pattern) noexcept {
  if (!module.hasPattern.load(std::memory_order_acquire)) return kRefused;
  StoreAll(pattern, module.patternPlane.data(), module.patternPlane.size());
  return kDone;
}
