// Searches the best correction of one eye.
#include <utility>

#include "c_interface/arguments.h"
#include "c_interface/handles.h"
#include "evaluation/correction/best_correction.h"
#include "eye/prescription.h"

namespace orvanel::c_interface {
namespace {

using evaluation::LensValue;

evaluation::CorrectionRequest RequestOf(const orvanel_correction_request& given) {
  evaluation::CorrectionRequest request;
  constexpr double kMostEvaluations = 100000;
  using evaluation::kLargestAxisStep, evaluation::kLargestTrialStep;
  using evaluation::kSmallestAxisStep, evaluation::kSmallestTrialStep;
  request.grid.step = eye::Dioptres(RequireWithin(given.step, kSmallestTrialStep, kLargestTrialStep, "step"));
  request.grid.axisStep =
      eye::Degrees(RequireWithin(given.axis_step, kSmallestAxisStep, kLargestAxisStep, "axis_step"));
  if (!DividesHalfTurn(request.grid.axisStep)) {
    throw ArgumentError("invalid_argument", "180 is not a multiple of the axis_step; use 1, 2, 5 or 10",
                        {{"argument", std::string("axis_step")}});
  }
  request.vertex = eye::VertexDistance(given.vertex_mm);
  request.grid.sphereOnly = given.sphere_only != 0;
  request.evaluations = static_cast<int>(RequireWithin(given.evaluations, 1, kMostEvaluations, "evaluations"));
  return request;
}

orvanel_lens_value ValueOf(const LensValue& lens) {
  return {lens.lens.power.sphere.value(),
          lens.lens.power.cylinder.value(),
          lens.lens.power.axis.value(),
          lens.quality.value,
          lens.quality.error,
          NoteOf(lens.quality.note),
          0};
}

}  // namespace
}  // namespace orvanel::c_interface

using namespace orvanel::c_interface;  // NOLINT(google-build-using-namespace): the functions of C have no namespace

orvanel_status orvanel_correction_default(orvanel_correction_request* request) noexcept {
  return Call([&] {
    RequireStruct(request, "orvanel_correction_request");
    const orvanel::evaluation::CorrectionRequest usual;
    *request = {sizeof *request, usual.grid.step.value(), usual.grid.axisStep.value(), 0.0, 0, usual.evaluations};
  });
}

orvanel_status orvanel_refract(const orvanel_eye* eye, const orvanel_metrics_request* metric,
                               const orvanel_correction_request* request, orvanel_progress progress, void* data,
                               orvanel_correction* correction) noexcept {
  return Call(
      [&] {
        RequirePointer(eye, "eye");
        RequireStruct(metric, "orvanel_metrics_request");
        RequireStruct(request, "orvanel_correction_request");
        RequireStruct(correction, "orvanel_correction");
        orvanel::metrics::QualityRequest quality = QualityRequestOf(*metric);
        if (quality.metrics.size() != 1) {
          throw ArgumentError("invalid_argument", "a lens is searched by one metric; name only one",
                              {{"argument", std::string("metrics")}});
        }
        orvanel::evaluation::CorrectionRequest wanted = RequestOf(*request);
        uint64_t done = 0;
        wanted.afterValue = [&] { Report(progress, data, ++done, 0); };
        orvanel::evaluation::QualityEvaluator evaluator(SettingsOf(metric->settings), std::move(quality));
        const orvanel::evaluation::Correction found = BestCorrection(evaluator, eye->eye, wanted);
        *correction = {sizeof *correction,
                       ValueOf(found.none),
                       ValueOf(found.best),
                       ValueOf(found.inCase),
                       ValueOf(found.leastSquares),
                       ValueOf(found.paraxial),
                       found.evaluations,
                       found.evaluationsInCase,
                       found.converged,
                       0};
      },
      ORVANEL_REFUSED);
}
