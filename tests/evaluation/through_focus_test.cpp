// Tests curves through focus against closed forms of eyes without other aberrations, and the warnings.
#include "evaluation/through_focus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/error.h"
#include "models/adapters/physical_refusal.h"
#include "models/model.h"

namespace orvanel::evaluation {
namespace {

constexpr double kPupil = 3.0;  // mm
const PhysicalSettings kUsual = ModelRequest().physical;

Eye WithModes(const Coefficients& osa, double pupil = kPupil) {
  Eye eye;
  eye.pupil = Millimetres(pupil);
  eye.coefficients.Replace(osa);
  return eye;
}

ThroughFocus Of(const Eye& eye, const char* metrics, const char* range, QualityOrigin origin = QualityOrigin::kAxis,
                const PhysicalSettings& settings = kUsual) {
  QualityRequest request;
  NameMetrics(metrics, request);
  request.origin = origin;
  QualityEvaluator evaluator(settings, request);
  return ThroughFocusOf(evaluator, eye, LensesOfRange(range));
}

// Half the phase between the centre and the rim of the pupil: pi D r^2 / (2 lambda), with lambda of 0.555 um.
double HalfPhase(double dioptres) { return std::numbers::pi * dioptres * kPupil * kPupil / (8.0 * 0.555); }

// The Strehl ratio on the axis of a round pupil out of focus.
double StrehlOf(double dioptres) {
  const double x = HalfPhase(dioptres);
  return x == 0.0 ? 1.0 : std::sin(x) * std::sin(x) / (x * x);
}

// Where it falls to a level first.
double DioptresOf(double level) {
  double above = 0.0, below = 0.4;
  for (int k = 0; k < 60; ++k) {
    const double middle = (above + below) / 2.0;
    (StrehlOf(middle) > level ? above : below) = middle;
  }
  return below;
}

TEST(ThroughFocus, StrehlIsTheSquareOfTheSinc) {
  const ThroughFocus focus = Of(WithModes({}), "SROTF", "-0.9:0.9:0.05");
  ASSERT_EQ(focus.lenses.size(), 37U);
  ASSERT_EQ(focus.curves.size(), 1U);
  const FocusCurve& curve = focus.curves[0];
  for (std::size_t i = 0; i < focus.lenses.size(); ++i) {
    EXPECT_NEAR(curve.values[i], StrehlOf(focus.lenses[i]), 1e-6) << focus.lenses[i];
  }
  ASSERT_TRUE(curve.optimum);
  EXPECT_NEAR(curve.optimum->lens, 0.0, 1e-6);
  EXPECT_NEAR(curve.optimum->value, 1.0, 1e-6);
  ASSERT_EQ(curve.optimum->depths.size(), 2U);
  // 0.2539 D and 0.4371 D.
  for (const DepthOfFocus& depth : curve.optimum->depths) {
    EXPECT_NEAR(depth.width(), 2.0 * DioptresOf(depth.share), 1e-3) << depth.share;
  }
  EXPECT_TRUE(FocusWarnings(focus).empty());
}

TEST(ThroughFocus, ThePlusLensOfALongSightedEyeIsBest) {
  // 1 D over the radius r is r^2 / (4 root 3) um; positive in a short-sighted eye.
  constexpr double kUm = kPupil * kPupil / 4.0 / (4.0 * std::numbers::sqrt3);
  const ThroughFocus focus = Of(WithModes({0.0, 0.0, 0.0, 0.0, -0.4 * kUm}), "SROTF,RMSw", "-0.3:1:0.05");
  EXPECT_NEAR(focus.curves[0].optimum->lens, 0.4, 1e-6);
  EXPECT_NEAR(focus.curves[0].optimum->value, 1.0, 1e-6);
  // RMSw is |D - 0.4| of these um, and 0 in focus, so that no share of it is a depth.
  EXPECT_NEAR(focus.curves[1].values[0], 0.7 * kUm, 1e-9);
  EXPECT_NEAR(focus.curves[1].optimum->lens, 0.4, 1e-6);
  EXPECT_NEAR(focus.curves[1].optimum->value, 0.0, 1e-9);
}

TEST(ThroughFocus, AnEyeWithoutEvenAberrationsHasSymmetricCurves) {
  // Coma: turning the pupil by half a turn changes its sign, and so lens and image mirror.
  const ThroughFocus focus = Of(WithModes({0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.03, 0.11, -0.04, 0.02}),
                                "VSX,SRX,D50,PFSt,MTF@10", "-0.6:0.6:0.1", QualityOrigin::kPeak);
  ASSERT_EQ(focus.lenses.size(), 13U);
  for (const FocusCurve& curve : focus.curves) {
    for (std::size_t i = 0; i < 6; ++i) {
      EXPECT_NEAR(curve.values[i], curve.values[12 - i], 2e-3 * std::fabs(curve.values[i]) + 1e-6) << curve.column.name;
    }
    ASSERT_TRUE(curve.optimum);
    EXPECT_NEAR(curve.optimum->lens, 0.0, 2e-3) << curve.column.name;
    for (const DepthOfFocus& depth : curve.optimum->depths) {
      EXPECT_NEAR(depth.from, -depth.to, 4e-3) << curve.column.name;
    }
  }
}

TEST(ThroughFocus, TheMtfIsOneOfTheMetrics) {
  const ThroughFocus focus = Of(WithModes({}), "MTF@10,SRX", "-0.5:0.5:0.1");
  EXPECT_EQ(focus.curves[0].column.name, "SRX");
  EXPECT_EQ(focus.curves[1].column.name, "MTF@10");
  const double s = 10.0 / (1000.0 * kPupil / 0.555 * std::numbers::pi / 180.0);
  EXPECT_NEAR(focus.curves[1].optimum->value, 2.0 / std::numbers::pi * (std::acos(s) - s * std::sqrt(1.0 - s * s)),
              1e-5);
  EXPECT_NEAR(focus.curves[1].optimum->lens, 0.0, 1e-6);
}

TEST(ThroughFocus, WhiteLightIsSharpestForItsMiddle) {
  // Coefficients that hold at 480 nm leave an eye long-sighted for 600 nm, by 0.63346 (1/265.9 - 1/385.9) 1e3 D.
  PhysicalSettings red = kUsual;
  red.light = {{600.0, 1.0}};
  Eye eye = WithModes({});
  eye.referenceWavelength = Nanometres(480.0);
  const double difference = 0.63346 / (0.48 - 0.2141) - 0.63346 / (0.6 - 0.2141);
  EXPECT_NEAR(Of(eye, "SRX", "0:1.5:0.05", QualityOrigin::kAxis, red).curves[0].optimum->lens, difference, 2e-3);
}

TEST(ThroughFocus, LensesTooSteepForTheModelHaveNoValues) {
  const ThroughFocus focus = Of(WithModes({}, 7.0), "SROTF", "-25:25:25");
  EXPECT_EQ(focus.tooSteep, (std::vector<double>{-25.0, 25.0}));
  EXPECT_TRUE(std::isnan(focus.curves[0].values[0]));
  EXPECT_FALSE(std::isnan(focus.curves[0].values[1]));
  EXPECT_EQ(focus.curves[0].optimum->lens, 0.0);
  EXPECT_EQ(FocusWarnings(focus)[0],
            "2 of 3 lenses have no values, from -25 D to 25 D: the wavefront behind them is too steep for the model.");
  EXPECT_THROW(Of(WithModes({}, 7.0), "SROTF", "-30:-29:1"), PhysicalRefusal);
}

TEST(ThroughFocus, AMetricThatIsTooSteepLeavesItsValuesToTheOthers) {
  // STD needs a window nearly twice as wide as SROTF; RMSw needs none.
  const ThroughFocus focus = Of(WithModes({}, 7.0), "RMSw,STD,SROTF", "0:16:8");
  EXPECT_TRUE(focus.tooSteep.empty());
  ASSERT_EQ(focus.curves.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(focus.curves[0].values[i], focus.lenses[i] * 12.25 / (4.0 * std::numbers::sqrt3), 1e-9);
    EXPECT_EQ(std::isnan(focus.curves[1].values[i]), i > 0);
    EXPECT_EQ(std::isnan(focus.curves[2].values[i]), i > 1);
  }
  const double x = std::numbers::pi * 8.0 * 7.0 * 7.0 / (8.0 * 0.555);
  EXPECT_NEAR(focus.curves[2].values[1], std::pow(std::sin(x) / x, 2), 1e-6);
  EXPECT_TRUE(focus.curves[0].tooSteep.empty());
  EXPECT_EQ(focus.curves[1].tooSteep, (std::vector<double>{8.0, 16.0}));
  EXPECT_EQ(focus.curves[2].tooSteep, (std::vector<double>{16.0}));
  EXPECT_EQ(FocusWarnings(focus)[0],
            "2 of 3 lenses have no values of STD, from 8 D to 16 D: the wavefront behind them is too steep for it.");
  EXPECT_EQ(FocusWarnings(focus)[1],
            "1 of 3 lenses has no value of SROTF, 16 D: the wavefront behind it is too steep for it.");
}

TEST(ThroughFocus, UncertainResultsAreReported) {
  const auto has = [](const ThroughFocus& focus, const std::string& part) {
    const std::vector<std::string> warnings = FocusWarnings(focus);
    return std::any_of(warnings.begin(), warnings.end(),
                       [&part](const std::string& warning) { return warning.find(part) != std::string::npos; });
  };
  const ThroughFocus edge = Of(WithModes({}), "SROTF,D50", "0.1:0.6:0.1");
  EXPECT_TRUE(has(edge, "SROTF is best with the last lens that has a value, 0.1 D"));
  EXPECT_TRUE(has(edge, "D50 does not rise to 1.25 times its best value towards the minus end"));
  const ThroughFocus wide = Of(WithModes({}), "SROTF", "-0.15:0.15:0.05");
  EXPECT_TRUE(has(wide, "SROTF does not fall to 50 % of its best value towards either end"));
  EXPECT_FALSE(has(wide, "80 %"));
  EXPECT_TRUE(has(Of(WithModes({}), "SROTF", "-1:1:0.5"), "SROTF has fewer than 4 lenses"));
  EXPECT_TRUE(has(Of(WithModes({}), "ENT", "-0.1:0.1:0.1"), "ENT has no depth of focus"));
}

TEST(ThroughFocus, ARangeHasItsDecimalLenses) {
  const std::vector<double> lenses = LensesOfRange("-0.3:0.3:0.1");
  EXPECT_EQ(lenses, (std::vector<double>{-0.3, -0.2, -0.1, 0.0, 0.1, 0.2, 0.3}));
  EXPECT_EQ(LensesOfRange("-2:2:0.125").size(), 33U);
  EXPECT_EQ(LensesOfRange("0:1:0.3"), (std::vector<double>{0.0, 0.3, 0.6, 0.9}));
  for (const char* const text : {"", "1", "-1:1", "-1:1:0", "1:-1:0.1", "-1:1:-0.1", "-1:1:x", "-1:1:0.1:2", "-31:0:1",
                                 "0:1:0.0001", "-10:10:0.01", "1:1:1"}) {
    EXPECT_THROW(LensesOfRange(text), Error) << text;
  }
}

}  // namespace
}  // namespace orvanel::evaluation
