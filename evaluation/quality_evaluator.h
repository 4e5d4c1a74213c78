// Computes metrics of image quality of eyes, one after the other, under the conditions of the physical model.
#ifndef ORVANEL_EVALUATION_QUALITY_EVALUATOR_H
#define ORVANEL_EVALUATION_QUALITY_EVALUATOR_H

#include "base/layers.h"
#include "eye/eye.h"
#include "metrics/quality/quality.h"
#include "models/physical_settings.h"

namespace orvanel::evaluation {

// Keeps tables and references for the next eye of the same pupil; results do not depend on earlier eyes. Use an
// evaluator in one thread at a time.
class QualityEvaluator {
 public:
  // Of the settings, those of light and pupil count. Throws Error where ORVANEL_KERNELS names no kernels.
  QualityEvaluator(PhysicalSettings settings, QualityRequest request);

  // The values are in the order of the request. Throws PhysicalRefusal for an eye or light that the physical model
  // refuses, OrderAboveHighest for terms above radial order 10, GaussianSdOutOfRange and PrescriptionPending.
  Quality Evaluate(const Eye& eye) { return Evaluate(eye, request_); }

  // Under other conditions.
  Quality Evaluate(const Eye& eye, const QualityRequest& request);

  // One metric, under the conditions of the request.
  QualityValue EvaluateOne(const Eye& eye, QualityMetric metric);

  const QualityRequest& request() const { return request_; }

 private:
  PhysicalSettings settings_;
  QualityRequest request_;
  QualityWorkspace workspace_;
};

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_QUALITY_EVALUATOR_H
