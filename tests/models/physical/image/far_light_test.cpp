// Light far from the image of a point: its two forms against each other, and against the point spread function.
#include "models/physical/image/far_light.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "models/physical/otf/otf_overlap.h"
#include "models/physical/quadrature/chord_quadrature.h"
#include "models/physical/quadrature/gauss_rules.h"
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

// ---- The bound of the difference

// Half the nodes of a rule, each for itself and its negative, and their weights.
template <class Function>
double Integral(int count, const Function& function) {
  const GaussRule rule = GaussLegendre(count);
  double sum = 0.0;
  for (std::size_t i = 0; i < static_cast<std::size_t>(count / 2); ++i) {
    sum += rule.weights[i] * (function(rule.nodes[i]) + function(-rule.nodes[i]));
  }
  return sum;
}

// The light of the PSF beyond `distance` along (x, y), less that of the density: by the inversion of the transforms
// (Gil-Pelaez, 1951).
double BeyondHalfPlane(const Pupil& pupil, const FarLight& light, double x, double y, double distance) {
  const OtfOverlap otf(pupil, ActiveChords());
  // By the arc, since the OTF is not smooth at the cut-off.
  const double sum = Integral(300, [&](double node) {
    const double arc = kPi / 4 * (1 + node), f = std::sin(arc);
    const std::complex<double> difference = otf.At(f * x, f * y) - light.Spectrum(f * x, f * y);
    return kPi / 4 * std::cos(arc) * (difference * std::polar(1.0, 2 * kPi * f * distance)).imag() / f;
  });
  return (1 - light.total()) / 2 - sum / kPi;
}

// The same on one squared wavelength / diameter about a place.
double OnUnitSquare(const Pupil& pupil, const FarLight& light, double x, double y) {
  ChordQuadrature quadrature(ActiveChords());
  const NodeCounts counts = ChordQuadrature::CountsFor(pupil, {x, y, 1, 2, 2});
  return Integral(8, [&](double across) {
    return Integral(8, [&](double down) {
      const double u = x + across / 2, v = y + down / 2;
      return 0.25 * (kPi / 4 * std::norm(quadrature.Field(pupil, u, v, counts).u) - light.Density(u, v));
    });
  });
}

const Pupil kAsymmetric = PupilOf({0, 0.2, 0.3, 0.1, 0.2, -0.1, 0.1, 0.03});
constexpr double kGuard = 30.0;

TEST(FarLight, BoundsTheLightOfHalfPlanesWithinAFactorOfThree) {
  for (const bool perfect : {true, false}) {
    const Pupil pupil = perfect ? PupilOf({}) : kAsymmetric;
    const FarLight light(pupil, 1.0, kGuard, 1.0);
    for (const double distance : {30.0, 45.0, 60.0}) {
      const auto larger = [&](double x, double y) {
        return std::max(std::fabs(BeyondHalfPlane(pupil, light, x, y, distance)),
                        std::fabs(BeyondHalfPlane(pupil, light, -x, -y, distance)));
      };
      const double difference = larger(1, 0) + larger(0, 1), bound = light.Beyond(distance, 1.0).ofHalfPlanes;
      EXPECT_LE(difference, bound) << distance;
      // The two parts of a perfect pupil nearly agree: nothing but the rings is left.
      if (!perfect) {
        EXPECT_LE(bound, 3 * difference) << distance;
      }
    }
  }
}

TEST(FarLight, BoundsTheLightOfAUnitSquareWithinAFactorOfTen) {
  const FarLight light(kAsymmetric, 1.0, kGuard, 1.0);
  for (const double distance : {30.0, 45.0, 60.0}) {
    double largest = 0.0;
    for (int i = -6; i < 6; ++i) {
      const double near = distance + 0.5, along = distance * i / 6;
      for (const double side : {-1.0, 1.0}) {
        largest = std::max(largest, std::fabs(OnUnitSquare(kAsymmetric, light, side * near, along)));
        largest = std::max(largest, std::fabs(OnUnitSquare(kAsymmetric, light, along, side * near)));
      }
    }
    const double bound = light.Beyond(distance, 1.0).ofUnitArea;
    EXPECT_LE(largest, bound) << distance;
    EXPECT_LE(bound, 10 * largest) << distance;
  }
}

TEST(FarLight, HasNoBoundWhereRaysComeClose) {
  const FarLight light(kAsymmetric, 1.0, kGuard, 1.0);
  EXPECT_TRUE(std::isinf(light.Beyond(2.0, 1.0).ofHalfPlanes));
  EXPECT_TRUE(std::isinf(light.Beyond(2.0, 1.0).ofUnitArea));
}

}  // namespace
}  // namespace orvanel::physical
