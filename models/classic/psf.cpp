// Point spread function: from the wavefront to the image of a point on the retina.
#include "optics/psf.h"

#include <algorithm>

#include "models/classic/workspace.h"
#include "optics/psf_peak.h"
#include "orvanel/sampling.h"

namespace orvanel {
namespace {

// The kernels leave the scale 1/n^2 of the field to us: its square.
constexpr double kIntensityScale = 0x1p-32;

// The brightest sample of an intensity with zero frequency at (0, 0): the first in the order of the plane that has it
// at the centre. (0, 0), with value 0, if there is none.
Peak FindPeakOfKernels(const double* intensity, const double* rowMaxima) {
  constexpr int half = kKernelGrid / 2;
  Peak peak{0.0, 0, 0};
  for (int r = 0; r < kKernelGrid; ++r) {
    const int row = (r + half) % kKernelGrid;
    if (rowMaxima[row] > peak.value) peak = {rowMaxima[row], row, 0};
  }
  if (peak.value > 0.0) {
    const double* const samples = intensity + peak.row * kIntensityPitch;
    int c = 0;
    // It is there, unless another thread of the host has begun an eye in the meantime.
    while (c < kKernelGrid - 1 && samples[(c + half) % kKernelGrid] != peak.value) ++c;
    peak.column = (c + half) % kKernelGrid;
  }
  return peak;
}

}  // namespace

void OpticsEngine::FormPsf(double wavelength) {
  const int n = gridSize;
  psfWavelength = wavelength;
  focalLength = kFocalLength;
  otfValid = 0;
  psfHalfWidth = PsfHalfWidth(pupilSamples, wavelength, pupilDiameter, focalLength);

  // Field and intensity on the retina. The brightest sample comes to the centre: tilt only displaces the image.
  double brightest = 0.0;
  if (workspace_->kernels != nullptr) {
    KernelMemory& memory = *workspace_->memory;
    double rowMaxima[kKernelGrid];
    double* const intensity = memory.planes.intensity;
    workspace_->kernels->intensity(wavefrontPlane.data(), wavelength, workspace_->tables, workspace_->ScratchOf(),
                                   intensity, rowMaxima);
    const Peak peak = FindPeakOfKernels(intensity, rowMaxima);
    brightest = peak.value * kIntensityScale;
    if (brightest > 0.0) {
      memory.psf = {intensity, (1.0 / brightest) * kIntensityScale, peak.row, peak.column};
    } else {
      std::fill_n(intensity, kKernelGrid * kIntensityPitch, 0.0);  // it may hold what is not a number
      memory.psf = {intensity, 0.0, 0, 0};
    }
    memory.mtfIsOfPsf = false;
    psfPlane.Due(
        [](void* source, double* psf) {
          const Workspace& w = *static_cast<Workspace*>(source);
          w.kernels->recentre(w.memory->psf, psf);
        },
        workspace_.get());
  } else {
    double* const re = workspace_->plain->objectReal.data();
    double* const im = workspace_->plain->objectImag.data();
    double* const intensity = workspace_->plain->productReal.data();
    PupilFunction(wavefrontPlane.data(), wavelength, n, re, im);
    Fft2(re, im, n, 0);
    ShiftedPowerSpectrum(intensity, re, im);
    const Peak peak = FindPeak(intensity, n);
    RecentrePlane(intensity, peak.row, peak.column, n);
    brightest = peak.value;
    const double scale = brightest > 0.0 ? 1.0 / brightest : 0.0;
    double* const psf = psfPlane.data();
    for (std::size_t i = 0; i < psfPlane.size(); ++i) psf[i] = brightest > 0.0 ? scale * intensity[i] : 0.0;
  }
  strehlRatio = StrehlRatio(brightest, n, pupilSamples);
}

bool OpticsEngine::ComputePsf(double wavelength, double* psfCopy, double* pitch, double* strehl, int size, int reuse) {
  const int n = gridSize;
  if (size > n || n < 1) return false;
  if (reuse == 1 && wavelength == psfWavelength) return true;
  FormPsf(wavelength);
  psfPlane.CopyTo(psfCopy);
  *strehl = strehlRatio;
  *pitch = 2 * psfHalfWidth / (n - 1);
  return true;
}

bool OpticsEngine::ComputePsf(double wavelength, double* psfCopy, double* pitch, double* strehl, int size) {
  return ComputePsf(wavelength, psfCopy, pitch, strehl, size, 0);
}

double OpticsEngine::ComputeStrehl(double wavelength) {
  const int n = gridSize;
  if (workspace_->kernels != nullptr) {
    double rowMaxima[kKernelGrid];
    workspace_->kernels->intensity(wavefrontPlane.data(), wavelength, workspace_->tables, workspace_->ScratchOf(),
                                   nullptr, rowMaxima);
    double brightest = 0.0;
    for (const double maximum : rowMaxima) brightest = maximum > brightest ? maximum : brightest;
    return StrehlRatio(brightest * kIntensityScale, n, pupilSamples);
  }
  double* const re = workspace_->plain->objectReal.data();
  double* const im = workspace_->plain->objectImag.data();
  PupilFunction(wavefrontPlane.data(), wavelength, n, re, im);
  Fft2(re, im, n, 0);
  double* const intensity = workspace_->plain->productReal.data();
  ShiftedPowerSpectrum(intensity, re, im);
  return StrehlRatio(FindPeak(intensity, n).value, n, pupilSamples);
}

PsfPeak OpticsEngine::FindPsfPeak() const {
  if (workspace_->kernels == nullptr) return {1.0, 0.0, 0.0};
  const Recentring& psf = workspace_->memory->psf;
  return PeakOf({psf.intensity, kIntensityPitch, psf.row, psf.column});
}

}  // namespace orvanel
