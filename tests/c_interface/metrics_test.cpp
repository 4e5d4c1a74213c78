// Tests metrics of many eyes: bits of the layers below for every number of threads, gradients, refused rows.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "evaluation/quality_evaluator.h"
#include "metrics/quality_names.h"
#include "tests/c_interface/c_eyes.h"

namespace orvanel::test {
namespace {

constexpr std::size_t kEyes = 5, kModes = 15;

// Eyes that differ in all modes.
std::vector<double> ManyModes() {
  std::vector<double> numbers(kEyes * kModes);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::size_t mode = i % kModes;
    numbers[i] = mode < 3 ? 0.0 : 0.02 * static_cast<double>((i * 7) % 11) - 0.1;
  }
  return numbers;
}

struct Batch {
  std::vector<double> numbers = ManyModes();
  double pupil = 3.0;
  orvanel_eyes eyes{};
  std::vector<double> values, errors, gradients;
  std::vector<int32_t> statuses;
  orvanel_metrics_output output{};

  explicit Batch(std::size_t metrics) : values(kEyes * metrics, -7.0), errors(values), statuses(kEyes, -1) {
    eyes.size = sizeof eyes;
    eyes.coefficients = orvanel_matrix(numbers.data(), kEyes, kModes);
    eyes.pupil_mm = orvanel_vector(&pupil, kEyes);
    eyes.pupil_mm.strides[0] = 0;
    eyes.convention = orvanel_osa_convention();
    eyes.laterality = ORVANEL_OD;
    output.size = sizeof output;
    output.values = orvanel_matrix(values.data(), kEyes, static_cast<int64_t>(metrics));
    output.errors = orvanel_matrix(errors.data(), kEyes, static_cast<int64_t>(metrics));
    for (orvanel_array* const array : {&output.gradients, &output.origins}) array->size = sizeof *array;
    output.statuses = statuses.data();
  }

  void AskForGradients(std::size_t metrics) {
    gradients.assign(kEyes * metrics * kModes, -7.0);
    output.gradients.data = gradients.data();
    output.gradients.dimensions = 3;
    const auto columns = static_cast<int64_t>(metrics), modes = static_cast<int64_t>(kModes);
    const int64_t shape[3] = {kEyes, columns, modes}, strides[3] = {columns * modes * 8, modes * 8, 8};
    std::memcpy(output.gradients.shape, shape, sizeof shape);
    std::memcpy(output.gradients.strides, strides, sizeof strides);
  }

  orvanel_status Run(const orvanel_metrics_request& request, uint32_t threads = 1,
                     orvanel_reasons** reasons = nullptr) {
    return orvanel_metrics_of_rows(&request, &eyes, threads, nullptr, nullptr, &output, reasons);
  }
};

TEST(CMetrics, TheCatalogueIsThatOfTheLayerBelow) {
  const auto rows = metrics::QualityCatalogue();
  ASSERT_EQ(orvanel_metric_count(), rows.size());
  for (uint64_t i = 0; i < rows.size(); ++i) {
    orvanel_metric metric{};
    metric.size = sizeof metric;
    ASSERT_EQ(orvanel_metric_at(i, &metric), ORVANEL_OK);
    EXPECT_STREQ(metric.name, rows[i].name);
    EXPECT_STREQ(metric.definition, rows[i].definition);
    EXPECT_EQ(metric.has_gradient != 0, rows[i].hasGradient);
  }
  orvanel_metric metric{};
  metric.size = sizeof metric;
  EXPECT_EQ(orvanel_metric_at(rows.size(), &metric), ORVANEL_INVALID_ARGUMENT);
  uint64_t count = 0;
  ASSERT_EQ(orvanel_metrics_count("all", &count), ORVANEL_OK);
  EXPECT_EQ(count, rows.size());
}

TEST(CMetrics, RowsHaveTheBitsOfTheLayerBelowForEveryNumberOfThreads) {
  const orvanel_metrics_request request = RequestOf("VSX,RMSw,SRX");
  metrics::QualityRequest same;
  same.metrics = metrics::QualityMetricsNamed("VSX,RMSw,SRX");
  evaluation::QualityEvaluator evaluator({}, same);
  for (const uint32_t threads : {1U, 2U, 3U, 16U}) {
    Batch batch(3);
    ASSERT_EQ(batch.Run(request, threads), ORVANEL_OK) << LastError().text;
    for (std::size_t row = 0; row < kEyes; ++row) {
      evaluation::Eye eye;
      eye.pupil = Millimetres(3.0);
      eye.coefficients = eye::EyeCoefficients(
          eye::kOsaConvention, {batch.numbers.begin() + static_cast<std::ptrdiff_t>(row * kModes),
                                batch.numbers.begin() + static_cast<std::ptrdiff_t>((row + 1) * kModes)});
      const metrics::Quality quality = evaluator.Evaluate(eye);
      for (std::size_t m = 0; m < 3; ++m) {
        EXPECT_EQ(batch.values[row * 3 + m], quality.values[m].value);
        EXPECT_EQ(batch.errors[row * 3 + m], quality.values[m].error);
      }
      EXPECT_EQ(batch.statuses[row], ORVANEL_OK);
    }
  }
}

TEST(CMetrics, HandlesAndRowsAgree) {
  const orvanel_metrics_request request = RequestOf("VSX");
  Batch rows(1), handles(1);
  ASSERT_EQ(rows.Run(request), ORVANEL_OK);
  std::vector<EyeHandle> eyes;
  std::vector<const orvanel_eye*> pointers;
  for (std::size_t i = 0; i < kEyes; ++i) {
    std::vector<double> numbers(rows.numbers.begin() + static_cast<std::ptrdiff_t>(i * kModes),
                                rows.numbers.begin() + static_cast<std::ptrdiff_t>((i + 1) * kModes));
    orvanel_eye_input input = InputOf(numbers);
    input.pupil_mm = 3.0;
    eyes.push_back(MakeEye(input));
    pointers.push_back(eyes.back().get());
  }
  ASSERT_EQ(orvanel_metrics_of_eyes(&request, pointers.data(), kEyes, 2, nullptr, nullptr, &handles.output, nullptr),
            ORVANEL_OK);
  EXPECT_EQ(handles.values, rows.values);
}

TEST(CMetrics, ARefusedRowHasAReasonAndTheOthersAreComputed) {
  const orvanel_metrics_request request = RequestOf("VSX");
  Batch whole(1), batch(1);
  ASSERT_EQ(whole.Run(request), ORVANEL_OK);
  batch.numbers[2 * kModes + 4] = std::numeric_limits<double>::quiet_NaN();
  batch.numbers[4 * kModes + 4] = 500.0;  // too steep for any window
  for (const uint32_t threads : {1U, 2U}) {
    orvanel_reasons* made = nullptr;
    ASSERT_EQ(batch.Run(request, threads, &made), ORVANEL_ROWS_REFUSED);
    const std::string text = LastError().text;
    EXPECT_NE(text.find("2 eyes are refused; the first in row 2 (from 0): the coefficient of index 4 is not finite"),
              std::string::npos)
        << text;
    const ReasonsHandle reasons(made);
    orvanel_error reason{};
    reason.size = sizeof reason;
    ASSERT_EQ(orvanel_reason_of_row(reasons.get(), 2, &reason), ORVANEL_OK);
    EXPECT_STREQ(reason.code, "coefficient_not_finite");
    EXPECT_EQ(batch.statuses[2], ORVANEL_INVALID_EYE);
    EXPECT_TRUE(std::isnan(batch.values[2]));
    ASSERT_EQ(orvanel_reason_of_row(reasons.get(), 4, &reason), ORVANEL_OK);
    EXPECT_EQ(reason.status, ORVANEL_REFUSED);
    ASSERT_EQ(orvanel_reason_of_row(reasons.get(), 1, &reason), ORVANEL_OK);
    EXPECT_EQ(reason.status, ORVANEL_OK);
    EXPECT_EQ(orvanel_reason_of_row(reasons.get(), kEyes, &reason), ORVANEL_INVALID_ARGUMENT);
    for (const std::size_t row : {0U, 1U, 3U}) EXPECT_EQ(batch.values[row], whole.values[row]);
  }
}

TEST(CMetrics, GradientsAreByTheCoefficientsInTheirConvention) {
  // RMSw is the root of the sum of squares: its derivative by a mode is the mode over RMSw. In nanometres, y down,
  // derivatives are 1000 times less, and those of sines change their sign.
  const orvanel_metrics_request request = RequestOf("RMSw,PV");
  Batch batch(2);
  batch.AskForGradients(2);
  ASSERT_EQ(batch.Run(request), ORVANEL_OK) << LastError().text;
  for (std::size_t row = 0; row < kEyes; ++row) {
    for (std::size_t k = 0; k < kModes; ++k) {
      const double derivative = batch.gradients[(row * 2) * kModes + k];
      EXPECT_NEAR(derivative, k < 3 ? 0.0 : batch.numbers[row * kModes + k] / batch.values[row * 2], 1e-12);
      EXPECT_TRUE(std::isnan(batch.gradients[(row * 2 + 1) * kModes + k]));
    }
  }
  Batch other(2);
  other.AskForGradients(2);
  other.eyes.convention.unit = ORVANEL_NM;
  other.eyes.convention.y_axis = ORVANEL_Y_DOWN;
  for (double& number : other.numbers) number *= 1000.0;
  constexpr std::size_t kSines[] = {3, 6, 7, 10, 11};
  for (std::size_t row = 0; row < kEyes; ++row) {
    for (const std::size_t k : kSines) other.numbers[row * kModes + k] *= -1.0;
  }
  ASSERT_EQ(other.Run(request), ORVANEL_OK);
  for (std::size_t k = 0; k < kModes; ++k) {
    const double sign = std::find(std::begin(kSines), std::end(kSines), k) == std::end(kSines) ? 1.0 : -1.0;
    EXPECT_NEAR(other.gradients[k], sign * batch.gradients[k] / 1000.0, 1e-15) << k;
  }
}

TEST(CMetrics, ABatchIsCancelledAfterTheRowsBefore) {
  const orvanel_metrics_request request = RequestOf("RMSw");
  for (const uint32_t threads : {1U, 2U}) {
    Batch batch(1);
    int calls = 0;
    const auto stop = [](void* data, uint64_t done, uint64_t total) -> int32_t {
      EXPECT_EQ(total, kEyes);
      EXPECT_EQ(done, static_cast<uint64_t>(++*static_cast<int*>(data)));
      return done == 3;
    };
    EXPECT_EQ(orvanel_metrics_of_rows(&request, &batch.eyes, threads, stop, &calls, &batch.output, nullptr),
              ORVANEL_CANCELLED);
    EXPECT_EQ(calls, 3);
    EXPECT_NE(batch.values[2], -7.0);
    EXPECT_EQ(batch.values[3], -7.0);
  }
}

TEST(CMetrics, OutputOfAnotherShapeIsRefusedAndNotWritten) {
  const orvanel_metrics_request request = RequestOf("RMSw");
  Batch batch(1);
  batch.output.values.shape[1] = 2;
  EXPECT_EQ(batch.Run(request), ORVANEL_INVALID_ARGUMENT);
  EXPECT_STREQ(LastError().text, "values has the shape 5 x 2; it needs 5 x 1");
  EXPECT_EQ(batch.values[0], -7.0);
  batch.output.values.shape[1] = 1;
  EXPECT_EQ(batch.Run(request, 0), ORVANEL_INVALID_ARGUMENT);
  EXPECT_EQ(batch.Run(request, 1U << 31U), ORVANEL_INVALID_ARGUMENT);
  batch.eyes.coefficients.shape[0] = 0;
  batch.eyes.pupil_mm.shape[0] = 0;
  batch.output.values.shape[0] = batch.output.errors.shape[0] = 0;
  EXPECT_EQ(batch.Run(request), ORVANEL_OK) << LastError().text;
}

}  // namespace
}  // namespace orvanel::test
