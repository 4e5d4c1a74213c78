// Life of an engine: its planes are allocated here, once.
#include <algorithm>
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
  if (n == kKernelGrid) KernelVariant();  // throws where there are none
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
      psfPlane(workspace->PlaneAt(1, n)),
      auxPlaneA(workspace->PlaneAt(7, n)),
      phasePlane(workspace->PlaneAt(6, n)),
      wavefrontPlane(workspace->PlaneAt(0, n)),  // the only one that every eye writes
      pupilXPlane(workspace->PlaneAt(4, n)),
      pupilYPlane(workspace->PlaneAt(5, n)),
      otfRealPlane(workspace->PlaneAt(2, n)),
      otfImagPlane(workspace->PlaneAt(3, n)),
      workspace_(std::move(workspace)) {
  std::fill(wavefrontPlane.begin(), wavefrontPlane.end(), 0.0);
}

OpticsEngine::OpticsEngine(const double* coefficients, double diameter, int n, int includeAstigmatism,
                           int includeAllSecondOrder, int includeDefocus)
    : OpticsEngine(n) {
  synthesizeWavefront(coefficients, diameter, includeAstigmatism, includeAllSecondOrder, includeDefocus);
}

OpticsEngine::OpticsEngine(OpticsEngine&&) noexcept = default;
OpticsEngine& OpticsEngine::operator=(OpticsEngine&&) noexcept = default;
OpticsEngine::~OpticsEngine() = default;

const char* KernelVariant() {
  const Kernels* const kernels = ActiveKernels();
  if (kernels == nullptr) throw std::runtime_error(WhyNoKernels());
  return kernels->name;
}

bool OpticsEngine::Fft2(double* re, double* im, int n, int direction) {
  const Kernels* const kernels = workspace_->kernels;
  if (kernels == nullptr || n != kKernelGrid || re == nullptr || im == nullptr) {
    return orvanel::Fft2(re, im, n, direction);
  }
  // Exchanging real and imaginary parts turns the sign of the exponent.
  if (direction == 0) kernels->transform(re, im, 1.0 / (n * n), workspace_->tables, workspace_->ScratchOf());
  if (direction == 1) kernels->transform(im, re, 1.0, workspace_->tables, workspace_->ScratchOf());
  return true;
}

void OpticsEngine::CentredFft2(double* re, double* im, int direction, int n, int log2n) {
  if (workspace_->kernels != nullptr && n == kKernelGrid && log2n == 8) {
    workspace_->kernels->centredTransform(re, im, direction, workspace_->tables, workspace_->ScratchOf());
  } else {
    orvanel::CentredFft2(re, im, direction, n, log2n);
  }
}

void OpticsEngine::ShiftedPowerSpectrum(double* out, const double* re, const double* im) const {
  orvanel::ShiftedPowerSpectrum(out, re, im, gridSize);
}

void OpticsEngine::RecentreLine(double* line, int index) const { orvanel::RecentreLine(line, index, gridSize); }

}  // namespace orvanel
