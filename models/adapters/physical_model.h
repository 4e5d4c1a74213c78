// Computes results by the physical model.
#ifndef ORVANEL_MODELS_ADAPTERS_PHYSICAL_MODEL_H
#define ORVANEL_MODELS_ADAPTERS_PHYSICAL_MODEL_H

#include <optional>
#include <span>
#include <vector>

#include "base/layers.h"
#include "models/model.h"
#include "models/physical/retinal_image.h"
#include "models/physical/workspace.h"
#include "models/physical_settings.h"

namespace orvanel::models {

// The kernels that this process computes with. Throws Error where ORVANEL_KERNELS names none that this CPU runs.
const Kernels& ChosenKernels();

// Angles and frequencies are those of the eye; images are linear in light. Errors are stated in models/physical.
class PhysicalModel : public Model {
 public:
  explicit PhysicalModel(PhysicalSettings settings);

  // Throws PhysicalRefusal, and OrderAboveHighest for coefficients above radial order 10.
  void Compute(const Eye& eye, Needs needs, Results& results) override;

  // The object is as wide as the settings say; white, 1, surrounds it. All kinds are linear; ImageKind::kStretched is
  // scaled to span 0 to 1 afterwards.
  void ImageOf(const Plane& object, ImageKind kind, Plane& image) override;
  void ImageOf(PrecomputedObject object, ImageKind kind, Plane& image) override;
  PrecomputedObject Precompute(const Plane& object) override;

  // Black on white in a field of 256 samples, at exactly the acuity asked for: the stroke is 1' / acuity. The ring is
  // 80 samples wide, or 40, 20 or 10 if the blur is too wide for the limits of ImageFilter.
  Ring SeeRing(const RingRequest& request) override;

  // The mean luminance of each channel surrounds the picture.
  RetinalPicture RetinalPictureOf(ObjectPicture object) override;

  BestFocus FindBestFocus(const Eye& eye, const FocusRequest& request) override;
  static std::span<const FocusMethod> FocusMethods();

 private:
  void ComputeWavefront(Needs needs, Results& results) const;
  void ComputeMtf(Needs needs, Results& results);
  double MtfOf(FocusMeasure measure, CyclesPerDegree frequency) const;  // of the eye of the last Compute
  Plane LinearImage(const Plane& object, ArcMinutes pixel, double surround);

  PhysicalSettings settings_;
  physical::Workspace workspace_;
  physical::Eye eye_;  // of the last Compute
  struct KeptFilter {
    int columns, rows;
    ArcMinutes pixel;
    physical::ImageFilter filter;
  };
  std::optional<KeptFilter> filter_;  // of that eye
  std::vector<Plane> objects_;
};

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_ADAPTERS_PHYSICAL_MODEL_H
