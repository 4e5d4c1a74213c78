// Tests elementary functions against the C library in long double, and at their special points.
#include "base/elementary.h"

#include <gtest/gtest.h>
#ifdef __MINGW32__
#include <quadmath.h>
#endif

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <utility>

#include "tests/support/ulps.h"

namespace orvanel {
namespace {

using test::UlpOf;
using test::UlpsBetween;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kPi = 0x1.921fb54442d18p+1;  // rounded

// The C library's in long double; but the one of MinGW takes the processor's instructions, which lose digits near
// multiples of pi, where those of quadruple precision that come with the compiler do not.
#ifdef __MINGW32__
long double TrueSine(double x) { return static_cast<long double>(sinq(x)); }
long double TrueCosine(double x) { return static_cast<long double>(cosq(x)); }
#else
long double TrueSine(double x) { return std::sin(static_cast<long double>(x)); }
long double TrueCosine(double x) { return std::cos(static_cast<long double>(x)); }
#endif

// The error in units in the last place, or in those of kSmallestExactSine for smaller values.
long double SineUlps(double value, long double exact) {
  const long double unit = std::max(UlpOf(exact), UlpOf(kSmallestExactSine));
  return std::fabs(value - exact) / unit;
}

void ExpectSineAndCosine(double x) {
  const SineCosine value = SineAndCosine(x);
  EXPECT_LE(SineUlps(value.sine, TrueSine(x)), kSineCosineUlps) << "x = " << x;
  EXPECT_LE(SineUlps(value.cosine, TrueCosine(x)), kSineCosineUlps) << "x = " << x;
}

TEST(Elementary, SineAndCosineAreWithinTheirBoundOverTheFirstTurns) {
  for (int i = -40000; i <= 40000; ++i) ExpectSineAndCosine(i * 3.137e-4);
}

TEST(Elementary, SineAndCosineAreWithinTheirBoundForEveryMagnitude) {
  std::mt19937_64 random(20260917);
  for (int i = 0; i < 100000; ++i) {
    const double x = std::bit_cast<double>(random());
    if (std::isfinite(x)) ExpectSineAndCosine(x);
  }
}

TEST(Elementary, SineAndCosineAreWithinTheirBoundForThePhasesOfRealEyes) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> phase(-700.0, 700.0);
  for (int i = 0; i < 100000; ++i) ExpectSineAndCosine(phase(random));
}

TEST(Elementary, SineAndCosineAreWithinTheirBoundNearMultiplesOfAQuarterTurn) {
  for (int k = 1; k < 3000; ++k) {
    double x = k * (kPi / 2);
    for (int step = 0; step < 3; ++step, x = std::nextafter(x, kInfinity)) ExpectSineAndCosine(x);
  }
}

TEST(Elementary, SineAndCosineAreWithinTheirBoundWhereTheReductionChanges) {
  double x = std::nextafter(0x1p24, 0.0);
  for (int step = 0; step < 3; ++step, x = std::nextafter(x, kInfinity)) {
    ExpectSineAndCosine(x);
    ExpectSineAndCosine(-x);
  }
  ExpectSineAndCosine(std::numeric_limits<double>::max());
  // The double whose reduction by quarter turns cancels most: Muller, Elementary Functions, chapter 11.
  ExpectSineAndCosine(6381956970095103.0 * 0x1p797);
}

TEST(Elementary, SineAndCosineOfZeroAreExact) {
  EXPECT_EQ(SineAndCosine(0.0).sine, 0.0);
  EXPECT_EQ(SineAndCosine(0.0).cosine, 1.0);
}

TEST(Elementary, SineAndCosineOfWhatIsNotFiniteAreNotNumbers) {
  for (const double x : {kInfinity, -kInfinity, kNan}) {
    EXPECT_TRUE(std::isnan(SineAndCosine(x).sine));
    EXPECT_TRUE(std::isnan(SineAndCosine(x).cosine));
  }
}

TEST(Elementary, FractionsOfATurnAreWithinTheirBound) {
  constexpr long double kTurn = 6.28318530717958647692528676655900577L;
  for (int n = 8; n <= 4096; n *= 2) {
    // Up to an eighth of a turn, where the long double angle is good to its last digit also for the smallest sine.
    for (int k = 0; k <= n / 8; ++k) {
      const long double sine = std::sin(kTurn * k / n);
      const long double cosine = std::cos(kTurn * k / n);
      const SineCosine value = SineAndCosineOfTurn(k, n);
      EXPECT_LE(SineUlps(value.sine, sine), kSineCosineUlps) << k << "/" << n;
      EXPECT_LE(SineUlps(value.cosine, cosine), kSineCosineUlps) << k << "/" << n;
      const SineCosine quarterOn = SineAndCosineOfTurn(k + n / 4, n);
      EXPECT_LE(SineUlps(quarterOn.sine, cosine), kSineCosineUlps) << k << "/" << n;
      EXPECT_LE(SineUlps(quarterOn.cosine, -sine), kSineCosineUlps) << k << "/" << n;
      const SineCosine quarterLess = SineAndCosineOfTurn(n / 4 - k, n);
      EXPECT_LE(SineUlps(quarterLess.sine, cosine), kSineCosineUlps) << k << "/" << n;
      EXPECT_LE(SineUlps(quarterLess.cosine, sine), kSineCosineUlps) << k << "/" << n;
      const SineCosine halfOn = SineAndCosineOfTurn(k + n / 2, n);
      EXPECT_LE(SineUlps(halfOn.sine, -sine), kSineCosineUlps) << k << "/" << n;
      EXPECT_LE(SineUlps(halfOn.cosine, -cosine), kSineCosineUlps) << k << "/" << n;
    }
  }
}

TEST(Elementary, QuartersOfATurnAreExact) {
  const double sines[] = {0.0, 1.0, 0.0, -1.0};
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(SineAndCosineOfTurn(k * 16, 64).sine, sines[k]);
    EXPECT_EQ(SineAndCosineOfTurn(k * 16, 64).cosine, sines[(k + 1) % 4]);
  }
}

TEST(Elementary, ArcTangentOfAPointIsWithinItsBoundInEveryDirection) {
  std::mt19937_64 random(31);
  std::uniform_real_distribution<double> logarithm(-60.0, 60.0);
  for (int i = 0; i < 200000; ++i) {
    const double x = (i & 1 ? 1.0 : -1.0) * std::exp2(logarithm(random) / (i % 7 + 1));
    const double y = (i & 2 ? 1.0 : -1.0) * std::exp2(logarithm(random) / (i % 5 + 1));
    EXPECT_LE(UlpsBetween(ArcTangent2(y, x), std::atan2(static_cast<long double>(y), static_cast<long double>(x))),
              kArcTangentUlps)
        << "atan2(" << y << ", " << x << ")";
  }
}

TEST(Elementary, ArcTangentIsWithinItsBoundHalfWayBetweenTabulatedAngles) {
  // There the remainder is largest, and for k = 0 as large as the result.
  std::mt19937_64 random(43);
  std::uniform_real_distribution<double> nearly(0.98, 1.02);
  for (int i = 0; i < 400000; ++i) {
    const double x = nearly(random);
    const double y = (i % 8 + 0.5) / 8.0 * nearly(random);
    for (const auto& [b, a] : {std::pair(y, x), std::pair(x, y), std::pair(x, -y), std::pair(y, -x)}) {
      const long double exact = std::atan2(static_cast<long double>(b), static_cast<long double>(a));
      EXPECT_LE(UlpsBetween(ArcTangent2(b, a), exact), kArcTangentUlps) << "atan2(" << b << ", " << a << ")";
    }
  }
}

TEST(Elementary, ArcTangentOfHugeAndTinyPointsIsWithinItsBound) {
  const double magnitudes[] = {5e-324, 1e-310, 3e-300, 1.7, 2e300, 1.7e308};
  for (const double a : magnitudes) {
    for (const double b : magnitudes) {
      const long double exact = std::atan2(static_cast<long double>(a), static_cast<long double>(b));
      EXPECT_LE(UlpsBetween(ArcTangent2(a, b), exact), kArcTangentUlps) << a << " " << b;
    }
  }
}

TEST(Elementary, ArcTangentHasTheSpecialValuesOfTheCLibrary) {
  for (const double y : {0.0, -0.0, 2.0, -2.0, kInfinity, -kInfinity}) {
    for (const double x : {0.0, -0.0, 3.0, -3.0, kInfinity, -kInfinity}) {
      if (std::isfinite(x) && std::isfinite(y) && x != 0.0 && y != 0.0) continue;  // an ordinary value
      EXPECT_EQ(ArcTangent2(y, x), std::atan2(y, x)) << y << " " << x;
      EXPECT_EQ(std::signbit(ArcTangent2(y, x)), std::signbit(std::atan2(y, x))) << y << " " << x;
    }
    EXPECT_TRUE(std::isnan(ArcTangent2(y, kNan)));
    EXPECT_TRUE(std::isnan(ArcTangent2(kNan, y)));
  }
}

TEST(Elementary, ArcTangentOfOneSeventeenthIsTheAngleOfAMillimetreOnTheRetina) {
  EXPECT_LE(UlpsBetween(ArcTangent(1.0 / 17.0), std::atan(static_cast<long double>(1.0 / 17.0))), kArcTangentUlps);
}

TEST(Elementary, ArcCosineIsWithinItsBound) {
  for (int i = -10000; i <= 10000; ++i) {
    const double x = i / 10000.0;
    EXPECT_LE(UlpsBetween(ArcCosine(x), std::acos(static_cast<long double>(x))), kArcCosineUlps) << x;
  }
  for (int i = 0; i < 80000; ++i) {
    const double x = std::cos(std::atan((i % 8 + 0.5) / 8.0)) * (1.0 + (i - 40000) * 2.5e-8);
    if (x > 1.0) continue;
    EXPECT_LE(UlpsBetween(ArcCosine(x), std::acos(static_cast<long double>(x))), kArcCosineUlps) << x;
  }
  EXPECT_EQ(ArcCosine(0.0), kPi / 2);
  EXPECT_EQ(ArcCosine(1.0), 0.0);
  EXPECT_EQ(ArcCosine(-1.0), kPi);
}

TEST(Elementary, ArcCosineOutsideItsRangeIsNotANumber) {
  EXPECT_TRUE(std::isnan(ArcCosine(std::nextafter(1.0, 2.0))));
  EXPECT_TRUE(std::isnan(ArcCosine(-1.5)));
  EXPECT_TRUE(std::isnan(ArcCosine(kNan)));
}

TEST(Elementary, TheLogarithmIsWithinItsBound) {
  for (int i = 0; i < 20000; ++i) {
    const double x = std::ldexp(1.0 + i / 20000.0, i % 120 - 60);
    EXPECT_LE(UlpsBetween(Logarithm(x), std::log(static_cast<long double>(x))), kLogarithmUlps) << x;
  }
  for (double x = 0.5; x < 2.0; x += 1e-4) {
    if (x == 1.0) continue;
    EXPECT_LE(UlpsBetween(Logarithm(x), std::log(static_cast<long double>(x))), kLogarithmUlps) << x;
  }
  for (const double x : {0x1p-1074, 0x1.8p-1030, std::numeric_limits<double>::max()}) {
    EXPECT_LE(UlpsBetween(Logarithm(x), std::log(static_cast<long double>(x))), kLogarithmUlps) << x;
  }
}

TEST(Elementary, TheLogarithmHasItsSpecialValues) {
  EXPECT_EQ(Logarithm(1.0), 0.0);
  EXPECT_EQ(Logarithm(0.0), -kInfinity);
  EXPECT_EQ(Logarithm(-0.0), -kInfinity);
  EXPECT_EQ(Logarithm(kInfinity), kInfinity);
  EXPECT_TRUE(std::isnan(Logarithm(-1.0)));
  EXPECT_TRUE(std::isnan(Logarithm(kNan)));
}

TEST(Elementary, TheExponentialIsWithinItsBound) {
  for (int i = -70700; i <= 70900; ++i) {
    const double x = i * 0.01001;
    EXPECT_LE(UlpsBetween(Exponential(x), std::exp(static_cast<long double>(x))), kExponentialUlps) << x;
  }
  for (int i = -20000; i <= 20000; ++i) {
    const double x = i * 5.1e-5;
    EXPECT_LE(UlpsBetween(Exponential(x), std::exp(static_cast<long double>(x))), kExponentialUlps) << x;
  }
}

TEST(Elementary, TheExponentialHasItsSpecialValues) {
  EXPECT_EQ(Exponential(0.0), 1.0);
  EXPECT_EQ(Exponential(-kInfinity), 0.0);
  EXPECT_EQ(Exponential(-800.0), 0.0);
  EXPECT_EQ(Exponential(-744.0), 0x1p-1073);
  EXPECT_EQ(Exponential(kInfinity), kInfinity);
  EXPECT_EQ(Exponential(709.785), kInfinity);
  EXPECT_LT(Exponential(709.782), kInfinity);
  EXPECT_TRUE(std::isnan(Exponential(kNan)));
}

TEST(Elementary, APowerIsWithinItsBound) {
  for (const double y : {2.4, 1.0 / 2.4, -1.5, 17.25}) {
    for (int i = 1; i <= 20000; ++i) {
      const double x = i * 1.0003e-4;
      const long double t = y * std::log(static_cast<long double>(x));
      EXPECT_LE(UlpsBetween(Power(x, y), std::pow(static_cast<long double>(x), static_cast<long double>(y))),
                PowerUlps(static_cast<double>(t)))
          << x << ' ' << y;
    }
  }
  EXPECT_EQ(Power(1.0, 2.4), 1.0);
  EXPECT_EQ(Power(0.0, 2.4), 0.0);
}

}  // namespace
}  // namespace orvanel
