// Evaluates eyes one after the other by a model: results, metrics, and retinal images of objects.
#ifndef ORVANEL_EVALUATION_EVALUATOR_H
#define ORVANEL_EVALUATION_EVALUATOR_H

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/layers.h"
#include "metrics/metrics.h"
#include "models/model.h"

namespace orvanel::evaluation {

// Reuses its memory: an eye with the same needs as the previous one allocates no planes. Use an evaluator in one thread
// at a time. Different evaluators share no mutable data.
class Evaluator {
 public:
  explicit Evaluator(const ModelRequest& request = {}) : model_(MakeModel(request)) {}

  // Computes only what is needed. The results are valid until the next eye. Throws Error if the model cannot represent
  // the eye.
  const Results& Evaluate(const Eye& eye, Needs needs);

  // The values of the chosen columns.
  //   more  needs of the results in addition to those of the columns
  std::vector<double> Measure(const Eye& eye, const MetricChoice& choice, Needs more = {});

  // The results of the last eye.
  const Results& results() const { return results_; }

  // The retinal image of an object for the last eye, which must have been evaluated with Need::kImages.
  Plane ImageOf(const Plane& object, ImageKind kind);

  // A Landolt ring and its retinal image, likewise.
  Ring SeeRing(const RingRequest& request) { return model_->SeeRing(request); }

  // The same for an object that is shown to many eyes; kStretched or kTotalLight.
  PrecomputedObject Precompute(const Plane& object) { return model_->Precompute(object); }
  void ImageOf(PrecomputedObject object, ImageKind kind, Plane& image) { model_->ImageOf(object, kind, image); }

  // The same for the channels of a picture.
  RetinalPicture RetinalPictureOf(ObjectPicture object) { return model_->RetinalPictureOf(std::move(object)); }

  // Searches by a method of FocusMethodsOf(kind). Afterwards, evaluate an eye again before its images.
  BestFocus FindBestFocus(const Eye& eye, const FocusRequest& request);

 private:
  std::unique_ptr<Model> model_;
  Results results_;
  Needs filled_;  // the results that are filled, in addition to pupil and scales
};

// The values of all chosen columns, and of one column of the table.
std::vector<double> ValuesOf(const Eye& eye, const Results& results, const MetricChoice& choice);
double ValueOf(const Eye& eye, const Results& results, std::string_view column);

// The columns that depend only on the pupil, and their values.
std::vector<std::pair<std::string, double>> ConstantsOf(Millimetres pupil, const ModelRequest& model = {});

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_EVALUATOR_H
