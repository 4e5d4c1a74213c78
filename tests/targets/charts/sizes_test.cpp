// Tests sizes of optotypes against the definitions of acuity.
#include "targets/charts/sizes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orvanel::targets::charts {
namespace {

TEST(Sizes, LogMarIsTheLogarithmOfTheStroke) {
  EXPECT_EQ(HeightOfLogMar(0.0).value(), 5.0);
  for (const double logMar : {-0.3, 0.1, 0.5, 1.0, 1.3}) {
    EXPECT_NEAR(HeightOfLogMar(logMar).value() / (5.0 * std::pow(10.0, logMar)), 1.0, 1e-14);
    EXPECT_NEAR(LogMarOfHeight(HeightOfLogMar(logMar)), logMar, 1e-14);
  }
}

TEST(Sizes, DecimalAcuityIsTheReciprocalOfTheStroke) {
  EXPECT_EQ(HeightOfDecimal(0.5).value(), 10.0);
  EXPECT_EQ(HeightOfDecimal(20.0 / 40.0).value(), 10.0);
  EXPECT_EQ(DecimalOfHeight(ArcMinutes(4.0)), 1.25);
}

TEST(Sizes, StepsGoUpAndDownAndReachTheirEnd) {
  const std::vector<double> down = Steps(0.5, -0.3, 0.1, 20);
  ASSERT_EQ(down.size(), 9U);
  EXPECT_EQ(down.front(), 0.5);
  EXPECT_NEAR(down[5], 0.0, 1e-15);
  EXPECT_NEAR(down.back(), -0.3, 1e-15);
  const std::vector<double> up = Steps(0.1, 0.45, 0.1, 20);
  ASSERT_EQ(up.size(), 4U);
  EXPECT_NEAR(up.back(), 0.4, 1e-15);
  EXPECT_EQ(Steps(0.3, 0.3, 0.1, 1).size(), 1U);
}

TEST(Sizes, StepsWithoutEndOrDirectionAreNone) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity(), kNan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(Steps(0.0, 1.0, 0.0, 20).empty());
  EXPECT_TRUE(Steps(0.0, 1.0, -0.1, 20).empty());
  EXPECT_TRUE(Steps(0.0, 1.0, kNan, 20).empty());
  EXPECT_TRUE(Steps(0.0, kInfinity, 0.1, 20).empty());
  EXPECT_TRUE(Steps(kNan, 1.0, 0.1, 20).empty());
  EXPECT_TRUE(Steps(0.0, 2.0, 0.1, 20).empty());
  EXPECT_EQ(Steps(0.0, 1.9, 0.1, 20).size(), 20U);
}

}  // namespace
}  // namespace orvanel::targets::charts
