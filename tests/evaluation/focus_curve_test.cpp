// Tests optimum and depth of focus on curves whose optimum and depth are known.
#include "evaluation/focus_curve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

namespace orvanel::evaluation {
namespace {

constexpr double kShares[] = {0.8, 0.5};
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
const FocusShape kHigher{true, true, true}, kLower{false, true, true}, kCornered{true, false, true};

std::vector<double> Range(double first, double last, double step) {
  std::vector<double> lenses;
  for (int k = 0; first + k * step <= last + 1e-9; ++k) lenses.push_back(first + k * step);
  return lenses;
}

FocusOptimum Of(const std::vector<double>& lenses, const std::function<double(double)>& curve,
                const FocusShape& shape) {
  std::vector<double> values(lenses.size());
  std::transform(lenses.begin(), lenses.end(), values.begin(), curve);
  return OptimumOf(lenses, values, shape, kShares).value();
}

// Its maximum, 0.7, is between samples; a share s of it is at 0.31 -+ root(0.7 (1 - s) / 0.9).
double Parabola(double x) { return 0.7 - 0.9 * (x - 0.31) * (x - 0.31); }

TEST(FocusCurve, AParabolaIsExact) {
  const FocusOptimum optimum = Of(Range(-2.0, 2.0, 0.25), Parabola, kHigher);
  EXPECT_NEAR(optimum.lens, 0.31, 1e-12);
  EXPECT_NEAR(optimum.value, 0.7, 1e-12);
  EXPECT_FALSE(optimum.atEdge);
  EXPECT_FALSE(optimum.coarse);
  ASSERT_EQ(optimum.depths.size(), 2U);
  for (const DepthOfFocus& depth : optimum.depths) {
    const double half = std::sqrt(0.7 * (1.0 - depth.share) / 0.9);
    EXPECT_NEAR(depth.from, 0.31 - half, 1e-12);
    EXPECT_NEAR(depth.to, 0.31 + half, 1e-12);
    EXPECT_NEAR(depth.threshold, 0.7 * depth.share, 1e-12);
    EXPECT_TRUE(depth.isWhole());
    EXPECT_FALSE(depth.again);
  }
}

TEST(FocusCurve, AGaussianIsKnownWithinTwoPercentFromFourSamplesAWidth) {
  constexpr double kSd = 0.4, kMiddle = -0.13;
  const auto gaussian = [](double x) { return 0.3 * std::exp(-(x - kMiddle) * (x - kMiddle) / (2.0 * kSd * kSd)); };
  const double width = 2.0 * kSd * std::sqrt(2.0 * std::log(2.0));
  const FocusOptimum optimum = Of(Range(-3.0, 3.0, width / 4.0), gaussian, kHigher);
  EXPECT_NEAR(optimum.lens, kMiddle, 0.02 * width);
  EXPECT_NEAR(optimum.value, 0.3, 0.003);
  EXPECT_NEAR(optimum.depths[1].width(), width, 0.01 * width);
  EXPECT_NEAR(optimum.depths[0].width(), 2.0 * kSd * std::sqrt(2.0 * std::log(1.25)), 0.01 * width);
}

TEST(FocusCurve, AMirroredCurveHasTheMirroredResult) {
  const auto curve = [](double x) { return 0.4 / (1.0 + (x - 0.3) * (x - 0.3) * (2.0 + x)); };
  const std::vector<double> lenses = Range(-1.5, 1.5, 0.125);
  const FocusOptimum a = Of(lenses, curve, kHigher), b = Of(
                                                         lenses, [&](double x) { return curve(-x); }, kHigher);
  EXPECT_NEAR(a.lens, -b.lens, 1e-12);
  EXPECT_NEAR(a.value, b.value, 1e-12);
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_NEAR(a.depths[i].from, -b.depths[i].to, 1e-12);
    EXPECT_NEAR(a.depths[i].to, -b.depths[i].from, 1e-12);
  }
}

TEST(FocusCurve, LowValuesMayBeBetter) {
  // 0.2 + x^2 is 0.25 at root(0.05), and 0.4 at root(0.2).
  const FocusOptimum optimum = Of(
      Range(-1.0, 1.0, 0.1), [](double x) { return 0.2 + x * x; }, kLower);
  EXPECT_NEAR(optimum.lens, 0.0, 1e-12);
  EXPECT_NEAR(optimum.value, 0.2, 1e-12);
  EXPECT_NEAR(optimum.depths[0].width(), 2.0 * std::sqrt(0.05), 1e-12);
  EXPECT_NEAR(optimum.depths[1].width(), 2.0 * std::sqrt(0.2), 1e-12);
}

TEST(FocusCurve, NegativeValuesHaveNoDepth) {
  const std::vector<double> lenses = Range(-1.0, 1.0, 0.1);
  EXPECT_TRUE(Of(
                  lenses, [](double x) { return -0.1 - x * x; }, kHigher)
                  .depths.empty());
  EXPECT_TRUE(Of(
                  lenses, [](double x) { return x * x; }, kLower)
                  .depths.empty());
  EXPECT_TRUE(Of(lenses, [](double x) { return 1.0 + x * x; }, {false, true, false}).depths.empty());
  // A curve that becomes negative has one.
  const FocusOptimum optimum = Of(
      lenses, [](double x) { return 0.1 - x * x; }, kHigher);
  EXPECT_NEAR(optimum.depths[1].width(), 2.0 * std::sqrt(0.05), 1e-12);
}

TEST(FocusCurve, AnOptimumAtTheEdgeIsItsSample) {
  const FocusOptimum optimum = Of(Range(0.5, 2.0, 0.25), Parabola, kHigher);
  EXPECT_TRUE(optimum.atEdge);
  EXPECT_EQ(optimum.lens, 0.5);
  EXPECT_EQ(optimum.value, Parabola(0.5));
  for (const DepthOfFocus& depth : optimum.depths) {
    EXPECT_EQ(depth.from, 0.5);
    EXPECT_FALSE(depth.endsBelow);
    EXPECT_TRUE(depth.endsAbove);
  }
  EXPECT_TRUE(Of(Range(-2.0, 0.25, 0.25), Parabola, kHigher).atEdge);
  EXPECT_TRUE(Of({0.5}, Parabola, kHigher).atEdge);
}

TEST(FocusCurve, ACurveThatDoesNotFallHasNoWholeDepth) {
  const FocusOptimum optimum = Of(Range(-0.25, 2.0, 0.25), Parabola, kHigher);
  EXPECT_FALSE(optimum.atEdge);
  EXPECT_TRUE(optimum.depths[0].isWhole());
  EXPECT_FALSE(optimum.depths[1].endsBelow);
  EXPECT_EQ(optimum.depths[1].from, -0.25);
  EXPECT_TRUE(optimum.depths[1].endsAbove);
  EXPECT_FALSE(optimum.depths[1].isWhole());
}

TEST(FocusCurve, ASecondHillIsReported) {
  const auto hills = [](double x) { return std::exp(-16.0 * x * x) + 0.6 * std::exp(-16.0 * (x - 1.0) * (x - 1.0)); };
  const FocusOptimum optimum = Of(Range(-1.0, 2.0, 0.0625), hills, kHigher);
  EXPECT_NEAR(optimum.lens, 0.0, 1e-4);
  EXPECT_FALSE(optimum.depths[0].again);
  EXPECT_TRUE(optimum.depths[1].again);
  EXPECT_LT(optimum.depths[1].to, 0.5);
}

TEST(FocusCurve, PlateausHaveTheirMiddleAndNoOvershoot) {
  // 1 up to a distance of 0.35 from 0.1, then falling by 1 for each dioptre.
  const auto plateau = [](double x) { return std::min(1.0, 1.35 - std::fabs(x - 0.1)); };
  const FocusOptimum optimum = Of(Range(-2.0, 2.0, 0.1), plateau, kCornered);
  EXPECT_NEAR(optimum.lens, 0.1, 1e-12);
  EXPECT_EQ(optimum.value, 1.0);
  EXPECT_NEAR(optimum.depths[0].from, 0.1 - 0.55, 1e-9);
  EXPECT_NEAR(optimum.depths[0].to, 0.1 + 0.55, 1e-9);
  // A plateau at the edge of the range is an optimum at the edge.
  EXPECT_TRUE(Of(Range(0.0, 2.0, 0.1), plateau, kCornered).atEdge);
}

TEST(FocusCurve, FewSamplesInTheDepthAreReported) {
  const auto narrow = [](double x) { return std::exp(-x * x / (2.0 * 0.05 * 0.05)); };
  EXPECT_TRUE(Of(Range(-1.0, 1.0, 0.1), narrow, kHigher).coarse);
  EXPECT_FALSE(Of(Range(-1.0, 1.0, 0.025), narrow, kHigher).coarse);
}

TEST(FocusCurve, LensesWithoutAValueEndTheCurve) {
  std::vector<double> lenses = Range(-1.0, 1.0, 0.25), values;
  for (const double lens : lenses) values.push_back(lens < -0.3 ? kNan : Parabola(lens));
  FocusOptimum optimum = OptimumOf(lenses, values, kHigher, kShares).value();
  EXPECT_NEAR(optimum.lens, 0.31, 1e-12);
  EXPECT_FALSE(optimum.atEdge);
  EXPECT_TRUE(optimum.depths[0].isWhole());
  EXPECT_EQ(optimum.depths[1].from, -0.25);
  EXPECT_FALSE(optimum.depths[1].endsBelow);
  // Best next to a gap: what is in the gap is not known.
  for (std::size_t i = 0; i < lenses.size(); ++i) values[i] = lenses[i] < 0.4 ? kNan : Parabola(lenses[i]);
  optimum = OptimumOf(lenses, values, kHigher, kShares).value();
  EXPECT_TRUE(optimum.atEdge);
  EXPECT_EQ(optimum.lens, 0.5);
  values.assign(values.size(), kNan);
  EXPECT_FALSE(OptimumOf(lenses, values, kHigher, kShares));
}

}  // namespace
}  // namespace orvanel::evaluation
