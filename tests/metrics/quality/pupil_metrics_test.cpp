// Metrics of the wavefront against closed forms, and pupils that meet a limit exactly.
#include "metrics/quality/pupil_metrics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "models/physical/eye.h"

namespace orvanel::metrics {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kClosedForm = 1e-9;
constexpr double kRounding = 1e-12;  // of sums of areas

PupilMetrics MetricsOf(const std::vector<double>& modes, double diameter = 6.0, physical::Ellipse outline = {}) {
  physical::Eye eye;
  eye.diameterMm = diameter;
  eye.outline = outline;
  std::copy(modes.begin(), modes.end(), eye.modesUm.begin());
  return PupilMetrics(physical::PupilInLight(eye, 550.0));
}

// c4 in um of so many dioptres.
double Defocus(double dioptres, double diameter) { return dioptres * diameter * diameter / (16.0 * std::sqrt(3.0)); }

TEST(PupilMetrics, RmsWIsTheRootOfSquaresWithoutPistonAndTilt) {
  EXPECT_NEAR(MetricsOf({5, 3, -2, 0.3, 0, 0.4, 0, 0, 1.2}).RmsW(), 1.3, kClosedForm);
}

TEST(PupilMetrics, RmsWOfAnEllipseLeavesItsOwnTiltOut) {
  // Defocus of half the radius has a quarter of the RMS; the tilt that the shift makes does not count.
  const double c4 = 0.5, a = 0.5;
  const physical::Ellipse outline{a, a, 0.0, 0.3, -0.2};
  EXPECT_NEAR(MetricsOf({0, 0, 0, 0, c4}, 6.0, outline).RmsW(), c4 * a * a, kClosedForm);
}

TEST(PupilMetrics, PvOfTiltDefocusAndAstigmatism) {
  EXPECT_NEAR(MetricsOf({0, 0.3, 0.4}).Pv(), 4.0 * 0.5, kClosedForm);
  EXPECT_NEAR(MetricsOf({0, 0, 0, 0, -0.7}).Pv(), 2.0 * std::sqrt(3.0) * 0.7, kClosedForm);
  EXPECT_NEAR(MetricsOf({0, 0, 0, 0.3, 0, 0.4}).Pv(), 2.0 * std::sqrt(6.0) * 0.5, kClosedForm);
}

TEST(PupilMetrics, PvOfSphericalAberrationHasItsLowestPlaceInside) {
  // root(5) (6 r^4 - 6 r^2 + 1): from -1/2 at r^2 = 1/2 to 1 at the centre and the rim.
  EXPECT_NEAR(MetricsOf({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.2}).Pv(), 0.2 * std::sqrt(5.0) * 1.5, kClosedForm);
}

TEST(PupilMetrics, RmsSOfDefocusGrowsWithThePupil) {
  for (const double diameter : {3.0, 6.0}) {
    const double dioptres = 0.75;
    // <r^2> = 1/2, and 1 mrad = 10.8/pi arcmin.
    EXPECT_NEAR(MetricsOf({0, 0.4, 0, 0, Defocus(dioptres, diameter)}, diameter).RmsS(),
                10.8 / kPi / std::numbers::sqrt2 * dioptres * diameter / 2.0, kClosedForm);
  }
}

TEST(PupilMetrics, RmsSOfComaIsItsIntegral) {
  const double c = 0.21, radius = 3.0;
  // Mean of |grad|^2 of orthonormal coma is 56, its mean slope root(8).
  EXPECT_NEAR(MetricsOf({0, 0, 0, 0, 0, 0, 0, 0, c}).RmsS(), 10.8 / kPi * c / radius * std::sqrt(56.0 - 8.0), 1e-9);
}

TEST(PupilMetrics, BaveOfDefocusAndCylinder) {
  EXPECT_NEAR(MetricsOf({0, 0, 0, 0, Defocus(0.75, 6.0)}).Bave(), 0.75, kClosedForm);
  // W = C/4 r^2 cos 2t: Wxx = C/2 = -Wyy, so that the blur is C/2.
  const double cylinder = 1.5, c5 = cylinder * 9.0 / (4.0 * std::sqrt(6.0));
  EXPECT_NEAR(MetricsOf({0, 0, 0, 0, 0, c5}).Bave(), cylinder / 2.0, kClosedForm);
}

TEST(PupilMetrics, LargestPupilsOfDefocus) {
  const double c4 = 0.4;
  const PupilMetrics metrics = MetricsOf({0, 0, 0, 0, c4});
  // RMSw of the part d is c4 (d/D)^2.
  EXPECT_NEAR(metrics.LargestByRmsW(), 0.55 / 4.0 / c4, kClosedForm);
  // RMSs is proportional to d.
  EXPECT_NEAR(metrics.LargestByRmsS(), 1.0 / (metrics.RmsS() * metrics.RmsS()), kClosedForm);
  EXPECT_EQ(metrics.LargestByBave(), 0.0);
}

TEST(PupilMetrics, LargestPupilStopsAtTheFirstFailure) {
  // The blur of spherical aberration less defocus is high at the centre, low in a ring, and high at the rim.
  const PupilMetrics metrics = MetricsOf({0, 0, 0, 0, 0.4, 0, 0, 0, 0, 0, 0, 0, 0.1});
  EXPECT_GT(metrics.BlurBelow(), 0.0);
  EXPECT_EQ(MetricsOf({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.5}).LargestByBave(), 0.0);
}

TEST(PupilMetrics, LargestPupilOfSphericalAberrationByBlur) {
  // W = c r^4: Wrr = 12 c r^2, Wr/r = 4 c r^2 per radius^2; the blur is root(80) c r^2 / radius^2, its mean half of
  // that of the rim.
  const double c = 0.3, radius = 3.0, c12 = c / (6.0 * std::sqrt(5.0)), c4 = c / (2.0 * std::sqrt(3.0));
  const PupilMetrics metrics = MetricsOf({0, 0, 0, 0, c4, 0, 0, 0, 0, 0, 0, 0, c12}, 2.0 * radius);
  const double rim = std::sqrt(80.0) * c / (radius * radius);
  EXPECT_NEAR(metrics.Bave(), rim / 2.0, 1e-9);
  EXPECT_NEAR(metrics.LargestByBave(), std::min(1.0, 0.25 / (rim / 2.0)), 1e-9);
  EXPECT_NEAR(metrics.BlurBelow(), std::min(1.0, 0.25 / rim), 1e-4);
}

TEST(PupilMetrics, SlopesBelowOneArcminAreASquareOfDefocus) {
  const double dioptres = 1.0, radius = 2.0;
  const double half = kPi / 10.8 / dioptres / radius;  // of the square, in radii
  EXPECT_NEAR(MetricsOf({0, 0, 0, 0, Defocus(dioptres, 2.0 * radius)}, 2.0 * radius).SlopesBelow(),
              4.0 * half * half / kPi, 1e-4);
}

TEST(PupilMetrics, SlopesThatMeetTheLimitExactlyAreNotBelow) {
  const double radius = 3.0, c2 = kPi / 10.8 * radius / 2.0;  // 1 arcmin everywhere
  EXPECT_EQ(MetricsOf({0, 0, c2}).SlopesBelow(), 0.0);
  EXPECT_NEAR(MetricsOf({0, 0, 0.999 * c2}).SlopesBelow(), 1.0, kRounding);
}

TEST(PupilMetrics, AQuarterDioptreExactlyIsNotBelow) {
  for (const double diameter : {3.0, 4.0, 5.0, 6.0, 7.3}) {
    for (const double sign : {1.0, -1.0}) {
      const PupilMetrics metrics = MetricsOf({0, 0, 0, 0, sign * Defocus(0.25, diameter)}, diameter);
      EXPECT_EQ(metrics.BlurBelow(), 0.0);
      EXPECT_EQ(metrics.LargestByBave(), 0.0);
    }
    const PupilMetrics less = MetricsOf({0, 0, 0, 0, Defocus(0.2499, diameter)}, diameter);
    EXPECT_NEAR(less.BlurBelow(), 1.0, kRounding);
    EXPECT_EQ(less.LargestByBave(), 1.0);
  }
}

TEST(PupilMetrics, TilesOfATiltAllPassOrAllFail) {
  // A tilt of s um per radius varies by 0.04 s in a tile.
  EXPECT_EQ(MetricsOf({0, 0, 0.5 * 0.1375 / 0.04 * 0.99}).TilesBelow(), 1.0);
  // Tiles that the rim makes narrower may still pass.
  EXPECT_LT(MetricsOf({0, 0, 0.5 * 0.1375 / 0.04 * 1.01}).TilesBelow(), 0.02);
}

TEST(PupilMetrics, TilesOfDefocusAreAboutThoseWithinASlope) {
  // Along a direction t the variation in a tile is 0.04 r s (|cos t| + |sin t|), s the second derivative.
  const double c4 = 2.0, s = 4.0 * std::sqrt(3.0) * c4;
  double share = 0.0;
  constexpr int kDirections = 10000;
  for (int i = 0; i < kDirections; ++i) {
    const double t = 2.0 * kPi * i / kDirections;
    const double r = 0.1375 / 0.04 / s / (std::fabs(std::cos(t)) + std::fabs(std::sin(t)));
    share += r * r / kDirections;
  }
  EXPECT_NEAR(MetricsOf({0, 0, 0, 0, c4}).TilesBelow(), share, 0.01);
}

TEST(PupilMetrics, WithoutAberrationAreTheBest) {
  const PupilMetrics perfect = MetricsOf({});
  for (const double value : {perfect.RmsW(), perfect.Pv(), perfect.RmsS(), perfect.Bave()}) EXPECT_EQ(value, 0.0);
  for (const double value : {perfect.LargestByRmsW(), perfect.LargestByRmsS(), perfect.LargestByBave(),
                             perfect.TilesBelow(), perfect.SlopesBelow(), perfect.BlurBelow()}) {
    EXPECT_NEAR(value, 1.0, kRounding);
  }
}

}  // namespace
}  // namespace orvanel::metrics
