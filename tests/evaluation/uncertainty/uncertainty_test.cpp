// Tests uncertainties against closed forms, and those by gradients against those by drawn eyes.
#include "evaluation/uncertainty/uncertainty.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "base/error.h"
#include "metrics/quality_names.h"
#include "models/model.h"

namespace orvanel::evaluation {
namespace {

const PhysicalSettings kUsual = ModelRequest().physical;
constexpr double kPupil = 3.0;  // mm

Eye WithModes(const Coefficients& osa) {
  Eye eye;
  eye.pupil = Millimetres(kPupil);
  eye.coefficients.Replace(osa);
  return eye;
}

QualityRequest Named(const char* list) {
  QualityRequest request;
  NameMetrics(list, request);
  return request;
}

TEST(Uncertainty, OfOneTermIsItsOwnDeviation) {
  // RMSw of defocus alone is its coefficient; a um of it is 4 root 3 / r^2 dioptres.
  constexpr double kDeviation = 0.013;
  const std::vector<UncertainValue> values = FirstOrderUncertainty(
      kUsual, Named("RMSw"), WithModes({0.0, 0.0, 0.0, 0.0, 0.2}), {}, {{4}, {kDeviation * kDeviation}});
  ASSERT_EQ(values.size(), 4U);
  EXPECT_EQ(values[0].name, "RMSw");
  EXPECT_NEAR(values[0].value, 0.2, 1e-12);
  EXPECT_NEAR(values[0].deviation, kDeviation, 1e-12);
  EXPECT_NEAR(values[0].low, 0.2 - 1.96 * kDeviation, 1e-5);
  EXPECT_NEAR(values[0].high, 0.2 + 1.96 * kDeviation, 1e-5);
  EXPECT_EQ(values[1].name, "M");
  EXPECT_NEAR(values[1].deviation, kDeviation * 4.0 * std::numbers::sqrt3 / (1.5 * 1.5), 1e-12);
  EXPECT_NEAR(values[2].deviation, 0.0, 1e-12);
}

TEST(Uncertainty, OfCorrelatedTermsCountsTheirCovariance) {
  // RMSw of 0.3 and 0.4 um changes by 0.6 and 0.8 of their changes.
  const std::vector<UncertainValue> values = FirstOrderUncertainty(
      kUsual, Named("RMSw"), WithModes({0.0, 0.0, 0.0, 0.3, 0.4}), {}, {{3, 4}, {1e-4, -5e-5, -5e-5, 4e-4}});
  EXPECT_NEAR(values[0].deviation, std::sqrt(0.36 * 1e-4 + 0.64 * 4e-4 - 2.0 * 0.48 * 5e-5), 1e-12);
}

TEST(Uncertainty, FollowsTheAdjustments) {
  // Over half the diameter, defocus is a quarter as large, and the refraction the same.
  Adjustments smaller;
  smaller.pupil = Millimetres(kPupil / 2.0);
  const CoefficientSpread spread{{4}, {1e-4}};
  const Eye eye = WithModes({0.0, 0.0, 0.0, 0.0, 0.2});
  const auto whole = FirstOrderUncertainty(kUsual, Named("RMSw"), eye, {}, spread);
  const auto half = FirstOrderUncertainty(kUsual, Named("RMSw"), eye, smaller, spread);
  EXPECT_NEAR(half[0].deviation, whole[0].deviation / 4.0, 1e-12);
  EXPECT_NEAR(half[1].deviation, whole[1].deviation, 1e-12);
}

TEST(Uncertainty, GradientsAndDrawsAgreeForSmallDeviations) {
  const Eye eye = WithModes({0.0, 0.0, 0.0, 0.05, 0.12, -0.04, 0.02, 0.06, -0.03, 0.02, 0.0, 0.0, 0.05});
  const CoefficientSpread spread{
      {3, 4, 8, 12}, {4e-6, 1e-6, 0.0, 0.0, 1e-6, 9e-6, 2e-6, 0.0, 0.0, 2e-6, 4e-6, 0.0, 0.0, 0.0, 0.0, 1e-6}};
  const QualityRequest request = Named("VSX,RMSw,EW");
  const auto first = FirstOrderUncertainty(kUsual, request, eye, {}, spread);
  constexpr int kDraws = 200;
  const auto drawn = DrawnUncertainty(kUsual, request, eye, {}, spread, kDraws, 7);
  ASSERT_EQ(first.size(), drawn.size());
  for (std::size_t i = 0; i < first.size(); ++i) {
    const double deviation = first[i].deviation;
    if (first[i].name == "J0") {  // of Z5 alone, which is certain
      EXPECT_NEAR(deviation, 0.0, 1e-12);
      EXPECT_EQ(drawn[i].deviation, 0.0);
      continue;
    }
    ASSERT_GT(deviation, 0.0) << first[i].name;
    // Sampling errors: the mean's is deviation / root N, the deviation's 1 / root (2 (N - 1)) of it. Four of them.
    EXPECT_NEAR(drawn[i].mean, first[i].mean, 4.0 * deviation / std::sqrt(kDraws)) << first[i].name;
    EXPECT_NEAR(drawn[i].deviation / deviation, 1.0, 4.0 / std::sqrt(2.0 * (kDraws - 1))) << first[i].name;
    // A quantile at p has the error root(p (1 - p) / N) / density: 0.19 deviations.
    EXPECT_NEAR(drawn[i].low, first[i].low, 0.76 * deviation) << first[i].name;
    EXPECT_NEAR(drawn[i].high, first[i].high, 0.76 * deviation) << first[i].name;
    EXPECT_EQ(drawn[i].value, first[i].value) << first[i].name;
  }
}

TEST(Uncertainty, IsFarFromFirstOrderAtAnOptimumAndWhereDeviationsAreLarge) {
  const auto far = [](const Coefficients& osa, double deviation) {
    const QualityRequest request = Named("VSX,RMSw");
    const CoefficientSpread spread{{4}, {deviation * deviation}};
    const auto first = FirstOrderUncertainty(kUsual, request, WithModes(osa), {}, spread);
    const auto drawn = DrawnUncertainty(kUsual, request, WithModes(osa), {}, spread, kFewestDraws, 5);
    return FarFromFirstOrder(first, drawn, kFewestDraws);
  };
  EXPECT_TRUE(far({0.0, 0.0, 0.0, 0.0, 0.1}, 0.002).empty());
  // Without aberration VSX is largest: its gradient is 0. RMSw, the absolute value of defocus, has no gradient there.
  EXPECT_EQ(far({0.0, 0.0, 0.0, 0.0, 0.0}, 0.05), std::vector<std::string>{"VSX"});
  // RMSw stays linear while defocus keeps its sign.
  EXPECT_EQ(far({0.0, 0.0, 0.0, 0.0, 0.3}, 0.12), std::vector<std::string>{"VSX"});
}

TEST(Uncertainty, RefractionIsLinearInTheEyesDrawn) {
  // RMSw of defocus alone is its coefficient, so both have the same draws but for a factor.
  constexpr int kDraws = 50;
  const auto drawn =
      DrawnUncertainty(kUsual, Named("RMSw"), WithModes({0.0, 0.0, 0.0, 0.0, 0.2}), {}, {{4}, {4e-4}}, kDraws, 11);
  const double dioptres = -4.0 * std::numbers::sqrt3 / (1.5 * 1.5);
  EXPECT_NEAR(drawn[1].mean, dioptres * drawn[0].mean, 1e-12);
  EXPECT_NEAR(drawn[1].deviation, -dioptres * drawn[0].deviation, 1e-12);
  EXPECT_NEAR(drawn[1].low, dioptres * drawn[0].high, 1e-12);
  EXPECT_NEAR(drawn[1].high, dioptres * drawn[0].low, 1e-12);
}

TEST(Uncertainty, RefusesWhatIsNoCovariance) {
  const Eye eye = WithModes({0.0, 0.0, 0.0, 0.0, 0.2});
  const CoefficientSpread spread{{3, 4}, {1.0, 2.0, 2.0, 1.0}};
  EXPECT_THROW(FirstOrderUncertainty(kUsual, Named("RMSw"), eye, {}, spread), Error);
  EXPECT_THROW(DrawnUncertainty(kUsual, Named("RMSw"), eye, {}, spread, kFewestDraws, 1), Error);
}

TEST(Uncertainty, RefusesTermsThatTheModelLacks) {
  const Eye eye = WithModes({0.0, 0.0, 0.0, 0.0, 0.2});
  const CoefficientSpread spread{{66}, {1e-4}};  // radial order 11
  EXPECT_THROW(FirstOrderUncertainty(kUsual, Named("RMSw"), eye, {}, spread), Error);
  EXPECT_THROW(DrawnUncertainty(kUsual, Named("RMSw"), eye, {}, spread, kFewestDraws, 1), Error);
}

TEST(Uncertainty, MetricsWithoutAGradientAreOnlyDrawn) {
  const Eye eye = WithModes({0.0, 0.0, 0.0, 0.0, 0.2});
  const CoefficientSpread spread{{4}, {1e-4}};
  const auto first = FirstOrderUncertainty(kUsual, Named("PV,MTF@10"), eye, {}, spread);
  EXPECT_TRUE(std::isnan(first[0].deviation));
  EXPECT_TRUE(std::isnan(first[1].deviation));
  EXPECT_FALSE(std::isnan(first[0].value));
  const auto drawn = DrawnUncertainty(kUsual, Named("PV"), eye, {}, spread, kFewestDraws, 3);
  // PV of defocus is 2 root 3 times its coefficient.
  EXPECT_NEAR(drawn[0].deviation / (2.0 * std::numbers::sqrt3 * 0.01), 1.0, 4.0 / std::sqrt(2.0 * (kFewestDraws - 1)));
}

TEST(Uncertainty, RepeatedMeasurementsHaveMeanAndCovariance) {
  const std::vector<Coefficients> measurements = {{0.0, 0.1, 0.4}, {0.0, 0.2, 0.2}, {0.0, 0.3, 0.3}};
  const Coefficients mean = MeanOf(measurements);
  EXPECT_NEAR(mean[1], 0.2, 1e-15);
  EXPECT_NEAR(mean[2], 0.3, 1e-15);
  const CoefficientSpread one = SpreadOf(measurements, false), ofMean = SpreadOf(measurements, true);
  ASSERT_EQ(one.terms.size(), 3U);
  EXPECT_NEAR(one.covariance[4], 0.01, 1e-15);
  EXPECT_NEAR(one.covariance[8], 0.01, 1e-15);
  EXPECT_NEAR(one.covariance[5], -0.005, 1e-15);
  EXPECT_NEAR(one.covariance[7], -0.005, 1e-15);
  EXPECT_NEAR(ofMean.covariance[5], -0.005 / 3.0, 1e-15);
}

}  // namespace
}  // namespace orvanel::evaluation
