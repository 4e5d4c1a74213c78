// Allocates an engine and its planes, once.
#include <algorithm>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include "models/classic/workspace.h"
#include "optics/psf.h"
#include "orvanel/optics_engine.h"
#include "orvanel/transforms.h"

namespace orvanel {

std::unique_ptr<OpticsEngine::Workspace> OpticsEngine::MakeWorkspace(int n) {
  std::unique_ptr<Workspace> workspace = Workspace::Make(n);
  if (workspace != nullptr) return workspace;
  if (n == kKernelGrid) KernelVariant();  // throws if there are no kernels
  throw std::bad_alloc();
}

OpticsEngine::OpticsEngine(int n) : OpticsEngine(n, MakeWorkspace(n)) {}

std::optional<OpticsEngine> OpticsEngine::Make(std::nothrow_t /*unused*/, int n) noexcept {
  std::unique_ptr<Workspace> workspace = Workspace::Make(n);
  if (workspace == nullptr) return std::nullopt;
  return OpticsEngine(n, std::move(workspace));
}

OpticsEngine::OpticsEngine(int n, std::unique_ptr<Workspace> workspace) noexcept
    : gridSize(n),
      psfPlane(workspace->PlaneAt(1)),
      auxPlaneA(workspace->PlaneAt(7)),
      phasePlane(workspace->PlaneAt(6)),
      wavefrontPlane(workspace->PlaneAt(0)),  // the only plane that every eye writes
      pupilXPlane(workspace->PlaneAt(4)),
      pupilYPlane(workspace->PlaneAt(5)),
      otfRealPlane(workspace->PlaneAt(2)),
      otfImagPlane(workspace->PlaneAt(3)),
      workspace_(std::move(workspace)) {
  std::fill(wavefrontPlane.begin(), wavefrontPlane.end(), 0.0);
  if (!workspace_->pipeline->HoldsTransferFunctions()) {
    for (LazyPlane* const plane : {&phasePlane, &otfRealPlane, &otfImagPlane}) plane->SetEager();
  }
}

OpticsEngine::OpticsEngine(const double* coefficients, double diameter, int n, int includeAstigmatism,
                           int includeAllSecondOrder, int includeDefocus)
    : OpticsEngine(n) {
  synthesizeWavefront(coefficients, diameter, includeAstigmatism, includeAllSecondOrder, includeDefocus);
}

OpticsEngine::OpticsEngine(OpticsEngine&& other) noexcept
    : gridSize(other.gridSize),
      psfHalfWidth(other.psfHalfWidth),
      psfPlane(std::move(other.psfPlane), LazyPlane::WithEngine{}),
      auxPlaneA(std::move(other.auxPlaneA), LazyPlane::WithEngine{}),
      phasePlane(std::move(other.phasePlane), LazyPlane::WithEngine{}),
      strehlRatio(other.strehlRatio),
      normaliseOutput(other.normaliseOutput),
      focalLength(other.focalLength),
      pupilSamples(other.pupilSamples),
      wavefrontPlane(std::move(other.wavefrontPlane)),
      pupilXPlane(std::move(other.pupilXPlane), LazyPlane::WithEngine{}),
      pupilYPlane(std::move(other.pupilYPlane), LazyPlane::WithEngine{}),
      psfWavelength(other.psfWavelength),
      pupilDiameter(other.pupilDiameter),
      otfRealPlane(std::move(other.otfRealPlane), LazyPlane::WithEngine{}),
      otfImagPlane(std::move(other.otfImagPlane), LazyPlane::WithEngine{}),
      otfValid(other.otfValid),
      workspace_(std::move(other.workspace_)) {}

OpticsEngine& OpticsEngine::operator=(OpticsEngine&& other) noexcept {
  if (this != &other) {
    std::destroy_at(this);
    std::construct_at(this, std::move(other));
  }
  return *this;
}

OpticsEngine::~OpticsEngine() = default;

const char* KernelVariant() {
  const Kernels* const kernels = ActiveKernels();
  if (kernels == nullptr) throw std::runtime_error(WhyNoKernels());
  return kernels->name;
}

bool OpticsEngine::Fft2(double* re, double* im, int n, int direction) {
  if (n != gridSize || re == nullptr || im == nullptr) return orvanel::Fft2(re, im, n, direction);
  workspace_->pipeline->Transform({{re, n}, {im, n}}, direction);
  return true;
}

void OpticsEngine::CentredFft2(double* re, double* im, int direction, int n, int log2n) {
  if (n != gridSize) return orvanel::CentredFft2(re, im, direction, n, log2n);
  workspace_->pipeline->CentredTransform({{re, n}, {im, n}}, direction, log2n);
}

void OpticsEngine::ShiftedPowerSpectrum(double* out, const double* re, const double* im) const {
  orvanel::ShiftedPowerSpectrum(out, re, im, gridSize);
}

void OpticsEngine::RecentreLine(double* line, int index) const { orvanel::RecentreLine(line, index, gridSize); }

}  // namespace orvanel
