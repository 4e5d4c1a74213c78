// Best lenses of eyes whose best lens follows from their construction, and of random eyes against a dense search.
#include "evaluation/correction/best_correction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "eye/adjustments.h"
#include "metrics/metrics.h"
#include "models/adapters/physical_refusal.h"
#include "models/model.h"
#include "tests/eye/eyes.h"
#include "tests/support/random_eyes.h"

namespace orvanel::evaluation {
namespace {

using M = QualityMetric;

Eye EyeOf(const Coefficients& osa, double pupil) {
  Eye eye;
  eye.pupil = Millimetres(pupil);
  eye.coefficients = {kOsaConvention, osa};
  return eye;
}

Eye With(const Eye& eye, const Refraction& refraction) {
  Adjustments adjustments;
  adjustments.refraction = ToPowerVector(refraction);
  return Adjusted(eye, adjustments);
}

QualityEvaluator EvaluatorOf(M metric, bool gradient = false) {
  QualityRequest request;
  request.metrics = {metric};
  request.gradient = gradient;
  return {ModelRequest().physical, request};
}

Correction Corrected(const Eye& eye, M metric = M::kVsx, const CorrectionRequest& request = {}, bool gradient = false) {
  QualityEvaluator evaluator = EvaluatorOf(metric, gradient);
  return BestCorrection(evaluator, eye, request);
}

// In power vectors: the axis of a weak cylinder is uncertain.
double Apart(const Lens& a, const Lens& b) {
  const PowerVector d = ToPowerVector(a.power) - ToPowerVector(b.power);
  return std::sqrt(d.m.value() * d.m.value() + d.j0.value() * d.j0.value() + d.j45.value() * d.j45.value());
}

const Coefficients kAberrated = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.05, -0.11, 0.08, 0.03, 0.01, -0.02, 0.07, 0.015};

constexpr Refraction kOblique{Dioptres(-1.37), Dioptres(-0.62), Degrees(33.0)};

TEST(BestCorrection, OfDefocusAndAstigmatismAloneIsThePrescription) {
  const Eye eye = With(EyeOf({0.0}, 4.0), kOblique);
  for (const M metric : {M::kVsx, M::kSrx, M::kRmsW}) {
    for (const bool gradient : {false, true}) {
      const Correction found = Corrected(eye, metric, {}, gradient);
      EXPECT_LT(Apart(found.best.lens, {kOblique, {}}), 0.01) << RowOf(metric).name << gradient;
      EXPECT_TRUE(found.converged);
      EXPECT_LE(found.evaluations, 300);
    }
  }
  const Correction found = Corrected(eye);
  EXPECT_NEAR(found.best.quality.value, 1.0, 1e-4);
  EXPECT_LT(Apart(found.leastSquares.lens, {kOblique, {}}), 1e-12);
  EXPECT_LT(Apart(found.paraxial.lens, {kOblique, {}}), 1e-12);
  EXPECT_LT(found.none.quality.value, 0.1);
}

TEST(BestCorrection, OfMetricsWithCornersIsCloseToThePrescription) {
  const Eye eye = With(EyeOf({0.0}, 4.0), kOblique);
  for (const M metric : {M::kPfSt, M::kPfWc, M::kHwhh}) {
    const Correction found = Corrected(eye, metric);
    EXPECT_GE(RowOf(metric).higherIsBetter ? found.best.quality.value : -found.best.quality.value,
              RowOf(metric).higherIsBetter ? found.leastSquares.quality.value - 1e-9
                                           : -found.leastSquares.quality.value - 1e-9)
        << RowOf(metric).name;
  }
}

TEST(BestCorrection, OfAMirroredEyeIsMirrored) {
  Eye eye = With(EyeOf(kAberrated, 5.0), kOblique), mirrored = eye;
  mirrored.coefficients.Mirror();
  const Correction right = Corrected(eye), left = Corrected(mirrored);
  Lens expected = right.best.lens;
  expected.power.axis = Degrees(180.0 - expected.power.axis.value());
  EXPECT_LT(Apart(left.best.lens, expected), 0.01);
  EXPECT_NEAR(left.best.quality.value, right.best.quality.value, 1e-5);
}

TEST(BestCorrection, IsShiftedByTheRefractionThatIsAdded) {
  const Eye eye = EyeOf(kAberrated, 5.0);
  const PowerVector before = ToPowerVector(Corrected(eye).best.lens.power);
  const PowerVector after = ToPowerVector(Corrected(With(eye, kOblique)).best.lens.power);
  const PowerVector added = ToPowerVector(kOblique);
  EXPECT_NEAR((after.m - before.m).value(), added.m.value(), 0.01);
  EXPECT_NEAR((after.j0 - before.j0).value(), added.j0.value(), 0.01);
  EXPECT_NEAR((after.j45 - before.j45).value(), added.j45.value(), 0.01);
}

TEST(BestCorrection, OfSphericalAberrationIsTheBestOfADenseScan) {
  for (const double aberration : {0.12, -0.25}) {
    Coefficients osa(13, 0.0);
    osa[12] = aberration;
    const Eye eye = EyeOf(osa, 4.5);
    CorrectionRequest request;
    request.grid.sphereOnly = true;
    QualityEvaluator evaluator = EvaluatorOf(M::kVsx);
    const Correction found = BestCorrection(evaluator, eye, request);
    double highest = -1.0;
    for (int k = -60; k <= 60; ++k) {
      const Eye behind = With(eye, {Dioptres(-0.02 * k), Dioptres(), Degrees(180.0)});
      highest = std::max(highest, evaluator.Evaluate(behind).values.front().value);
    }
    EXPECT_GE(found.best.quality.value, highest - 1e-6) << aberration;
    EXPECT_EQ(found.best.lens.power.cylinder, Dioptres(0.0));
    // With a cylinder it is no worse.
    EXPECT_GE(BestCorrection(evaluator, eye, {}).best.quality.value, highest - 1e-6) << aberration;
  }
}

TEST(BestCorrection, InATrialCaseIsTheBestOfAllItsLenses) {
  CorrectionRequest request;
  request.grid = {Dioptres(0.25), Degrees(15.0), false};
  QualityEvaluator evaluator = EvaluatorOf(M::kVsx);
  for (const double pupil : {3.5, 5.0}) {
    const Eye eye = With(EyeOf(kAberrated, pupil), {Dioptres(0.3), Dioptres(-0.7), Degrees(52.0)});
    const Correction found = BestCorrection(evaluator, eye, request);
    double highest = -1.0;
    for (int s = -3; s <= 6; ++s) {
      for (int c = -6; c <= 0; ++c) {
        for (int a = c == 0 ? 12 : 1; a <= 12; ++a) {
          PowerVector lens = ToPowerVector({Dioptres(0.25 * s), Dioptres(0.25 * c), Degrees(15.0 * a)});
          Adjustments adjustments;
          adjustments.refraction = -lens;
          highest = std::max(highest, evaluator.Evaluate(Adjusted(eye, adjustments)).values.front().value);
        }
      }
    }
    EXPECT_EQ(found.inCase.quality.value, highest) << pupil;
  }
}

TEST(BestCorrection, AtADistanceHasTheSamePowerAtTheCornea) {
  const Eye eye = With(EyeOf(kAberrated, 4.0), {Dioptres(-6.1), Dioptres(-1.2), Degrees(70.0)});
  CorrectionRequest request;
  request.vertex = Millimetres(12.0);
  const Correction worn = Corrected(eye, M::kVsx, request), contact = Corrected(eye);
  EXPECT_LT(Apart({AtCornea(worn.best.lens), {}}, contact.best.lens), 1e-9);
  EXPECT_LT(worn.best.lens.power.sphere, contact.best.lens.power.sphere - Dioptres(0.4));
  const double steps = worn.inCase.lens.power.sphere.value() / 0.25;
  EXPECT_EQ(steps, std::round(steps));
  Adjustments adjustments;
  adjustments.lens = worn.inCase.lens;
  QualityEvaluator evaluator = EvaluatorOf(M::kVsx);
  EXPECT_NEAR(evaluator.Evaluate(Adjusted(eye, adjustments)).values.front().value, worn.inCase.quality.value, 1e-9);
}

std::uint64_t NumberIn(const char* variable, std::uint64_t otherwise) {
  const char* const text = std::getenv(variable);
  return text != nullptr ? std::strtoull(text, nullptr, 10) : otherwise;
}

// ORVANEL_RANDOM_EYES=50 tries as many, from ORVANEL_RANDOM_EYES_FROM on, and prints the losses in log10 VSX.
TEST(BestCorrection, OfRandomEyesIsNotBelowADenseSearch) {
  const std::uint64_t count = NumberIn("ORVANEL_RANDOM_EYES", 2), first = NumberIn("ORVANEL_RANDOM_EYES_FROM", 12);
  constexpr double kMissed = 0.001, kFifthOfADifference = 0.01;  // a just noticeable difference is 0.049
  QualityEvaluator evaluator = EvaluatorOf(M::kVsx);
  double worst = -1.0;
  int missed = 0;
  for (std::uint64_t i = first; i < first + count; ++i) {
    const Eye eye = RandomEye(i);
    const Correction found = BestCorrection(evaluator, eye, {});
    const double loss = std::log10(DenselySearched(evaluator, eye) / found.best.quality.value);
    worst = std::max(worst, loss);
    missed += loss > kMissed ? 1 : 0;
    EXPECT_LT(loss, kFifthOfADifference) << i;
    EXPECT_LE(found.evaluations, 300);
    EXPECT_GE(found.best.quality.value, found.inCase.quality.value);
    EXPECT_GE(found.best.quality.value, found.leastSquares.quality.value);
    EXPECT_GE(found.best.quality.value, found.paraxial.quality.value);
  }
  if (std::getenv("ORVANEL_RANDOM_EYES") == nullptr) return;
  std::printf("%d eyes from %d on: %d lose more than %.3f in log10 VSX, the worst %.4f\n", static_cast<int>(count),
              static_cast<int>(first), missed, kMissed, worst);
}

TEST(BestCorrection, LeavesOutWhatIsTooSteepAndThrowsWhereAllLensesAre) {
  const Eye blurred = With(EyeOf(kAberrated, 7.0), {Dioptres(60.0), Dioptres(), Degrees(180.0)});
  const Correction found = Corrected(blurred);
  EXPECT_TRUE(std::isnan(found.none.quality.value));
  EXPECT_NEAR(found.best.lens.power.sphere.value(), 60.0, 1.0);
  Coefficients steep(28, 0.0);
  steep[24] = 400.0;
  EXPECT_THROW(Corrected(EyeOf(steep, 7.0)), PhysicalRefusal);
}

}  // namespace
}  // namespace orvanel::evaluation
