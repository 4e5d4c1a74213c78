// Tests the sRGB curve.
#include "targets/srgb.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orvanel::targets {
namespace {

TEST(Srgb, KeepsBlackAndWhite) {
  EXPECT_EQ(LightOfSrgb(0.0), 0.0);
  EXPECT_EQ(LightOfSrgb(1.0), 1.0);
  EXPECT_EQ(SrgbOfLight(0.0), 0.0);
  EXPECT_EQ(SrgbOfLight(1.0), 1.0);
}

TEST(Srgb, HasThePublishedValues) {
  EXPECT_NEAR(LightOfSrgb(188.0 / 255.0), 0.502886, 5e-7);  // six digits
  EXPECT_NEAR(LightOfSrgb(10.0 / 255.0), 0.003035, 5e-7);   // on the straight piece
}

TEST(Srgb, ThereAndBackIsTheSameLevelOfSixteenBits) {
  for (int level = 0; level < 65536; ++level) {
    ASSERT_EQ(std::lround(65535.0 * SrgbOfLight(LightOfSrgb(level / 65535.0))), level);
  }
}

}  // namespace
}  // namespace orvanel::targets
