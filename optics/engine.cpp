// Life of an engine: its planes are allocated here, once.
#include <algorithm>
#include <utility>

#include "optics/fft.h"
#include "optics/psf.h"
#include "optics/workspace.h"
#include "orvanel/optics_engine.h"

namespace orvanel {

OpticsEngine::OpticsEngine(int n) : OpticsEngine(n, std::make_unique<Workspace>(n)) {}

OpticsEngine::OpticsEngine(int n, std::unique_ptr<Workspace> workspace)
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

const char* KernelVariant() { return ActiveKernels().name; }

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
