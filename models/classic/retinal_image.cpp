// Computes the retinal images of rings and complex objects, and the transfer function for all images.
#include <algorithm>

#include "models/classic/workspace.h"
#include "optics/samples.h"

namespace orvanel {

void OpticsEngine::EnsureOtf() {
  if (otfValid == 1) return;
  otfValid = 1;
  Pipeline& pipeline = *workspace_->pipeline;
  // A host may have changed the samples of an exposed PSF.
  if (psfPlane.exposed()) {
    pipeline.FormOtf({psfPlane.data(), gridSize});
  } else {
    pipeline.FormOtf();
  }
  otfRealPlane.SetPending(
      [](void* source, double* re) {
        const Pipeline& held = *static_cast<Workspace*>(source)->pipeline;
        held.WriteOtfReal({re, held.side()});
      },
      workspace_.get());
  otfImagPlane.SetPending(
      [](void* source, double* im) {
        const Pipeline& held = *static_cast<Workspace*>(source)->pipeline;
        held.WriteOtfImag({im, held.side()});
      },
      workspace_.get());
}

void OpticsEngine::FilterThroughEye(double* objectReal, double* objectImag, double* image, double objectTotal) {
  const int n = gridSize;
  EnsureOtf();
  Pipeline& pipeline = *workspace_->pipeline;
  const Brightness brightness = Workspace::BrightnessOf(*this, objectTotal);
  const bool isReal = std::all_of(objectImag, objectImag + SampleCount(n), [](double v) { return v == 0.0; });
  if (isReal) {
    pipeline.RealImage({objectReal, n}, Workspace::ExposedOtf(*this), brightness, {image, n});
  } else {
    pipeline.ComplexImage({{objectReal, n}, {objectImag, n}}, Workspace::OtfPlanes(*this), brightness, {image, n});
  }
}

void OpticsEngine::RingRetinalImage(double* image, double* optotype, double acuity, double* effectiveAcuity,
                                    int gapDirection) {
  DrawRingOptotype(optotype, gridSize, acuity, effectiveAcuity, gapDirection);
  PatternRetinalImage(image, optotype, gridSize);
}

}  // namespace orvanel
