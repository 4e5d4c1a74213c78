// Modulation and phase transfer function.
#include "optics/mtf.h"

#include <algorithm>
#include <cmath>

#include "base/elementary.h"
#include "models/classic/workspace.h"
#include "optics/samples.h"
#include "orvanel/sampling.h"

namespace orvanel {
namespace {

constexpr int kLog2OfGrid = 8;  // of the one grid this is meant for

double Modulus(double re, double im) { return std::sqrt(re * re + im * im); }

}  // namespace

bool OpticsEngine::ComputeMtf(double wavelength, double* mtfOut, double* frequencyStep, double* rowSection,
                              double* columnSection, double* diffractionLimit, int s) {
  const int n = gridSize;
  if (n < 1) return true;  // without samples there is nothing to compute
  FormPsf(wavelength);

  // Optical transfer function, zero frequency at the centre, and its modulus and angle.
  double* mtf = nullptr;
  if (workspace_->kernels != nullptr) {
    KernelMemory& memory = *workspace_->memory;
    memory.ofMtf = 1 - memory.ofImages;
    void* const spectrum = memory.OtfOfMtf();
    workspace_->kernels->transferFunction(memory.psf, workspace_->tables, workspace_->ScratchOf(), spectrum);
    memory.mtfIsOfPsf = true;
    mtf = s == n ? mtfOut : workspace_->Spare();
    workspace_->kernels->modulation(spectrum, mtf);
    phasePlane.Due(
        [](void* source, double* phase) {
          const Workspace& w = *static_cast<Workspace*>(source);
          w.kernels->phase(w.memory->OtfOfMtf(), phase);
        },
        workspace_.get());
  } else {
    double* const re = workspace_->plain->objectReal.data();
    double* const im = workspace_->plain->objectImag.data();
    psfPlane.CopyTo(re);
    std::fill_n(im, SampleCount(n), 0.0);
    CentredFft2(re, im, 1, n, kLog2OfGrid);
    mtf = workspace_->plain->productReal.data();
    const std::size_t centre = SampleIndex(n / 2, n / 2, n);
    const double zeroFrequency = Modulus(re[centre], im[centre]);
    double* const phase = phasePlane.data();
    for (std::size_t i = 0; i < SampleCount(n); ++i) {
      mtf[i] = Modulus(re[i], im[i]) / zeroFrequency;
      phase[i] = ArcTangent2(im[i], re[i]);
    }
  }

  // The central part, and behind it what the PSF left there.
  if (mtf != mtfOut) {
    psfPlane.CopyTo(mtfOut);
    for (int r = 0; r < s; ++r) {
      const int from = n / 2 - s / 2;
      StoreAll(mtfOut + SampleIndex(r, 0, s), mtf + SampleIndex(from + r, from, n), static_cast<std::size_t>(s));
    }
  }
  if (rowSection != nullptr && columnSection != nullptr) CutSections(mtf, n, s / 2, rowSection, columnSection);
  if (diffractionLimit != nullptr) DiffractionLimit(psfHalfWidth, pupilSamples, s / 2, diffractionLimit);
  *frequencyStep = FrequencyStep(n, psfHalfWidth, focalLength);
  return true;
}

}  // namespace orvanel
