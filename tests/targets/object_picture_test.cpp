// Tests resampling pictures of any size to 256 x 256 samples.
#include "targets/object_picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numeric>

#include "targets/srgb.h"

namespace orvanel::targets {
namespace {

constexpr double kRounding = 1e-12;  // sums of up to 1000 weights, each wrong by a few units in its last place

DecodedPicture Grey(int width, int height, const std::function<int(int x, int y)>& level) {
  DecodedPicture picture{width, height, 1, 16, {}};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) picture.samples.push_back(static_cast<std::uint16_t>(level(x, y)));
  }
  return picture;
}

double At(const Plane& plane, int row, int column) { return plane[static_cast<std::size_t>(256 * row + column)]; }

constexpr PictureRequest Linear(Fit fit) { return {{}, fit, true}; }

TEST(ObjectPicture, OfTheFieldsOwnSizeStaysAsItIsWithAllSixteenBits) {
  const DecodedPicture picture = Grey(256, 256, [](int x, int y) { return 256 * y + x; });
  for (const Fit fit : {Fit::kCrop, Fit::kPad, Fit::kPixels}) {
    const ObjectPicture object = FitToField(picture, Linear(fit));
    ASSERT_EQ(object.channels.size(), 1U);
    for (std::size_t k = 0; k < 65536; ++k) {
      ASSERT_NEAR(object.channels[0][k], static_cast<double>(k) / 65535.0, 0x1p-53) << k;
    }
  }
}

TEST(ObjectPicture, CropTakesTheCentralSquareOfEitherShape) {
  // 512 x 768: two pixels a sample; rows 128 to 639 remain.
  const ObjectPicture tall = FitToField(Grey(512, 768, [](int x, int y) { return 70 * y + x; }), Linear(Fit::kCrop));
  EXPECT_NEAR(At(tall.channels[0], 0, 0), (70 * 128.5 + 0.5) / 65535.0, kRounding);
  EXPECT_NEAR(At(tall.channels[0], 255, 9), (70 * 638.5 + 18.5) / 65535.0, kRounding);
  const ObjectPicture wide = FitToField(Grey(768, 512, [](int x, int y) { return 70 * x + y; }), Linear(Fit::kCrop));
  EXPECT_NEAR(At(wide.channels[0], 9, 255), (70 * 638.5 + 18.5) / 65535.0, kRounding);
}

TEST(ObjectPicture, ScalingKeepsTheMeanLightAtAnySize) {
  for (const int side : {1, 3, 100, 255, 257, 1000}) {
    const DecodedPicture picture = Grey(side, side, [](int x, int y) { return (7919 * x + 104729 * y) % 65536; });
    const double mean = std::accumulate(picture.samples.begin(), picture.samples.end(), 0.0) / 65535.0 / side / side;
    const Plane light = FitToField(picture, Linear(Fit::kCrop)).channels[0];
    EXPECT_NEAR(std::accumulate(light.begin(), light.end(), 0.0) / 65536.0, mean, kRounding) << side;
  }
}

TEST(ObjectPicture, PadShowsAllWithWhiteBesideIt) {
  // 100 x 50 pixels on 256 x 128 samples.
  const DecodedPicture picture = Grey(100, 50, [](int x, int y) { return 600 * x + 30 * y; });
  const Plane light = FitToField(picture, Linear(Fit::kPad)).channels[0];
  EXPECT_EQ(At(light, 63, 20), 1.0);
  EXPECT_EQ(At(light, 192, 20), 1.0);
  EXPECT_NEAR(At(light, 64, 0), 0.0, kRounding);
  EXPECT_NEAR(At(light, 191, 255), (600 * 99 + 30 * 49) / 65535.0, kRounding);
}

TEST(ObjectPicture, PixelsAreTakenAsTheyAre) {
  const Plane large =
      FitToField(Grey(301, 257, [](int x, int y) { return 200 * x + y; }), Linear(Fit::kPixels)).channels[0];
  EXPECT_NEAR(At(large, 0, 0), 200 * 22 / 65535.0, kRounding);  // 45 columns too many: 22 before, 23 behind
  EXPECT_NEAR(At(large, 255, 255), (200 * 277 + 255) / 65535.0, kRounding);
  const Plane small =
      FitToField(Grey(2, 3, [](int x, int y) { return 100 * x + y; }), Linear(Fit::kPixels)).channels[0];
  EXPECT_EQ(At(small, 126, 127), 1.0);
  EXPECT_NEAR(At(small, 127, 127), 0.0, kRounding);
  EXPECT_NEAR(At(small, 129, 128), 102 / 65535.0, kRounding);
  EXPECT_EQ(At(small, 130, 128), 1.0);
  EXPECT_EQ(At(small, 129, 129), 1.0);
}

TEST(ObjectPicture, SrgbValuesBecomeLightBeforeTheyAreAveraged) {
  // Black and white in turn are half the light, not the light of the middle value.
  const DecodedPicture board = Grey(512, 512, [](int x, int y) { return 65535 * ((x + y) % 2); });
  EXPECT_NEAR(FitToField(board, {{}, Fit::kCrop, false}).channels[0][1000], 0.5, kRounding);
  const DecodedPicture plain = Grey(256, 256, [](int, int) { return 30000; });
  EXPECT_NEAR(FitToField(plain, {{}, Fit::kCrop, false}).channels[0][1000], LightOfSrgb(30000 / 65535.0), kRounding);
}

TEST(ObjectPicture, WhiteLiesUnderTransparentParts) {
  DecodedPicture picture{1, 1, 4, 8, {0, 65535, 13107, 16384}};  // a quarter opaque
  const ObjectPicture object = FitToField(picture, Linear(Fit::kCrop));
  ASSERT_EQ(object.channels.size(), 3U);
  EXPECT_TRUE(object.transparent);
  const double opacity = 16384 / 65535.0;
  EXPECT_NEAR(object.channels[0][77], 1.0 - opacity, kRounding);
  EXPECT_NEAR(object.channels[1][77], 1.0, kRounding);
  EXPECT_NEAR(object.channels[2][77], 1.0 - 0.8 * opacity, kRounding);
  picture.samples[3] = 65535;
  EXPECT_FALSE(FitToField(picture, Linear(Fit::kCrop)).transparent);
}

// Six pixels of four channels; the middle ones of a row are half and fully transparent.
TEST(ObjectPicture, AWholePictureKeepsItsPixelsWithWhiteUnderTransparentParts) {
  DecodedPicture picture{3, 2, 4, 16, {}};
  for (int pixel = 0; pixel < 6; ++pixel) {
    const int opacity[] = {65535, 13107, 0, 65535, 65535, 65535};
    for (const int value : {1000 * pixel, 20000 + pixel, 65535 - 3 * pixel, opacity[pixel]}) {
      picture.samples.push_back(static_cast<std::uint16_t>(value));
    }
  }
  const ObjectPicture object = PixelsAsTheyAre(picture, Linear(Fit::kCrop));
  EXPECT_TRUE(object.transparent);
  ASSERT_EQ(object.channels.size(), 3U);
  ASSERT_EQ(object.channels[0].columns(), 3);
  ASSERT_EQ(object.channels[0].rows(), 2);
  EXPECT_NEAR(object.channels[0].At(1, 2), 5000.0 / 65535.0, kRounding);
  EXPECT_NEAR(object.channels[1].At(1, 0), 20003.0 / 65535.0, kRounding);
  EXPECT_NEAR(object.channels[2].At(0, 1), 1.0 - 0.2 * 3.0 / 65535.0, kRounding);
  EXPECT_NEAR(object.channels[0].At(0, 1), 0.8 + 0.2 * 1000.0 / 65535.0, kRounding);
  EXPECT_EQ(object.channels[1].At(0, 2), 1.0);
}

TEST(ObjectPicture, AWholePictureOfSrgbValuesBecomesLight) {
  const ObjectPicture object = PixelsAsTheyAre(Grey(2, 1, [](int x, int) { return 30000 + 20000 * x; }), {});
  EXPECT_FALSE(object.transparent);
  ASSERT_EQ(object.channels.size(), 1U);
  // IEC 61966-2-1.
  EXPECT_NEAR(object.channels[0][0], std::pow((30000.0 / 65535.0 + 0.055) / 1.055, 2.4), 1e-9);
  EXPECT_NEAR(object.channels[0][1], std::pow((50000.0 / 65535.0 + 0.055) / 1.055, 2.4), 1e-9);
}

TEST(ObjectPicture, GreyWithOpacityHasOneChannel) {
  const DecodedPicture picture{1, 1, 2, 8, {13107, 65535}};
  const ObjectPicture object = FitToField(picture, Linear(Fit::kCrop));
  ASSERT_EQ(object.channels.size(), 1U);
  EXPECT_NEAR(object.channels[0][0], 0.2, kRounding);
}

}  // namespace
}  // namespace orvanel::targets
