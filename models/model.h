// Defines the interface of a model: from an eye to its results and to the retinal images of objects.
#ifndef ORVANEL_MODELS_MODEL_H
#define ORVANEL_MODELS_MODEL_H

#include <cstddef>
#include <memory>
#include <span>

#include "base/layers.h"
#include "eye/eye.h"
#include "models/focus.h"
#include "models/model_kind.h"
#include "models/needs.h"
#include "models/physical_settings.h"
#include "models/results.h"

namespace orvanel::models {

enum class ImageKind {
  kStretched,   // scaled to span exactly 0 to 1
  kTotalLight,  // the object's total light is kept; clipped at 1
  kLinear,      // the same, and close to incoherent addition of light
};

// An object with a precomputed spectrum, for the images of many eyes. Valid only for the model that computed it.
struct PrecomputedObject {
  std::size_t index;
};

// A model reuses its memory. Use a model in one thread at a time; different models share no mutable data.
class Model {
 public:
  Model() = default;
  Model(const Model&) = delete;
  Model& operator=(const Model&) = delete;
  virtual ~Model() = default;

  // Writes pupil, scales and the needed results; leaves the others unchanged. Throws Error if the model cannot
  // represent the eye.
  virtual void Compute(const Eye& eye, Needs needs, Results& results) = 0;

  // Write the retinal image of an object for the eye of the last Compute, which must have had Need::kImages.
  virtual void ImageOf(const Plane& object, ImageKind kind, Plane& image) = 0;
  virtual void ImageOf(PrecomputedObject object, ImageKind kind, Plane& image) = 0;

  virtual PrecomputedObject Precompute(const Plane& object) = 0;

  // A Landolt ring as the model shows it, and its retinal image, under the conditions of ImageOf. Throws RingTooSmall.
  virtual Ring SeeRing(const RingRequest& request) = 0;

  // The retinal images of a picture, each channel separately, under the conditions of ImageOf.
  virtual RetinalPicture RetinalPictureOf(ObjectPicture object) = 0;

  // Searches the defocus, and on request the astigmatism, with the best image quality. Call Compute again before
  // computing images.
  virtual BestFocus FindBestFocus(const Eye& eye, const FocusRequest& request) = 0;
};

// Which model, and what it is asked for beside the eye.
struct ModelRequest {
  ModelKind kind = ModelKind::kClassic;
  PhysicalSettings physical;  // of no meaning for the classic model
};

// The view of its PSF and MTF.
constexpr View ViewOf(const ModelRequest& request) {
  return request.kind == ModelKind::kPhysical ? ViewOf(request.physical.view) : View::kRetina;
}

std::unique_ptr<Model> MakeModel(const ModelRequest& request);

// The methods of FindBestFocus that a model offers; the first is the default.
std::span<const FocusMethod> FocusMethodsOf(ModelKind kind);

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_MODEL_H
