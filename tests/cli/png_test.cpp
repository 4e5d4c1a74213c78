// PNG files: what libpng reads back is what was drawn.
#include "cli/png.h"

#include <gtest/gtest.h>
#include <png.h>

#include <limits>

namespace orvanel::cli {
namespace {

// Decodes into bytes of the format.
std::vector<std::uint8_t> Decoded(const std::string& bytes, png_uint_32 format, int width, int height) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  EXPECT_TRUE(png_image_begin_read_from_memory(&image, bytes.data(), bytes.size())) << image.message;
  EXPECT_EQ(image.width, static_cast<png_uint_32>(width));
  EXPECT_EQ(image.height, static_cast<png_uint_32>(height));
  EXPECT_EQ(image.format, format) << "8 bits a channel and no others";
  image.format = format;
  std::vector<std::uint8_t> pixels(PNG_IMAGE_SIZE(image));
  EXPECT_TRUE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr)) << image.message;
  return pixels;
}

TEST(Png, GreyPixelsComeBackAsTheyWere) {
  const GreyPicture picture{3, 2, {0, 17, 255, 128, 99, 1}};
  EXPECT_EQ(Decoded(EncodePng(picture), PNG_FORMAT_GRAY, 3, 2), picture.pixels);
}

TEST(Png, ColoursComeBackAsTheyWere) {
  const ColourPicture picture{2, 1, {{1, 2, 3}, {250, 128, 7}}};
  EXPECT_EQ(Decoded(EncodePng(picture), PNG_FORMAT_RGB, 2, 1), (std::vector<std::uint8_t>{1, 2, 3, 250, 128, 7}));
}

TEST(Png, PictureOfAPlaneRoundsClipsAndKeepsRowZeroAtTheTop) {
  std::vector<double> plane(65536, 0.2);
  plane[0] = 0.5;  // 127.5 rounds away from 0
  plane[1] = 1.0;
  plane[2] = 7.0;
  plane[3] = -0.25;
  plane[4] = std::numeric_limits<double>::quiet_NaN();
  plane[256] = 0.0019;  // 0.4845
  plane[257] = 0.0020;  // 0.51
  const std::vector<std::uint8_t> pixels = Decoded(EncodePng(GreyPictureOf(plane)), PNG_FORMAT_GRAY, 256, 256);
  EXPECT_EQ(pixels[0], 128);
  EXPECT_EQ(pixels[1], 255);
  EXPECT_EQ(pixels[2], 255);
  EXPECT_EQ(pixels[3], 0);
  EXPECT_EQ(pixels[4], 0);
  EXPECT_EQ(pixels[5], 51);
  EXPECT_EQ(pixels[256], 0);
  EXPECT_EQ(pixels[257], 1);
}

}  // namespace
}  // namespace orvanel::cli
