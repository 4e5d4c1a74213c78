// Tests the search of the best correction.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "evaluation/correction/best_correction.h"
#include "metrics/quality_names.h"
#include "tests/c_interface/c_eyes.h"

namespace orvanel::test {
namespace {

orvanel_correction_request UsualRequest() {
  orvanel_correction_request request{};
  request.size = sizeof request;
  EXPECT_EQ(orvanel_correction_default(&request), ORVANEL_OK);
  return request;
}

TEST(CCorrection, HasTheBitsOfTheLayerBelow) {
  std::vector<double> numbers = {0, 0, 0, 0, 0.4, 0, 0, 0.1};
  orvanel_eye_input input = InputOf(numbers);
  input.pupil_mm = 3.0;
  const EyeHandle eye = MakeEye(input);
  const orvanel_metrics_request metric = RequestOf("SRX");
  orvanel_correction_request request = UsualRequest();
  request.sphere_only = 1;
  orvanel_correction correction{};
  correction.size = sizeof correction;
  uint64_t lenses = 0;
  const auto count = [](void* data, uint64_t done, uint64_t total) -> int32_t {
    EXPECT_EQ(total, 0u);
    *static_cast<uint64_t*>(data) = done;
    return 0;
  };
  ASSERT_EQ(orvanel_refract(eye.get(), &metric, &request, count, &lenses, &correction), ORVANEL_OK) << LastError().text;

  metrics::QualityRequest same;
  same.metrics = metrics::QualityMetricsNamed("SRX");
  evaluation::QualityEvaluator evaluator({}, same);
  evaluation::Eye layer;
  layer.pupil = Millimetres(3.0);
  layer.coefficients = eye::EyeCoefficients(eye::kOsaConvention, numbers);
  evaluation::CorrectionRequest wanted;
  wanted.grid.sphereOnly = true;
  const evaluation::Correction found = BestCorrection(evaluator, layer, wanted);
  EXPECT_EQ(correction.best.sphere, found.best.lens.power.sphere.value());
  EXPECT_EQ(correction.best.value, found.best.quality.value);
  EXPECT_EQ(correction.in_case.sphere, found.inCase.lens.power.sphere.value());
  EXPECT_EQ(correction.none.value, found.none.quality.value);
  EXPECT_EQ(correction.evaluations, found.evaluations);
  EXPECT_EQ(lenses, static_cast<uint64_t>(found.evaluations + found.evaluationsInCase));
  EXPECT_EQ(std::fmod(correction.in_case.sphere, 0.25), 0.0);
  EXPECT_GE(correction.best.value, correction.none.value);
}

TEST(CCorrection, IsCancelledAndRefusesMoreThanOneMetric) {
  const EyeHandle eye = SomeEye();
  orvanel_metrics_request metric = RequestOf("SRX");
  orvanel_correction_request request = UsualRequest();
  orvanel_correction correction{};
  correction.size = sizeof correction;
  const auto stop = [](void*, uint64_t, uint64_t) -> int32_t { return 1; };
  EXPECT_EQ(orvanel_refract(eye.get(), &metric, &request, stop, nullptr, &correction), ORVANEL_CANCELLED);
  metric.metrics = "SRX,VSX";
  EXPECT_EQ(orvanel_refract(eye.get(), &metric, &request, stop, nullptr, &correction), ORVANEL_INVALID_ARGUMENT);
  metric.metrics = "SRX";
  request.axis_step = 7.0;
  EXPECT_EQ(orvanel_refract(eye.get(), &metric, &request, stop, nullptr, &correction), ORVANEL_INVALID_ARGUMENT);
  request = UsualRequest();
  request.vertex_mm = 0.012;
  EXPECT_NE(orvanel_refract(eye.get(), &metric, &request, stop, nullptr, &correction), ORVANEL_OK);
  orvanel_error error{};
  error.size = sizeof error;
  orvanel_last_error(&error);
  EXPECT_STREQ(error.code, "vertex_out_of_range");
}

}  // namespace
}  // namespace orvanel::test
