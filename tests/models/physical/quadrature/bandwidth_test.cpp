// The number of nodes against the decay of Bessel functions.
#include "models/physical/quadrature/bandwidth.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace orvanel::physical {
namespace {

// exp(i a cos t) has the coefficients i^l J_l(a).
TEST(Bandwidth, BeyondTheDegreeOfAPureToneBesselFunctionsAreBelowTheBound) {
  for (const double a : {0.01, 0.5, 3.0, 20.0, 150.0}) {
    Amplitudes amplitudes{};
    amplitudes[1] = a;
    const double degree = DegreeOf(a, amplitudes);
    EXPECT_LT(std::cyl_bessel_j(std::ceil(degree), a), 1e-7) << a;
    // And not much more than needed.
    if (a >= 0.5) {
      EXPECT_GT(std::cyl_bessel_j(std::floor(a + (degree - a) / 2.5), a), 1e-7) << a;
    }
  }
}

TEST(Bandwidth, PhasesOfHigherDegreeHaveTheTailsOfTheirHarmonics) {
  // exp(i a cos 6 t): harmonics 6 l with J_l(a).
  const double a = 4.0;
  Amplitudes amplitudes{};
  amplitudes[6] = a;
  const double degree = DegreeOf(6 * a, amplitudes);
  EXPECT_LT(std::cyl_bessel_j(std::ceil(degree / 6), a), 1e-7);
}

// exp(a cos t), at most e^a, has the coefficients I_l(a).
TEST(Bandwidth, BeyondTheDegreeOfADampingModifiedBesselFunctionsAreBelowTheBound) {
  for (const double a : {0.3, 2.0, 10.0, 80.0}) {
    const double linear = DegreeOf(0.0, {}, {a, 0.0}), square = DegreeOf(0.0, {}, {0.0, a});
    EXPECT_LT(std::cyl_bessel_i(std::ceil(linear), a) * std::exp(-a), 1e-7) << a;
    EXPECT_LT(std::cyl_bessel_i(std::ceil(square / 2), a) * std::exp(-a), 1e-7) << a;
    EXPECT_GT(std::cyl_bessel_i(std::floor(linear / 3), a) * std::exp(-a), 1e-7) << a;
  }
}

TEST(Bandwidth, DampingBoundsTheLogarithmOfTheAmplitude) {
  Pupil pupil;
  pupil.radiusMm = 2.5;
  pupil.stilesCrawford = {0.08, 0.3, -0.4};
  const double perSquare = 0.08 * std::numbers::ln10 / 2 * 6.25;
  EXPECT_NEAR(DampingOf(pupil).square, perSquare, 1e-15);
  EXPECT_NEAR(DampingOf(pupil).linear, 2 * perSquare * 0.5 / 2.5, 1e-15);
}

TEST(Bandwidth, AmplitudesBoundTheModesOnTheDisc) {
  Pupil pupil;
  pupil.wavelengthUm = 0.5;
  const std::vector<double> modes = {0, 0, 0, 0.1, -0.2, 0.3, 0.05};
  std::copy(modes.begin(), modes.end(), pupil.modesUm.begin());
  const Amplitudes amplitudes = AmplitudesOf(pupil);
  std::vector<double> second(modes.begin(), modes.begin() + 6);
  const Polynomial w = WavefrontPolynomial(second);
  double largest = 0.0;
  for (int i = 0; i < 3600; ++i) {
    const double t = i * std::numbers::pi / 1800;
    largest = std::max(largest, std::fabs(At(w, std::cos(t), std::sin(t)).value));
  }
  EXPECT_LE(2 * std::numbers::pi / 0.5 * largest, amplitudes[2]);
  EXPECT_NEAR(amplitudes[3], 2 * std::numbers::pi / 0.5 * 0.05 * std::sqrt(8.0), 1e-12);
  EXPECT_EQ(amplitudes[4], 0.0);
}

TEST(Bandwidth, CountsAreExactForTheirDegreeAndRefuseWhatIsNoNumber) {
  EXPECT_EQ(CountFor(7.0, 2), 4);
  EXPECT_EQ(CountFor(8.0, 2), 6);
  EXPECT_EQ(CountFor(0.0, 16), 16);
  EXPECT_GT(CountFor(1e9, 2), kMaxNodes);
  EXPECT_GT(CountFor(std::numeric_limits<double>::quiet_NaN(), 2), kMaxNodes);
}

}  // namespace
}  // namespace orvanel::physical
