// Declares the classic model, which computes results by the engine.
#ifndef ORVANEL_MODELS_ADAPTERS_CLASSIC_MODEL_H
#define ORVANEL_MODELS_ADAPTERS_CLASSIC_MODEL_H

#include <array>
#include <span>
#include <vector>

#include "base/layers.h"
#include "models/model.h"
#include "orvanel/optics_engine.h"

namespace orvanel::models {

// Results have the bits of the exports.
class ClassicModel : public Model {
 public:
  ClassicModel() : engine_(ORVANEL_GRID_SIZE) {}

  // Throws WavefrontTooHigh, and Error for coefficients above radial order 6. Needs without the wavefront read no
  // coefficients.
  void Compute(const Eye& eye, Needs needs, Results& results) override;

  // The square of the filtered object. ImageKind::kLinear takes the root of it. This is the convolution with the PSF,
  // except for a phase of the PSF samples in the engine, which grows with the width of the PSF.
  void ImageOf(const Plane& object, ImageKind kind, Plane& image) override;
  void ImageOf(PrecomputedObject object, ImageKind kind, Plane& image) override;  // kStretched or kTotalLight

  PrecomputedObject Precompute(const Plane& object) override;

  // As the exports draw it: a multiple of 5 samples wide, so that its acuity differs from the one asked for.
  Ring SeeRing(const RingRequest& request) override;

  // With contrast kept, each channel keeps its total light. Otherwise three channels keep the sum of their light, so
  // that grey stays grey.
  RetinalPicture RetinalPictureOf(ObjectPicture object) override;

  // Uses OptimiseFocus, WalkByPsf and WalkByFit of the engine.
  BestFocus FindBestFocus(const Eye& eye, const FocusRequest& request) override;
  static std::span<const FocusMethod> FocusMethods();

 private:
  FocusQuality QualityOf(const std::array<double, ORVANEL_COEFFICIENTS>& coefficients, Millimetres pupil,
                         const FocusRequest& request);
  void ComputePlanes(Needs needs, Results& results);

  OpticsEngine engine_;
  Millimetres pupil_;  // of the last eye
  Plane spare_;        // receives planes that the engine writes but are not needed
  std::vector<PreparedObject> objects_;
};

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_ADAPTERS_CLASSIC_MODEL_H
