// Tests the conversion of light to pixels.
#include "files/pictures/picture_pixels.h"

#include <gtest/gtest.h>
#include <stb_image.h>

#include <cmath>
#include <limits>

#include "orvanel/orvanel.h"
#include "targets/srgb.h"

namespace orvanel::files {
namespace {

// The samples of a PNG file by a decoder that is not ours.
std::vector<int> Decoded(const std::string& bytes, int& channels) {
  int width = 0, height = 0;
  stbi_us* const pixels = stbi_load_16_from_memory(reinterpret_cast<const stbi_uc*>(bytes.data()),
                                                   static_cast<int>(bytes.size()), &width, &height, &channels, 0);
  EXPECT_EQ(width, 256);
  EXPECT_EQ(height, 256);
  std::vector<int> samples(pixels, pixels + width * height * channels);
  stbi_image_free(pixels);
  return samples;
}

Plane Ramp(double first) {
  Plane plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
  for (std::size_t k = 0; k < plane.size(); ++k) plane[k] = first + static_cast<double>(k) / 131072.0;
  return plane;
}

TEST(PicturePixels, OneChannelIsGreyAndThreeAreInOrder) {
  int channels = 0;
  Decoded(EncodePicture({Ramp(0.0)}, true, 8), channels);
  EXPECT_EQ(channels, 1);
  const std::vector<int> samples = Decoded(EncodePicture({Ramp(0.0), Ramp(0.25), Ramp(0.5)}, true, 16), channels);
  EXPECT_EQ(channels, 3);
  EXPECT_EQ(samples[3 * 1000], std::lround(65535.0 * 1000 / 131072.0));
  EXPECT_EQ(samples[3 * 1000 + 1], std::lround(65535.0 * (0.25 + 1000 / 131072.0)));
  EXPECT_EQ(samples[3 * 1000 + 2], std::lround(65535.0 * (0.5 + 1000 / 131072.0)));
}

TEST(PicturePixels, LightIsWrittenAsSrgbUnlessItIsWantedAsItIs) {
  int channels = 0;
  const Plane plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, 0.2);
  EXPECT_EQ(Decoded(EncodePicture({plane}, false, 16), channels)[9], std::lround(65535.0 * SrgbOfLight(0.2)));
  EXPECT_EQ(Decoded(EncodePicture({plane}, true, 16), channels)[9], 13107);
  EXPECT_EQ(Decoded(EncodePicture({plane}, false, 8), channels)[9], 257 * std::lround(255.0 * SrgbOfLight(0.2)));
}

TEST(PicturePixels, WhatLiesOutsideIsClipped) {
  Plane plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, 1.5);
  plane[1] = -0.5;
  plane[2] = std::numeric_limits<double>::quiet_NaN();
  const ColourPicture pixels = PicturePixels({plane}, false);
  EXPECT_EQ(pixels.pixels[0].green, 255);
  EXPECT_EQ(pixels.pixels[1].red, 0);
  EXPECT_EQ(pixels.pixels[2].blue, 0);
}

}  // namespace
}  // namespace orvanel::files
