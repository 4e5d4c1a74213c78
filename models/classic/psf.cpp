// Computes the engine's point spread function.
#include "optics/psf.h"

#include "models/classic/workspace.h"
#include "orvanel/sampling.h"

namespace orvanel {

void OpticsEngine::FormPsf(double wavelength) {
  psfWavelength = wavelength;
  focalLength = kFocalLength;
  otfValid = 0;
  psfHalfWidth = PsfHalfWidth(pupilSamples, wavelength, pupilDiameter, focalLength);

  const double brightest = workspace_->pipeline->FormPsf({wavefrontPlane.data(), gridSize}, wavelength);
  strehlRatio = StrehlRatio(brightest, gridSize, pupilSamples);
  psfPlane.SetPending(
      [](void* source, double* psf) {
        const Pipeline& pipeline = *static_cast<Workspace*>(source)->pipeline;
        pipeline.WritePsf({psf, pipeline.side()});
      },
      workspace_.get());
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
  const double brightest = workspace_->pipeline->PeakIntensity({wavefrontPlane.data(), gridSize}, wavelength);
  return StrehlRatio(brightest, gridSize, pupilSamples);
}

PsfPeak OpticsEngine::FindPsfPeak() const { return workspace_->pipeline->PeakBetweenSamples(); }

}  // namespace orvanel
