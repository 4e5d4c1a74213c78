// The overlap integral against closed forms, and against the point spread function of the other method.
#include "models/physical/otf/otf_overlap.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "models/physical/quadrature/chord_quadrature.h"
#include "models/physical/quadrature/gauss_rules.h"
#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;

double DiffractionLimit(double v) { return v >= 1 ? 0 : 2 / kPi * (std::acos(v) - v * std::sqrt(1 - v * v)); }

const std::vector<double> kAsymmetric = {0,   0.2,   -0.1, 0.13, 0.24,  -0.09, 0.05,
                                         0.1, -0.07, 0.03, 0.02, -0.02, 0.08,  0.01};

TEST(OtfOverlap, IsTheDiffractionLimitOfAPerfectPupilInEveryDirection) {
  const OtfOverlap otf(PupilOf({}), ActiveChords());
  for (const double v : {0.0, 0.01, 0.3, 0.77, 0.999, 1.0, 1.2}) {
    for (const double angle : {0.0, 0.4, 2.0, -1.7}) {
      const std::complex<double> value = otf.At(v * std::cos(angle), v * std::sin(angle));
      EXPECT_NEAR(value.real(), DiffractionLimit(v), 1e-13) << v;
      EXPECT_EQ(value.imag(), 0.0);
    }
  }
}

TEST(OtfOverlap, OfAnEllipseIsTheDiffractionLimitOfTheStretchedFrequency) {
  Pupil pupil = PupilOf({});
  pupil.outline = {0.9, 0.4, 0.7, 0.05, -0.2};
  const OtfOverlap otf(pupil, ActiveChords());
  for (const auto& [fx, fy] : {std::pair{0.2, 0.1}, {-0.3, 0.25}, {0.0, 0.4}}) {
    const double along = (fx * std::cos(0.7) + fy * std::sin(0.7)) / 0.9;
    const double across = (fy * std::cos(0.7) - fx * std::sin(0.7)) / 0.4;
    EXPECT_NEAR(std::abs(otf.At(fx, fy)), DiffractionLimit(std::hypot(along, across)), 1e-12);
  }
}

// A tilt of slope g shifts the point spread function by q = 4 c2 / wavelength, and turns the OTF by exp(-2 pi i f q).
TEST(OtfOverlap, OfATiltTurnsItsPhaseByTheShift) {
  const double c2 = 0.11;
  const OtfOverlap otf(PupilOf({0, 0, c2}), ActiveChords());
  const double q = 4 * c2 / 0.55;
  for (const double f : {0.1, -0.35, 0.8}) {
    const std::complex<double> expected = DiffractionLimit(std::fabs(f)) * std::polar(1.0, -2 * kPi * f * q);
    EXPECT_NEAR(std::abs(otf.At(f, 0) - expected), 0.0, 1e-12) << f;
  }
}

// Defocus along x: the phase's difference is 2 a x s with a = 2 sqrt 3 k c4 and x over the overlap.
TEST(OtfOverlap, OfDefocusIsTheChordIntegral) {
  const double c4 = 0.37, a = 2 * std::sqrt(3.0) * 2 * kPi / 0.55 * c4;
  const OtfOverlap otf(PupilOf({0, 0, 0, 0, c4}), ActiveChords());
  for (const double v : {0.05, 0.2, 0.61, 0.9}) {
    const double s = 2 * v;
    // int over y of 2 sin(2 a s w) / (2 a s) with the half width w(y), by the midpoint rule in the angle.
    long double sum = 0;
    constexpr int n = 200000;
    const long double t0 = std::acos(static_cast<long double>(v));
    for (int i = 0; i < n; ++i) {
      const long double t = -t0 + (i + 0.5L) * 2 * t0 / n;
      sum += 2 * std::sin(2 * a * s * (std::cos(t) - v)) / (2 * a * s) * std::cos(t) * 2 * t0 / n;
    }
    const std::complex<double> value = otf.At(v * std::cos(1.1), v * std::sin(1.1));
    EXPECT_NEAR(value.real(), static_cast<double>(sum / std::numbers::pi_v<long double>), 1e-9) << v;
    EXPECT_NEAR(value.imag(), 0.0, 1e-12);
  }
}

TEST(OtfOverlap, OfMinusTheFrequencyIsTheConjugate) {
  Pupil pupil = PupilOf(kAsymmetric);
  pupil.stilesCrawford = {0.05, 0.5, -0.4};
  const OtfOverlap otf(pupil, ActiveChords());
  EXPECT_NEAR(std::abs(otf.At(0.21, -0.13) - std::conj(otf.At(-0.21, 0.13))), 0.0, 1e-12);
  EXPECT_NEAR(std::abs(otf.At(0, 0) - 1.0), 0.0, 1e-13);
}

// The integral of the OTF over all frequencies is the density on the axis: (4/pi) int OTF df^2 = |U(0)|^2 / <A^2>.
TEST(OtfOverlap, IntegratesToTheIntensityOnTheAxis) {
  Pupil pupil = PupilOf(kAsymmetric);
  pupil.stilesCrawford = {0.05, 0.5, -0.4};
  const OtfOverlap otf(pupil, ActiveChords());
  // Gauss-Legendre in radius, the trapezoid rule in angle, over half the plane: the other half is the conjugate.
  const GaussRule rule = GaussLegendre(24);
  constexpr int kAngles = 24;
  double sum = 0.0;
  for (std::size_t i = 0; i < rule.nodes.size(); ++i) {
    for (const double side : {-1.0, 1.0}) {
      const double v = (1 + side * rule.nodes[i]) / 2;
      for (int k = 0; k < kAngles; ++k) {
        const double angle = kPi * k / kAngles;
        sum += rule.weights[i] / 2 * v * 2 * kPi / kAngles * otf.At(v * std::cos(angle), v * std::sin(angle)).real();
      }
    }
  }
  ChordQuadrature quadrature(ActiveChords());
  const DirectionGrid axis{0, 0, 1, 1, 1};
  const double intensity = std::norm(quadrature.Field(pupil, 0, 0, ChordQuadrature::CountsFor(pupil, axis)).u);
  // <A^2> is the square root's closed form with twice the exponent, as the field of a flat pupil with doubled rho.
  Pupil doubled = PupilOf({});
  doubled.stilesCrawford = {0.1, 0.5, -0.4};
  const double light = quadrature.Field(doubled, 0, 0, ChordQuadrature::CountsFor(doubled, axis)).u.real();
  EXPECT_NEAR(4 / kPi * sum, intensity / light, 1e-5);
}

}  // namespace
}  // namespace orvanel::physical
