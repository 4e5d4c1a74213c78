// Tests luminances against the definitions of contrast.
#include "targets/charts/contrast.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace orvanel::targets::charts {
namespace {

using Kind = Contrast::Kind;

TEST(Contrast, MichelsonIsDifferenceOverSum) {
  for (const double value : {0.01, 0.4, 1.0}) {
    const Luminances dark = LuminancesOf({Kind::kMichelson, value, Polarity::kDarkOnLight});
    EXPECT_NEAR((dark.background - dark.target) / (dark.background + dark.target), value, 1e-15);
    EXPECT_EQ(dark.background, 1.0);
    const Luminances light = LuminancesOf({Kind::kMichelson, value, Polarity::kLightOnDark});
    EXPECT_EQ(light.target, 1.0);
    EXPECT_EQ(light.background, dark.target);
  }
}

TEST(Contrast, WeberIsDifferenceOverBackground) {
  for (const double value : {0.01, 0.4, 1.0}) {
    const Luminances dark = LuminancesOf({Kind::kWeber, value, Polarity::kDarkOnLight});
    EXPECT_NEAR((dark.background - dark.target) / dark.background, value, 1e-15);
    EXPECT_EQ(dark.background, 1.0);
  }
  for (const double value : {0.01, 0.4, 1.0, 9.0}) {
    const Luminances light = LuminancesOf({Kind::kWeber, value, Polarity::kLightOnDark});
    EXPECT_NEAR((light.target - light.background) / light.background, value, 1e-14);
    EXPECT_EQ(light.target, 1.0);
  }
}

TEST(Contrast, OnlyWeberContrastOfLightTargetsExceedsOne) {
  EXPECT_EQ(LargestContrast({Kind::kMichelson, 0.5, Polarity::kDarkOnLight}), 1.0);
  EXPECT_EQ(LargestContrast({Kind::kMichelson, 0.5, Polarity::kLightOnDark}), 1.0);
  EXPECT_EQ(LargestContrast({Kind::kWeber, 0.5, Polarity::kDarkOnLight}), 1.0);
  EXPECT_EQ(LargestContrast({Kind::kWeber, 0.5, Polarity::kLightOnDark}), std::numeric_limits<double>::infinity());
}

}  // namespace
}  // namespace orvanel::targets::charts
