// Tests reduced angles by reconstructing the angle.
#include "base/reduced_angle.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orvanel {
namespace {

constexpr long double kHalfPi = 1.57079632679489661923132169163975144L;

// Remainder of x by quarter turns in long double; exact enough up to some thousand turns.
long double Remainder(double x, long double quarters) { return x - quarters * kHalfPi; }

TEST(ReducedAngle, IsAtMostAnEighthOfATurn) {
  for (const double x : {0.1, 0.78, 0.79, 1.57, 2.4, 100.3, -7.1, 1e7, 3e9, -1e200}) {
    const ReducedAngle angle = ReduceAngle(x);
    EXPECT_LE(std::fabs(angle.high + angle.low), 0.78539816339744839) << x;
    EXPECT_GE(angle.quadrant, 0);
    EXPECT_LE(angle.quadrant, 3);
  }
}

TEST(ReducedAngle, CountsQuarterTurnsAlsoBackwards) {
  EXPECT_EQ(ReduceAngle(0.5).quadrant, 0);
  EXPECT_EQ(ReduceAngle(1.7).quadrant, 1);
  EXPECT_EQ(ReduceAngle(3.3).quadrant, 2);
  EXPECT_EQ(ReduceAngle(4.8).quadrant, 3);
  EXPECT_EQ(ReduceAngle(6.4).quadrant, 0);
  EXPECT_EQ(ReduceAngle(-1.7).quadrant, 3);
  EXPECT_EQ(ReduceAngle(-3.3).quadrant, 2);
}

TEST(ReducedAngle, KeepsMoreDigitsThanADouble) {
  for (int k = -50; k <= 50; ++k) {
    const double x = k * 1.5707963;  // near to a multiple, where a double's digits would cancel
    const ReducedAngle angle = ReduceAngle(x);
    const long double sum = static_cast<long double>(angle.high) + angle.low;
    EXPECT_LE(std::fabs(sum - Remainder(x, k)), 0x1p-57L) << k;
  }
}

TEST(ReducedAngle, OfHugeNumbersHasTwiceTheDigitsOfADouble) {
  // By mpmath with 1400 bits: x - k pi/2, rounded to a double, and what is left of it. All of them are such that the
  // second word of the product with 2/pi carries into the first, which one in some thousand does.
  const struct {
    double x;
    int quadrant;
    double high, low;
  } angles[] = {{0x1.ccaa5cd27cp+39, 3, 0x1.2849d98539759p-1, 0x1.ba34d868c3bd6p-55},
                {0x1.11f2b6c77cp+109, 0, -0x1.f11ceb401dbfbp-3, 0x1.bcec19ccb2ce4p-57},
                {0x1.70b472061200p+509, 1, -0x1.30f29348a5baap-1, 0x1.6041876746171p-56},
                {0x1.179b1ef308p+1007, 3, 0x1.3f58834b73b37p-2, -0x1.cdba6b60efa71p-59}};
  for (const auto& expected : angles) {
    const ReducedAngle angle = ReduceAngle(expected.x);
    EXPECT_EQ(angle.quadrant, expected.quadrant) << expected.x;
    EXPECT_EQ(angle.high, expected.high) << expected.x;
    // A few roundings of numbers of the size of low.
    EXPECT_LE(std::fabs(angle.low - expected.low), 4 * 0x1p-107) << expected.x;
  }
}

TEST(ReducedAngle, OfAFractionOfATurnNamesItsNearestQuarter) {
  EXPECT_EQ(ReduceTurn(7, 64).quadrant, 0);
  EXPECT_EQ(ReduceTurn(9, 64).quadrant, 1);
  EXPECT_EQ(ReduceTurn(33, 64).quadrant, 2);
  EXPECT_EQ(ReduceTurn(55, 64).quadrant, 3);
  EXPECT_EQ(ReduceTurn(57, 64).quadrant, 0);
  EXPECT_LT(ReduceTurn(57, 64).high, 0.0);
}

}  // namespace
}  // namespace orvanel
