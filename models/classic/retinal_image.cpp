// Simulated retinal images: the chain that every object passes, and the two objects.
#include "optics/retinal_image.h"

#include <algorithm>

#include "models/classic/workspace.h"
#include "optics/samples.h"

namespace orvanel {

void OpticsEngine::EnsureOtf() {
  if (otfValid == 1) return;
  otfValid = 1;
  if (workspace_->kernels != nullptr) {
    // A PSF that somebody has looked at may have been changed; one that nobody has is that of the last ComputePsf.
    KernelMemory& memory = *workspace_->memory;
    if (!psfPlane.looked() && memory.mtfIsOfPsf) {
      memory.ofImages = memory.ofMtf;
    } else {
      memory.ofImages = 1 - memory.ofMtf;
      if (psfPlane.looked()) {
        workspace_->kernels->realTransform(psfPlane.data(), workspace_->tables, workspace_->ScratchOf(),
                                           memory.OtfOfImages());
      } else {
        workspace_->kernels->transferFunction(memory.psf, workspace_->tables, workspace_->ScratchOf(),
                                              memory.OtfOfImages());
      }
    }
    const auto unfolded = [](void* source, double* re, double* im) {
      const Workspace& w = *static_cast<Workspace*>(source);
      w.kernels->unfold(w.memory->OtfOfImages(), re, im);
    };
    otfRealPlane.Due([](void* source, double* re) { decltype(unfolded){}(source, re, nullptr); }, workspace_.get());
    otfImagPlane.Due([](void* source, double* im) { decltype(unfolded){}(source, nullptr, im); }, workspace_.get());
    return;
  }
  psfPlane.CopyTo(otfRealPlane.data());
  std::fill(otfImagPlane.begin(), otfImagPlane.end(), 0.0);
  Fft2(otfRealPlane.data(), otfImagPlane.data(), gridSize, 0);
}

// How an image is scaled, by normaliseOutput as it stands.
void OpticsEngine::Normalise(const double* intensity, double objectTotal, double* image) const {
  if (normaliseOutput == 0) {
    KeepTotal(intensity, gridSize, objectTotal, image);
  } else {
    Stretch(intensity, gridSize, image);
  }
}

// An object's spectrum, or else its rows, as in ObjectSpectrum.
void OpticsEngine::ImageOf(const void* complete, void* rows, double objectTotal, double* image) {
  const ObjectSpectrum object = {complete, rows};
  EnsureOtf();
  // Whoever has looked at the transfer function may also have changed it.
  const bool looked = otfRealPlane.looked() || otfImagPlane.looked();
  const TransferPlanes otf = looked ? TransferPlanes{nullptr, otfRealPlane.data(), otfImagPlane.data()}
                                    : TransferPlanes{workspace_->memory->OtfOfImages(), nullptr, nullptr};
  if (normaliseOutput == 0) {
    workspace_->kernels->imageKeepingTotal(object, otf, objectTotal, workspace_->tables, workspace_->ScratchOf(),
                                           image);
  } else {
    workspace_->kernels->imageStretched(object, otf, workspace_->tables, workspace_->ScratchOf(), image);
  }
}

// The rest of the chain for a spectrum of its own two planes, which it uses up; intensity is a third.
void OpticsEngine::ImageOfPlanes(double* re, double* im, double* intensity, double objectTotal, double* image) {
  EnsureOtf();
  MultiplyByMirroredOtf(re, im, otfRealPlane.data(), otfImagPlane.data(), gridSize, re, im);
  Fft2(re, im, gridSize, 1);
  ShiftedPowerSpectrum(intensity, re, im);
  Normalise(intensity, objectTotal, image);
}

void OpticsEngine::FilterThroughEye(double* objectReal, double* objectImag, double* image, double objectTotal) {
  const bool isReal = std::all_of(objectImag, objectImag + SampleCount(gridSize), [](double v) { return v == 0.0; });
  if (workspace_->kernels != nullptr && isReal) {
    void* const spectrum = workspace_->memory->planes.object;
    workspace_->kernels->realRows(objectReal, workspace_->tables, workspace_->ScratchOf(), spectrum);
    ImageOf(nullptr, spectrum, objectTotal, image);
  } else {
    Fft2(objectReal, objectImag, gridSize, 0);
    ImageOfPlanes(objectReal, objectImag, workspace_->Spare(), objectTotal, image);
  }
}

void OpticsEngine::RingRetinalImage(double* image, double* optotype, double acuity, double* effectiveAcuity,
                                    int gapDirection) {
  DrawRingOptotype(optotype, gridSize, acuity, effectiveAcuity, gapDirection);
  PatternRetinalImage(image, optotype, gridSize);
}

}  // namespace orvanel
