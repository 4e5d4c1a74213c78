// Converts the eye, and turns refusals into errors.
#include "evaluation/quality_evaluator.h"

#include <utility>

#include "evaluation/errors.h"
#include "metrics/errors.h"
#include "models/adapters/physical_eye.h"
#include "models/adapters/physical_model.h"
#include "models/adapters/physical_refusal.h"

namespace orvanel::evaluation {

QualityEvaluator::QualityEvaluator(PhysicalSettings settings, QualityRequest request)
    : settings_(std::move(settings)), request_(std::move(request)), workspace_(ChosenKernels()) {}

QualityValue QualityEvaluator::EvaluateOne(const Eye& eye, QualityMetric metric) {
  QualityRequest request = request_;
  request.metrics = {metric};
  return Evaluate(eye, request).values.front();
}

Quality QualityEvaluator::Evaluate(const Eye& eye, const QualityRequest& request) {
  if (eye.prescription) throw PrescriptionPending();
  const QualityOutcome outcome = QualityOf(PhysicalEyeOf(eye, settings_), settings_.light, request, workspace_);
  if (outcome) return *outcome;
  const physical::Refusal& refusal = outcome.refusal().model;
  if (outcome.refusal().problem == QualityProblem::kGaussianSd) {
    throw GaussianSdOutOfRange(refusal.value, refusal.low, refusal.high);
  }
  throw PhysicalRefusal(refusal);
}

}  // namespace orvanel::evaluation
