// Evaluates one eye after the other by a model: its results, the metrics of them, and the retinal images of objects.
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

// Keeps its memory, so that an eye with the needs of the one before allocates no planes. Serves one thread at a time;
// different ones share no mutable data.
class Evaluator {
 public:
  explicit Evaluator(ModelKind kind = ModelKind::kClassic) : model_(MakeModel(kind)) {}

  // No more is computed than is needed. The results are valid until the next eye. Throws Error where the model cannot
  // represent the eye.
  const Results& Evaluate(const Eye& eye, Needs needs);

  // The values of the chosen columns.
  //   more  what the results have beside the needs of these columns
  std::vector<double> Measure(const Eye& eye, const MetricChoice& choice, Needs more = {});

  // Of the last eye.
  const Results& results() const { return results_; }

  // The retinal image of an object for the last eye, which must have been evaluated with Need::kImages.
  Plane ImageOf(const Plane& object, ImageKind kind);

  // The same for an object that many eyes see; kStretched or kTotalLight.
  PrecomputedObject Precompute(const Plane& object) { return model_->Precompute(object); }
  void ImageOf(PrecomputedObject object, ImageKind kind, Plane& image) { model_->ImageOf(object, kind, image); }

  // The same for the channels of a picture.
  SeenPicture SeePicture(ObjectPicture object) { return model_->SeePicture(std::move(object)); }

  // By a method of FocusMethodsOf(kind). Evaluate an eye again before its images.
  BestFocus FindBestFocus(const Eye& eye, const FocusRequest& request) { return model_->FindBestFocus(eye, request); }

 private:
  std::unique_ptr<Model> model_;
  Results results_;
  Needs filled_;  // what the results have, but for pupil and scales
};

// The values of all columns that are chosen, and of one column of the table.
std::vector<double> ValuesOf(const Eye& eye, const Results& results, const MetricChoice& choice);
double ValueOf(const Eye& eye, const Results& results, std::string_view column);

// Columns that are the same in all rows where all have this pupil, and their values.
std::vector<std::pair<std::string, double>> ConstantsOf(Millimetres pupil);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_EVALUATOR_H
