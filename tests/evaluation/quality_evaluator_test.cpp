// Tests that eyes and settings reach the metrics of image quality, and the errors.
#include "evaluation/quality_evaluator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "evaluation/errors.h"
#include "eye/errors.h"
#include "metrics/errors.h"
#include "models/adapters/physical_refusal.h"
#include "models/model.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::evaluation {
namespace {

using M = QualityMetric;

const PhysicalSettings kUsual = ModelRequest().physical;

Eye WithModes(const Coefficients& osa, double pupil = 5.0) {
  Eye eye;
  eye.pupil = Millimetres(pupil);
  eye.coefficients.Replace(osa);
  return eye;
}

double ValueOf(const Eye& eye, M metric, const PhysicalSettings& settings = kUsual) {
  QualityRequest request;
  request.metrics = {metric};
  return QualityEvaluator(settings, request).Evaluate(eye).values.at(0).value;
}

TEST(QualityEvaluator, HasTheEyesModesPupilAndReferenceWavelength) {
  const Coefficients modes = {0.0, 0.1, -0.2, 0.06, 0.11, -0.04, 0.03};
  const double ofModes = std::sqrt(0.06 * 0.06 + 0.11 * 0.11 + 0.04 * 0.04 + 0.03 * 0.03);
  EXPECT_NEAR(ValueOf(WithModes(modes), M::kRmsW), ofModes, 1e-12);
  // Slopes of defocus are 2.43086' for each dioptre and mm of the radius.
  constexpr double kC4 = 0.2, kDioptres = kC4 * 4.0 * std::numbers::sqrt3 / (3.5 * 3.5);
  EXPECT_NEAR(ValueOf(WithModes({0.0, 0.0, 0.0, 0.0, kC4}, 7.0), M::kRmsS), 2.43086 * kDioptres * 3.5, 1e-5);
  // White light needs the wavelength, at which defocus stays.
  PhysicalSettings white = kUsual;
  white.light = {{480.0, 1.0}, {620.0, 1.0}};
  EXPECT_THROW(ValueOf(WithModes(modes), M::kVsx, white), PhysicalRefusal);
  Eye known = WithModes({});
  known.referenceWavelength = Nanometres(480.0);
  const double blue = ValueOf(known, M::kVsx, white);
  known.referenceWavelength = Nanometres(545.0);
  EXPECT_GT(std::fabs(ValueOf(known, M::kVsx, white) - blue), 1e-3);
}

TEST(QualityEvaluator, HasTheSettingsLightAndPupil) {
  const Eye eye = WithModes({});
  const double peak = ValueOf(eye, M::kEw);
  PhysicalSettings red = kUsual;
  red.light = {{700.0, 1.0}};
  EXPECT_NEAR(ValueOf(eye, M::kEw, red) / peak, 700.0 / 555.0, 1e-9);
  PhysicalSettings small = kUsual;
  small.outline.semiAxisA = small.outline.semiAxisB = 0.5;
  EXPECT_NEAR(ValueOf(eye, M::kEw, small) / peak, 2.0, 1e-9);
}

TEST(QualityEvaluator, HasTheMtfAtFrequencies) {
  // Without aberration: 2/pi (arccos s - s root(1 - s^2)), s the share of the cut-off.
  QualityRequest request;
  request.metrics = {};
  request.mtfAtCpd = {10.0, 37.0, 500.0};
  PhysicalSettings settings = kUsual;
  settings.light = {{600.0, 1.0}};
  const Quality quality = QualityEvaluator(settings, request).Evaluate(WithModes({}, 3.0));
  EXPECT_TRUE(quality.values.empty());
  ASSERT_EQ(quality.mtf.size(), 3U);
  const double cutOff = 1000.0 * 3.0 / 0.6 * std::numbers::pi / 180.0;
  for (const MtfValue& mtf : quality.mtf) {
    const double s = std::fmin(mtf.frequencyCpd / cutOff, 1.0);
    EXPECT_NEAR(mtf.value, 2.0 / std::numbers::pi * (std::acos(s) - s * std::sqrt(1.0 - s * s)), mtf.error);
  }
  EXPECT_EQ(quality.mtf[1].frequencyCpd, 37.0);
}

TEST(QualityEvaluator, EyesBeforeDoNotMatter) {
  QualityRequest request;
  request.metrics = {M::kVsx, M::kSrx, M::kD50};
  QualityEvaluator alone(kUsual, request), after(kUsual, request);
  after.Evaluate(WithModes({0.0, 0.0, 0.0, 0.3, -0.9}, 6.0));
  after.Evaluate(WithModes({}, 3.0));
  const Quality a = alone.Evaluate(StandardObserver()), b = after.Evaluate(StandardObserver());
  ASSERT_EQ(a.values.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(a.values[i].metric, request.metrics[i]);
    EXPECT_EQ(a.values[i].value, b.values[i].value);
  }
}

TEST(QualityEvaluator, RefusesWithCodesAndFields) {
  QualityRequest request;
  request.metrics = {M::kNs};
  request.gaussianSdArcmin = 0.1;
  try {
    QualityEvaluator(kUsual, request).Evaluate(WithModes({}));
    FAIL();
  } catch (const GaussianSdOutOfRange& error) {
    EXPECT_EQ(error.sd, 0.1);
    EXPECT_EQ(error.lowest, kSmallestGaussianSdArcmin);
    EXPECT_EQ(error.highest, kLargestGaussianSdArcmin);
  }
  try {
    ValueOf(WithModes({}, 15.0), M::kVsx);
    FAIL();
  } catch (const PhysicalRefusal& error) {
    EXPECT_EQ(error.refusal.problem, physical::Problem::kPupilDiameter);
    EXPECT_EQ(error.refusal.value, 15.0);
  }
  Coefficients high(68, 0.0);
  high[67] = 0.1;  // of order 11
  EXPECT_THROW(ValueOf(WithModes(high), M::kVsx), OrderAboveHighest);
  Eye pending = WithModes({});
  pending.prescription.emplace();
  EXPECT_THROW(ValueOf(pending, M::kVsx), PrescriptionPending);
}

}  // namespace
}  // namespace orvanel::evaluation
