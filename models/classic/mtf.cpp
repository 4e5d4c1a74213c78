// Computes the engine's modulation and phase transfer function.
#include "optics/mtf.h"

#include "models/classic/workspace.h"
#include "optics/samples.h"
#include "orvanel/sampling.h"

namespace orvanel {

bool OpticsEngine::ComputeMtf(double wavelength, double* mtfOut, double* frequencyStep, double* rowSection,
                              double* columnSection, double* diffractionLimit, int s) {
  const int n = gridSize;
  if (n < 1) return true;  // without samples there is nothing to compute
  FormPsf(wavelength);
  Pipeline& pipeline = *workspace_->pipeline;
  pipeline.FormMtf();
  phasePlane.SetPending(
      [](void* source, double* phase) {
        const Pipeline& held = *static_cast<Workspace*>(source)->pipeline;
        held.WritePhase({phase, held.side()});
      },
      workspace_.get());
  const PlaneView mtf = s == n ? PlaneView{mtfOut, n} : pipeline.Spare();
  pipeline.WriteMtf(mtf);

  // contract: a smaller output has the central part of the MTF, and behind it samples of the PSF.
  if (s != n) {
    psfPlane.CopyTo(mtfOut);
    for (int r = 0; r < s; ++r) {
      const int from = n / 2 - s / 2;
      StoreAll(mtfOut + SampleIndex(r, 0, s), mtf.row(from + r) + from, static_cast<std::size_t>(s));
    }
  }
  if (rowSection != nullptr && columnSection != nullptr) CutSections(mtf, s / 2, rowSection, columnSection);
  if (diffractionLimit != nullptr) DiffractionLimit(psfHalfWidth, pupilSamples, s / 2, diffractionLimit);
  *frequencyStep = FrequencyStep(n, psfHalfWidth, focalLength);
  return true;
}

}  // namespace orvanel
