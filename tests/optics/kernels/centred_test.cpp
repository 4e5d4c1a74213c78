// The centred transform and the modulation transfer function against their steps taken one sample after the other.
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
using reference::Noise;
using test::SameBits;
using under_test::kWidth;
using under_test::V;

// ---- The transform

class KernelCentredFft2 : public test::EveryKernel {
 protected:
  static void ExpectPlain(const ComplexPlane& before) {
    for (const int direction : {1, 0, -1, 7, -7}) {
      ComplexPlane actual = before, expected = before;
      const test::KernelScratch scratch;
      GetParam()->centredTransform(actual.re.data(), actual.im.data(), direction, TransformTables(), scratch.Of());
      plain::CentredFft2(expected, direction, 256, 8);
      EXPECT_TRUE(SameBits(actual.re, expected.re)) << direction;
      EXPECT_TRUE(SameBits(actual.im, expected.im)) << direction;
    }
  }

  static ComplexPlane Constant(double re, double im) {
    return {std::vector<double>(65536, re), std::vector<double>(65536, im)};
  }
};

TEST_P(KernelCentredFft2, HasThePlainBitsOnEverySample) {
  for (unsigned seed = 1; seed <= 5; ++seed) ExpectPlain({Noise(65536, seed), Noise(65536, seed + 900)});
}

TEST_P(KernelCentredFft2, HasThePlainBitsOfAPoint) {
  for (const auto& [row, column] : {std::pair{128, 128}, {0, 0}, {255, 254}, {17, 200}}) {
    ComplexPlane plane = Constant(0.0, 0.0);
    plane.re[reference::At(row, column, 256)] = 0.7;
    ExpectPlain(plane);
    plane.im[reference::At(row, column, 256)] = -0.3;
    ExpectPlain(plane);
  }
}

TEST_P(KernelCentredFft2, HasThePlainBitsOfConstantsAndTheSignsOfZeros) {
  ExpectPlain(Constant(1.0, 0.0));
  ExpectPlain(Constant(0.3, -0.7));
  for (const double re : {0.0, -0.0}) {
    for (const double im : {0.0, -0.0}) ExpectPlain(Constant(re, im));
  }
}

TEST_P(KernelCentredFft2, HasThePlainBitsOfPlanesThatAreZeroInPart) {
  for (const double zero : {0.0, -0.0}) {
    ExpectPlain({Noise(65536, 3), std::vector<double>(65536, zero)});
    ExpectPlain({std::vector<double>(65536, zero), Noise(65536, 4)});
    ComplexPlane halves = {Noise(65536, 5), Noise(65536, 6)};
    for (std::size_t i = 0; i < 65536; ++i) {
      if (i / 256 % 3 == 0 || i % 5 == 0) halves.re[i] = halves.im[i] = zero;
    }
    ExpectPlain(halves);
  }
}

TEST_P(KernelCentredFft2, IsThatOfAnEngine) {
  OpticsEngine engine;
  ComplexPlane actual{Noise(65536, 7), Noise(65536, 8)}, expected = actual;
  engine.CentredFft2(actual.re.data(), actual.im.data(), -1, 256, 8);
  plain::CentredFft2(expected, -1, 256, 8);
  EXPECT_TRUE(SameBits(actual.re, expected.re) && SameBits(actual.im, expected.im));
}

// ---- The modulation transfer function

class KernelTransferFunction : public test::EveryKernel {
 protected:
  struct Result {
    std::vector<double> psf = std::vector<double>(65536), mtf = psf, phase = psf;
  };

  // Intensity in its rows with their first samples once more behind the last.
  static std::vector<double> Pitched(const std::vector<double>& plane) {
    std::vector<double> pitched(256 * kIntensityPitch);
    for (std::size_t r = 0; r < 256; ++r) {
      for (std::size_t c = 0; c < kIntensityPitch; ++c) {
        pitched[r * kIntensityPitch + c] = plane[r * 256 + c % 256];
      }
    }
    return pitched;
  }

  static Result Of(const std::vector<double>& intensity, double factor, int row, int column) {
    Result result;
    const std::vector<double> pitched = Pitched(intensity);
    const Recentring from = {pitched.data(), factor, row, column};
    const test::KernelScratch scratch;
    GetParam()->recentre(from, result.psf.data());
    GetParam()->transferFunction(from, TransformTables(), scratch.Of(), result.mtf.data(), result.phase.data());
    return result;
  }

  // MTF to the bit, phase to its bound and with the signs of its zeros.
  static void ExpectPlain(const Result& actual) {
    EXPECT_TRUE(SameBits(actual.mtf, plain::Mtf(actual.psf, 256).mtf));
    ExpectPlainPhase(actual);
  }
  static void ExpectPlainPhase(const Result& actual) {
    ComplexPlane otf{actual.psf, std::vector<double>(65536)};
    plain::CentredFft2(otf, 1, 256, 8);
    for (std::size_t i = 0; i < 65536; ++i) {
      const long double exact = std::atan2(static_cast<long double>(otf.im[i]), static_cast<long double>(otf.re[i]));
      ASSERT_LE(test::UlpsBetween(actual.phase[i], exact), under_test::kPhaseUlps) << i;
      ASSERT_EQ(std::signbit(actual.phase[i]), std::signbit(otf.im[i])) << i;
    }
  }

  static std::vector<double> Positive(unsigned seed) {
    std::vector<double> plane = Noise(65536, seed);
    for (double& v : plane) v *= v;
    return plane;
  }
};

TEST_P(KernelTransferFunction, HasThePlainBitsWhereverThePeakWas) {
  for (const auto& [row, column] : {std::pair{0, 0}, {128, 128}, {1, 255}, {201, 7}, {90, 131}}) {
    const std::vector<double> intensity = Positive(static_cast<unsigned>(row));
    const Result result = Of(intensity, 1.7, row, column);
    for (int r = 0; r < 256; ++r) {
      for (int c = 0; c < 256; ++c) {
        const std::size_t from = reference::At((r + row + 128) % 256, (c + column + 128) % 256, 256);
        ASSERT_EQ(result.psf[reference::At(r, c, 256)], 1.7 * intensity[from]);
      }
    }
    ExpectPlain(result);
  }
}

TEST_P(KernelTransferFunction, HasThePlainBitsOfEyes) {
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
    result.psf.assign(engine.psfPlane.begin(), engine.psfPlane.end());
    result.phase.assign(engine.phasePlane.begin(), engine.phasePlane.end());
    ExpectPlain(result);
    EXPECT_EQ(result.mtf[128 * 256 + 128], 1.0);
  }
}

TEST_P(KernelTransferFunction, OfAPointHasModulusOne) {
  std::vector<double> point(65536);
  point[3 * 256 + 250] = 0.37;
  const Result result = Of(point, 256.0 / 0.37, 3, 250);  // so that the modulus at the centre is 1
  ExpectPlain(result);
  EXPECT_EQ(result.mtf[128 * 256 + 128], 1.0);
}

TEST_P(KernelTransferFunction, DividesWhatIsTinyOrZeroBeforeDividing) {
  // One intensity so far below the other that some moduli vanish, or lie below 2^-900.
  for (const double tiny : {0x1p-1070, 0x1p-905, 0x1p-500}) {
    const Result result = Of(Positive(12), tiny, 5, 6);
    EXPECT_TRUE(SameBits(result.mtf, plain::Mtf(result.psf, 256).mtf)) << tiny;
  }
}

TEST_P(KernelTransferFunction, OfNothingIsNotANumber) {
  const Result result = Of(std::vector<double>(65536), 0.0, 0, 0);
  for (std::size_t i = 0; i < 65536; ++i) ASSERT_TRUE(std::isnan(result.mtf[i])) << i;
  ExpectPlainPhase(result);
}

TEST_P(KernelTransferFunction, HasThePlainSignsOfZeros) {
  // Constant along rows, along columns, along both, and in few of them: most parts of the transform are zeros.
  for (const double factor : {1.0, -1.0}) {
    for (int kind = 0; kind < 6; ++kind) {
      std::vector<double> plane(65536);
      for (std::size_t i = 0; i < 65536; ++i) {
        const std::size_t r = i / 256, c = i % 256;
        const std::array<bool, 6> lit = {true, r == 128, c == 128, r % 2 == 0, c % 2 == 0, (r + c) % 2 == 0};
        plane[i] = lit[static_cast<std::size_t>(kind)] ? 0.7 : 0.0;
      }
      ExpectPlainPhase(Of(plane, factor, 128, 128));
      ExpectPlainPhase(Of(plane, factor, 0, 127));
    }
  }
}

TEST_P(KernelTransferFunction, MakesEitherPlaneAlone) {
  const std::vector<double> pitched = Pitched(Positive(31));
  const Recentring from = {pitched.data(), 1.7, 100, 3};
  const Result both = Of(Positive(31), 1.7, 100, 3);
  std::vector<double> mtf(65536), phase(65536);
  const test::KernelScratch scratch;
  GetParam()->transferFunction(from, TransformTables(), scratch.Of(), mtf.data(), nullptr);
  GetParam()->transferFunction(from, TransformTables(), scratch.Of(), nullptr, phase.data());
  EXPECT_TRUE(SameBits(mtf, both.mtf));
  EXPECT_TRUE(SameBits(phase, both.phase));
}

ORVANEL_ON_EVERY_KERNEL(KernelCentredFft2);
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

TEST(KernelDivisor, DividesWhereItsProductsWouldUnderflow) {
  for (const double d : {1.0, 0.3, 200.7}) {
    for (const double a : {0.0, 0x1p-1074, 0x1.23456789abcdfp-1000, 0x1.fffffffffffffp-901, 0x1p-900, 0x1.1p-899}) {
      EXPECT_EQ(Quotient(a, d), a / d) << a << " / " << d;
    }
  }
  EXPECT_TRUE(std::isnan(Quotient(0.0, 0.0)));
  EXPECT_TRUE(std::isnan(Quotient(std::nan(""), 1.0)));
}

TEST(KernelDivisor, OfOneLaneIsIndependentOfTheOthers) {
  V a = under_test::Splat(0.37);
  a[kWidth - 1] = 0x1p-1000;
  const V quotients = a / under_test::Divisor(0.7);
  EXPECT_EQ(quotients[0], Quotient(0.37, 0.7));
  EXPECT_EQ(quotients[kWidth - 1], 0x1p-1000 / 0.7);
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
