// Tests the ends of the colour maps and their even lightness.
#include "drawing/canvas/colour_map.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orvanel::drawing {
namespace {

// CIELAB lightness of an sRGB colour.
double Lightness(Colour c) {
  const auto linear = [](double v) {
    v /= 255.0;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
  };
  const double y = 0.2126 * linear(c.red) + 0.7152 * linear(c.green) + 0.0722 * linear(c.blue);
  return y > 216.0 / 24389.0 ? 116.0 * std::cbrt(y) - 16.0 : y * 24389.0 / 27.0;
}

TEST(ColourMap, PositionsOutsideTakeTheColourOfTheEnd) {
  EXPECT_EQ(ColourAt(kViridis, -3.0).red, 0x44);
  EXPECT_EQ(ColourAt(kViridis, 0.0).blue, 0x54);
  EXPECT_EQ(ColourAt(kViridis, 1.0).red, 0xfd);
  EXPECT_EQ(ColourAt(kViridis, 7.0).green, 0xe7);
}

TEST(ColourMap, SequentialMapsOnlyGrowLighter) {
  // A byte of colour moves the lightness by up to 0.5.
  constexpr double kRounding = 0.5;
  for (const auto* map : {&kViridis, &kInferno}) {
    for (int i = 1; i < 256; ++i) {
      EXPECT_GT(Lightness(ColourAt(*map, i / 255.0)), Lightness(ColourAt(*map, (i - 1) / 255.0)) - kRounding) << i;
    }
  }
}

TEST(ColourMap, DivergingMapIsLightestInTheMiddleAndFallsEvenlyToBlueAndRed) {
  // Lightness 97 in the middle, 33 at either end; the bytes round by up to 0.5.
  constexpr double kRounding = 0.5;
  for (int i = 0; i < 256; ++i) {
    const double away = std::abs(i - 127.5) / 127.5;
    EXPECT_NEAR(Lightness(ColourAt(kDiverging, i / 255.0)), 97.0 - 64.0 * away, kRounding) << i;
  }
  EXPECT_GT(ColourAt(kDiverging, 0.0).blue, ColourAt(kDiverging, 0.0).red);
  EXPECT_GT(ColourAt(kDiverging, 1.0).red, ColourAt(kDiverging, 1.0).blue);
}

}  // namespace
}  // namespace orvanel::drawing
