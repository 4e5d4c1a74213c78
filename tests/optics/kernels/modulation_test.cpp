// Tests modulation and phase from a half spectrum: the plain formulas on every sample, mirrored halves, and their
// quotient and angle.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "optics/kernels/tables.h"
#include "orvanel/optics_engine.h"
#include "tests/optics/kernels/scratch.h"
#include "tests/optics/kernels/under_test.h"
#include "tests/support/every_kernel.h"
#include "tests/support/plain.h"
#include "tests/support/planes.h"
#include "tests/support/ulps.h"

namespace orvanel {
namespace {

using plain::ComplexPlane;
using reference::At;
using reference::Noise;
using test::SameBits;
using under_test::kWidth;
using under_test::V;
using Plane = std::vector<double>;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

class KernelTransferFunction : public test::EveryKernel {
 protected:
  struct Result {
    Plane psf = Plane(65536, kNan), mtf = psf, phase = psf;
    ComplexPlane otf{psf, psf};    // zero frequency at (0, 0)
    ComplexPlane ofPsf{psf, psf};  // the same, made of the PSF written out
  };

  // Intensity in its rows with their first samples once more behind the last.
  static Plane Pitched(const Plane& plane) {
    Plane pitched(256 * kIntensityPitch);
    for (std::size_t r = 0; r < 256; ++r) {
      for (std::size_t c = 0; c < kIntensityPitch; ++c) {
        pitched[r * kIntensityPitch + c] = plane[r * 256 + c % 256];
      }
    }
    return pitched;
  }

  static Result Of(const Plane& intensity, double factor, int row, int column) {
    Result result;
    const Plane pitched = Pitched(intensity);
    const Recentring from = {pitched.data(), factor, row, column};
    const test::KernelScratch scratch;
    HalfSpectrum& spectrum = scratch.Spectrum();
    GetParam()->recentre(from, result.psf.data());
    GetParam()->realTransform(result.psf.data(), TransformTables(), scratch.Of(), spectrum);
    GetParam()->unfold(spectrum, result.ofPsf.re.data(), result.ofPsf.im.data());
    GetParam()->transferFunction(from, TransformTables(), scratch.Of(), spectrum);
    GetParam()->unfold(spectrum, result.otf.re.data(), result.otf.im.data());
    GetParam()->modulation(spectrum, result.mtf.data());
    GetParam()->phase(spectrum, result.phase.data());
    return result;
  }

  static void ExpectThatOfThePsf(const Result& actual) {
    EXPECT_TRUE(SameBits(actual.otf.re, actual.ofPsf.re) && SameBits(actual.otf.im, actual.ofPsf.im));
  }

  // Where the sample (row, column) of a plane with zero frequency in the middle lies in the spectrum.
  static std::size_t Of(int row, int column) { return At((row + 128) % 256, (column + 128) % 256, 256); }

  // The formula, to the bit.
  static void ExpectModulation(const Result& actual) {
    const auto modulus = [&](std::size_t i) {
      return std::sqrt(actual.otf.re[i] * actual.otf.re[i] + actual.otf.im[i] * actual.otf.im[i]);
    };
    Plane expected;
    for (int r = 0; r < 256; ++r) {
      for (int c = 0; c < 256; ++c) expected.push_back(modulus(Of(r, c)) / modulus(0));
    }
    EXPECT_TRUE(SameBits(actual.mtf, expected));
  }

  // The angle of the conjugate, with its origin in the middle of the plane, to the angle's bound.
  static void ExpectPhase(const Result& actual) {
    for (int r = 0; r < 256; ++r) {
      for (int c = 0; c < 256; ++c) {
        const double sign = (r + c) % 2 == 0 ? 1.0 : -1.0;
        const std::size_t i = Of(r, c);
        const long double exact = std::atan2(static_cast<long double>(-actual.otf.im[i] * sign),
                                             static_cast<long double>(actual.otf.re[i] * sign));
        const double phase = actual.phase[At(r, c, 256)];
        if (actual.otf.im[i] == 0.0) {  // the sign of zero, and which of the ends of the circle it is, tells nothing
          ASSERT_LE(test::UlpsBetween(std::fabs(phase), std::fabs(exact)), under_test::kPhaseUlps) << r << "," << c;
        } else {
          ASSERT_LE(test::UlpsBetween(phase, exact), under_test::kPhaseUlps) << r << "," << c;
        }
      }
    }
  }

  static Plane Positive(unsigned seed) {
    Plane plane = Noise(65536, seed);
    for (double& v : plane) v *= v;
    return plane;
  }
};

TEST_P(KernelTransferFunction, IsThatOfThePsfWhereverThePeakWas) {
  for (const auto& [row, column] : {std::pair{0, 0}, {128, 128}, {1, 255}, {201, 7}, {90, 131}}) {
    const Plane intensity = Positive(static_cast<unsigned>(row));
    const Result result = Of(intensity, 1.7, row, column);
    for (int r = 0; r < 256; ++r) {
      for (int c = 0; c < 256; ++c) {
        const std::size_t from = At((r + row + 128) % 256, (c + column + 128) % 256, 256);
        ASSERT_EQ(result.psf[At(r, c, 256)], 1.7 * intensity[from]);
      }
    }
    ExpectThatOfThePsf(result);
    ExpectModulation(result);
    ExpectPhase(result);
  }
}

TEST_P(KernelTransferFunction, OfEyesFollowsTheFormulas) {
  struct Eye {
    double pupil, defocus, coma, trefoil;
  };
  for (const Eye& eye :
       {Eye{3.0, 0, 0, 0}, {2.2, 1e-5, 2e-5, -1e-5}, {6.0, -8e-4, 3e-4, 2e-4}, {7.5, 9e-3, -2e-3, 1e-3}}) {
    std::array<double, kCoefficients> c{};
    c[4] = eye.defocus;
    c[7] = eye.coma;
    c[9] = eye.trefoil;
    OpticsEngine engine(c.data(), eye.pupil, 256, 1, 1, 1);
    Result result;
    double step = 0.0;
    engine.ComputeMtf(kWavelength, result.mtf.data(), &step, nullptr, nullptr, nullptr, 256);
    result.phase.assign(engine.phasePlane.begin(), engine.phasePlane.end());
    engine.EnsureOtf();
    result.otf = {{engine.otfRealPlane.begin(), engine.otfRealPlane.end()},
                  {engine.otfImagPlane.begin(), engine.otfImagPlane.end()}};
    ExpectModulation(result);
    ExpectPhase(result);
    EXPECT_EQ(result.mtf[128 * 256 + 128], 1.0);
    EXPECT_EQ(result.phase[128 * 256 + 128], 0.0);
  }
}

TEST_P(KernelTransferFunction, LooksTheSameUpsideDownAndItsPhaseTheOpposite) {
  const Result result = Of(Positive(5), 0.3, 77, 190);
  for (int r = 0; r < 256; ++r) {
    for (int c = 0; c < 256; ++c) {
      const std::size_t i = At(r, c, 256), m = At((256 - r) % 256, (256 - c) % 256, 256);
      ASSERT_EQ(result.mtf[i], result.mtf[m]) << r << "," << c;
      if (i == m) continue;
      ASSERT_EQ(result.phase[i], -result.phase[m]) << r << "," << c;
    }
  }
}

TEST_P(KernelTransferFunction, OfAPointHasModulusOne) {
  Plane point(65536);
  point[3 * 256 + 250] = 0.37;
  const Result result = Of(point, 256.0 / 0.37, 3, 250);
  ExpectModulation(result);
  for (std::size_t i = 0; i < 65536; ++i) ASSERT_NEAR(result.mtf[i], 1.0, 1e-15) << i;
  // In the middle, where the PSF has its origin: all angles are zero.
  for (std::size_t i = 0; i < 65536; ++i) ASSERT_NEAR(result.phase[i], 0.0, 1e-15) << i;
}

TEST_P(KernelTransferFunction, OfAPointOffTheMiddleTurnsWithANegativeExponent) {
  Plane point(65536);
  point[At(7, 30, 256)] = 1.0;
  const Result result = Of(point, 1.0, 5, 29);  // two rows down, one column to the right of the middle
  constexpr double turn = 6.283185307179586;
  for (const auto& [v, u] : {std::pair{1, 0}, {0, 1}, {5, -9}, {-20, 3}, {-31, -40}, {40, 40}}) {
    const double angle = -turn * (2 * v + u) / 256.0;
    EXPECT_NEAR(result.phase[At(128 + v, 128 + u, 256)], std::remainder(angle, turn), 1e-14) << v << "," << u;
  }
}

TEST_P(KernelTransferFunction, DividesWhatIsTinyOrZeroBeforeDividing) {
  // One intensity so far below the other that some moduli vanish, or lie below 2^-900.
  for (const double tiny : {0x1p-1055, 0x1p-905, 0x1p-500}) {
    ExpectModulation(Of(Positive(12), tiny, 5, 6));
  }
}

TEST_P(KernelTransferFunction, OfNothingIsNotANumber) {
  const Result result = Of(Plane(65536), 0.0, 0, 0);
  for (std::size_t i = 0; i < 65536; ++i) ASSERT_TRUE(std::isnan(result.mtf[i])) << i;
  ExpectPhase(result);
}

TEST_P(KernelTransferFunction, OfPlanesThatAreConstantInPartIsThatOfThePsf) {
  for (const double factor : {1.0, -1.0}) {
    for (int kind = 0; kind < 6; ++kind) {
      Plane plane(65536);
      for (std::size_t i = 0; i < 65536; ++i) {
        const std::size_t r = i / 256, c = i % 256;
        const std::array<bool, 6> lit = {true, r == 128, c == 128, r % 2 == 0, c % 2 == 0, (r + c) % 2 == 0};
        plane[i] = lit[static_cast<std::size_t>(kind)] ? 0.7 : 0.0;
      }
      for (const auto& [row, column] : {std::pair{128, 128}, {0, 127}}) {
        const Result result = Of(plane, factor, row, column);
        ExpectThatOfThePsf(result);
        ExpectPhase(result);
      }
    }
  }
}

ORVANEL_ON_EVERY_KERNEL(KernelTransferFunction);

// ---- The quotient

double Quotient(double a, double d) { return (under_test::Splat(a) / under_test::Divisor(d))[0]; }

// How far a / d is from the middle between its neighbours q and r, relative. A remainder a - q d is exact in a double.
double DistanceFromTheMiddle(double a, double d, double q, double r) {
  const double lower = std::min(q, r), half = std::fabs(q - r) / 2.0;
  return std::fabs((std::fma(-lower, d, a) - half * d) / a);
}

TEST(KernelDivisor, GivesTheBitsOfTheDivider) {
  std::mt19937_64 random(20);
  std::uniform_real_distribution<double> significand(1.0, 2.0);
  std::uniform_int_distribution<int> exponent(-60, 10);
  for (int k = 0; k < 2000; ++k) {
    const double d = std::ldexp(significand(random), exponent(random));
    const under_test::Divisor divisor(d);
    for (int i = 0; i < 1000; ++i) {
      const double a = std::ldexp(significand(random), exponent(random));
      ASSERT_EQ((under_test::Splat(a) / divisor)[0], a / d) << a << " / " << d;
    }
  }
}

// The quotients of a number's neighbours by it come as near to the middle between two doubles as quotients can.
TEST(KernelDivisor, IsAtMostOneUnitOffAndThatInTheMiddleBetweenTwoDoubles) {
  std::mt19937_64 random(22);
  std::uniform_real_distribution<double> significand(1.0, 2.0);
  std::vector<double> divisors = {1.0, 0x1.fffffffffffffp-1, 0x1.0000000000001p+0, 3.0};
  for (int k = 0; k < 200; ++k) divisors.push_back(significand(random));
  int differences = 0;
  for (const double d : divisors) {
    EXPECT_EQ(Quotient(d, d), 1.0);
    double a = d * (1.0 - 1000 * 0x1p-53);
    for (int i = 0; i < 2000; ++i) {
      a = std::nextafter(a, 9.0);
      const double actual = Quotient(a, d), exact = a / d;
      if (actual == exact) continue;
      ++differences;
      ASSERT_TRUE(actual == std::nextafter(exact, 9.0) || actual == std::nextafter(exact, 0.0)) << a << " / " << d;
      ASSERT_LE(DistanceFromTheMiddle(a, d, actual, exact), under_test::kQuotientError) << a << " / " << d;
    }
  }
  RecordProperty("differences", differences);
  EXPECT_GT(differences, 0) << "then these are the divider's bits, and the bound says too little";
}

TEST(KernelDivisor, DividesTheSmallestAndTheLargestSquareRoots) {
  for (const double d : {0x1p-537, 0x1.23456789abcdfp-520, 0.3, 200.7}) {
    for (const double a : {0.0, 0x1p-537, 0x1.6a09e667f3bcdp-537, 0x1.23456789abcdfp-500, 0x1p-80, 0.1}) {
      EXPECT_EQ(Quotient(a, d), a / d) << a << " / " << d;
    }
  }
  EXPECT_EQ(Quotient(0x1.fffffffffffffp+511, 200.7), 0x1.fffffffffffffp+511 / 200.7);
}

TEST(KernelDivisor, OfZeroAndInfinityIsThatOfTheDivider) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(std::isnan(Quotient(0.0, 0.0)));
  EXPECT_TRUE(std::isnan(Quotient(std::nan(""), 1.0)));
  EXPECT_EQ(Quotient(0.0, infinity), 0.0);
  EXPECT_EQ(Quotient(0.37, infinity), 0.0);
  EXPECT_TRUE(std::isnan(Quotient(infinity, infinity)));
}

// ---- The angle

double Angle(double y, double x) { return under_test::Angle(under_test::Splat(y), under_test::Splat(x))[0]; }

long double AngleUlps(double y, double x) {
  const long double exact = std::atan2(static_cast<long double>(y), static_cast<long double>(x));
  return test::UlpsBetween(Angle(y, x), exact);
}

TEST(KernelAngle, KeepsItsBoundAllRound) {
  std::mt19937_64 random(21);
  std::uniform_real_distribution<double> size(0.0, 2.0);
  std::uniform_int_distribution<int> exponent(-30, 30);
  long double worst = 0;
  for (int i = 0; i < 250'000; ++i) {
    const double x = size(random), y = size(random);
    for (const double signX : {1.0, -1.0}) {
      for (const double signY : {1.0, -1.0}) {
        worst = std::max(worst, AngleUlps(signY * y, signX * x));
        worst = std::max(worst, AngleUlps(signY * y, std::ldexp(signX * x, exponent(random))));
      }
    }
  }
  EXPECT_LE(worst, under_test::kPhaseUlps);
  RecordProperty("ulps", std::to_string(static_cast<double>(worst)));
}

TEST(KernelAngle, KeepsItsBoundWhereItsCasesMeet) {
  long double worst = 0;
  for (const double ratio : {0.236, 0.25, 0.5, 0.8, 1.0}) {
    for (int i = -20'000; i <= 20'000; ++i) {
      const double b = 1.0 + 1e-5 * std::abs(i);
      const double a = b * (ratio + 1e-7 * i);
      for (const double sign : {1.0, -1.0}) {
        worst = std::max(worst, AngleUlps(a, sign * b));
        worst = std::max(worst, AngleUlps(b, sign * a));
      }
    }
  }
  EXPECT_LE(worst, under_test::kPhaseUlps);
  RecordProperty("ulps", std::to_string(static_cast<double>(worst)));
}

TEST(KernelAngle, HasTheSpecialValuesOfAtan2) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const double y : {0.0, -0.0, 1.5, -1.5, 0x1p-60, nan}) {
    for (const double x : {0.0, -0.0, 1.5, -1.5, 0x1p-60, nan}) {
      const double exact = std::atan2(y, x), actual = Angle(y, x);
      if (std::isnan(exact)) {
        EXPECT_TRUE(std::isnan(actual)) << y << ", " << x;
      } else {
        EXPECT_EQ(actual, exact) << y << ", " << x;
        EXPECT_EQ(std::signbit(actual), std::signbit(exact)) << y << ", " << x;
      }
    }
  }
}

}  // namespace
}  // namespace orvanel
