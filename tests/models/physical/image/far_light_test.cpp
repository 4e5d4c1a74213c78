// Light far from the image of a point: its two forms against each other, and against the point spread function.
#include "models/physical/image/far_light.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "models/physical/quadrature/chord_quadrature.h"
#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;

// The transform at 0 and on the axes, by the trapezoidal rule over a wide square.
TEST(FarLight, HasTheSpectrumOfItsDensity) {
  Pupil pupil = PupilOf({0, 0.2, -0.3, 0.05, 0.1, 0.04, 0.03, 0.05}, 2.0);
  pupil.outline = {0.9, 0.7, 0.6, 0.02, -0.03};
  const FarLight light(pupil, 1.0, 15.0, 1.0);
  constexpr double kHalf = 500.0, kStep = 1.0;
  for (const auto& [fx, fy] : {std::pair{0.0, 0.01}, {0.02, -0.01}, {0.05, 0.03}}) {
    std::complex<double> sum = 0.0;
    for (double y = -kHalf; y <= kHalf; y += kStep) {
      for (double x = -kHalf; x <= kHalf; x += kStep) {
        sum += light.Density(x, y) * std::polar(kStep * kStep, -2 * kPi * (fx * x + fy * y));
      }
    }
    // What the square lacks is 2/(pi^2 500), at a frequency that averages it out.
    EXPECT_NEAR(std::abs(sum - light.Spectrum(fx, fy)), 0.0, 3e-5) << fx;
  }
  EXPECT_EQ(light.Spectrum(0, 0).real(), light.total());
}

// The mean of the PSF over the width of one ring, times q^3, so that the inner half has no more weight; over radius^3.
double MeanOnRing(const Pupil& pupil, double radius) {
  ChordQuadrature quadrature(ActiveChords());
  const NodeCounts counts = ChordQuadrature::CountsFor(pupil, {0, 0, radius, 3, 3});
  constexpr int kPlaces = 90, kRings = 10;
  double sum = 0.0;
  for (int i = 0; i < kPlaces * kRings; ++i) {
    const double angle = 2 * kPi * i / kPlaces / kRings, q = radius + (i % kRings + 0.5) / kRings - 0.5;
    sum += std::pow(q / radius, 3) *
           std::norm(quadrature.Field(pupil, q * std::cos(angle), q * std::sin(angle), counts).u);
  }
  return kPi / 4 * sum / (kPlaces * kRings);
}

TEST(FarLight, IsTheMeanOfThePointSpreadOnRings) {
  const Pupil perfect = PupilOf({}), blurred = PupilOf({0, 0, 0, 0.1, 0.2, -0.1, 0.02, 0.03, 0.02, -0.02, 0, 0, 0.03});
  for (const Pupil& pupil : {perfect, blurred}) {
    constexpr double kGuard = 20.0;
    const FarLight light(pupil, 1.0, kGuard, 1.0);
    const SlopeRange slopes = SlopesOf(pupil);
    const double farthest = std::hypot(std::max(slopes.highX, -slopes.lowX), std::max(slopes.highY, -slopes.lowY));
    for (const double radius : {40.0, 55.0}) {
      double mean = 0.0;
      for (int i = 0; i < 36; ++i)
        mean += light.Density(radius * std::cos(i / 18.0 * kPi), radius * std::sin(i / 18.0 * kPi)) / 36;
      // The next odd powers of the two.
      const double next = 4.4 * std::pow(kGuard / 3 / radius, 4) + 10 * std::pow(farthest / radius, 4);
      EXPECT_NEAR(mean / MeanOnRing(pupil, radius), 1.0, next + 0.001) << radius;
    }
  }
}

TEST(FarLight, FollowsATilt) {
  const double slope = 4 * 0.5 / 0.55;  // of 0.5 um of a tilt, in wavelength / diameter
  const FarLight straight(PupilOf({0, 0, 0, 0, 0.3}), 1.0, 30.0, 1.0);
  const FarLight tilted(PupilOf({0, 0, 0.5, 0, 0.3}), 1.0, 30.0, 1.0);
  EXPECT_NEAR(tilted.Density(20 + slope, 7), straight.Density(20, 7), 1e-12);
}

TEST(FarLight, IsLessNearADimRim) {
  Pupil pupil = PupilOf({});
  pupil.stilesCrawford.rho = 0.05;
  const double rim = std::pow(10.0, -0.05 * 9), light = (1 - rim) / (0.05 * 9 * std::numbers::ln10);
  EXPECT_NEAR(FarLight(pupil, light, 30.0, 1.0).total(), FarLight(PupilOf({}), 1.0, 30.0, 1.0).total() * rim / light,
              1e-15);
}

TEST(FarLight, HasABoundThatFallsWithTheDistance) {
  const Pupil pupil = PupilOf({0, 0, 0, 0.1, 0.2, -0.1, 0.1, 0.03});
  const FarLight light(pupil, 1.0, 100.0, 1.0);
  EXPECT_TRUE(std::isinf(light.Beyond(2.0, 1.0).ofHalfPlanes));
  EXPECT_GT(light.Beyond(100.0, 1.0).ofHalfPlanes, light.Beyond(200.0, 1.0).ofHalfPlanes);
  EXPECT_GT(light.Beyond(100.0, 1.0).ofUnitArea, light.Beyond(200.0, 1.0).ofUnitArea);
}

}  // namespace
}  // namespace orvanel::physical
