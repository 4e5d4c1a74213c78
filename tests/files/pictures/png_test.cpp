// Tests that an independent decoder reads the drawn pixels of a PNG file, and that libpng finds no errors.
#include "files/pictures/png.h"

#include <gtest/gtest.h>
#include <stb_image.h>

#include <cstdlib>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/error.h"
#include "tests/support/well_formed_png.h"

namespace orvanel::files {
namespace {

// The channels of a file, as many and as deep as they are expected.
template <class Channel>
std::vector<Channel> Decoded(const std::string& file, int width, int height, int channels) {
  const auto* const bytes = reinterpret_cast<const stbi_uc*>(file.data());
  const int size = static_cast<int>(file.size());
  constexpr bool kDeep = sizeof(Channel) == 2;
  EXPECT_EQ(stbi_is_16_bit_from_memory(bytes, size) != 0, kDeep);
  int w = 0, h = 0, c = 0;
  void* decoded = nullptr;
  if constexpr (kDeep) {
    decoded = stbi_load_16_from_memory(bytes, size, &w, &h, &c, 0);
  } else {
    decoded = stbi_load_from_memory(bytes, size, &w, &h, &c, 0);
  }
  const std::unique_ptr<void, void (*)(void*)> owner(decoded, stbi_image_free);
  if (decoded == nullptr) throw std::runtime_error(stbi_failure_reason());
  EXPECT_EQ(w, width);
  EXPECT_EQ(h, height);
  EXPECT_EQ(c, channels);
  const auto* const first = static_cast<const Channel*>(decoded);
  return {first, first + w * h * c};
}

template <class Channel>
std::vector<Channel> Channels(const Picture<Rgb<Channel>>& picture) {
  std::vector<Channel> channels;
  for (const auto& pixel : picture.pixels) channels.insert(channels.end(), {pixel.red, pixel.green, pixel.blue});
  return channels;
}

// A smooth slope, flat fields, an edge and noise, so that every filter is the best for some row.
template <class Channel>
std::vector<Channel> Samples(int width, int height, int channels) {
  std::vector<Channel> samples;
  unsigned seed = 7;
  for (int row = 0; row < height; ++row) {
    for (int i = 0; i < width * channels; ++i) {
      seed = seed * 1664525u + 1013904223u;
      const unsigned noise = seed >> 13;
      const unsigned slope = static_cast<unsigned>(row * row + 3 * i);
      const unsigned kinds[] = {slope, 200u, noise, slope * 97u + noise % 3, i > width ? 65535u : 17u};
      samples.push_back(static_cast<Channel>(kinds[row / 4 % 5]));
    }
  }
  return samples;
}

template <class Channel>
Picture<Rgb<Channel>> ColoursOf(int width, int height) {
  Picture<Rgb<Channel>> picture{width, height, {}};
  const auto samples = Samples<Channel>(width, height, 3);
  for (std::size_t i = 0; i < samples.size(); i += 3) {
    picture.pixels.push_back({samples[i], samples[i + 1], samples[i + 2]});
  }
  return picture;
}

TEST(Png, GreyPixelsComeBackAsTheyWere) {
  const GreyPicture picture{37, 61, Samples<std::uint8_t>(37, 61, 1)};
  const std::string file = EncodePng(picture, Pixels::kNumbers);
  EXPECT_EQ(Decoded<std::uint8_t>(file, 37, 61, 1), picture.pixels);
  EXPECT_EQ(test::PngComplaint(file), "");
}

TEST(Png, ColoursComeBackAsTheyWere) {
  const ColourPicture picture = ColoursOf<std::uint8_t>(23, 41);
  const std::string file = EncodePng(picture);
  EXPECT_EQ(Decoded<std::uint8_t>(file, 23, 41, 3), Channels(picture));
  EXPECT_EQ(test::PngComplaint(file), "");
}

TEST(Png, GreyPixelsOfSixteenBitsComeBackAsTheyWere) {
  const DeepGreyPicture picture{19, 43, Samples<std::uint16_t>(19, 43, 1)};
  const std::string file = EncodePng(picture, Pixels::kSrgb);
  EXPECT_EQ(Decoded<std::uint16_t>(file, 19, 43, 1), picture.pixels);
  EXPECT_EQ(test::PngComplaint(file), "");
}

TEST(Png, ColoursOfSixteenBitsComeBackAsTheyWere) {
  const DeepColourPicture picture = ColoursOf<std::uint16_t>(29, 47);
  const std::string file = EncodePng(picture, Pixels::kNumbers);
  EXPECT_EQ(Decoded<std::uint16_t>(file, 29, 47, 3), Channels(picture));
  EXPECT_EQ(test::PngComplaint(file), "");
}

// Rows of which the standard's predictor foretells all but each seventh pixel exactly, so that its filter is the one to
// choose. Left and corner, or above and corner, are often equally near; the first of left, above, corner is then the
// right one, and a decoder that takes it reads another picture from a file whose writer took the other.
TEST(Png, EquallyNearNeighboursAreTakenInTheOrderOfTheStandard) {
  constexpr int kWidth = 200, kHeight = 41;
  GreyPicture picture{kWidth, kHeight, std::vector<std::uint8_t>(static_cast<std::size_t>(kWidth) * kHeight)};
  const auto at = [&picture](int row, int column) -> std::uint8_t& {
    return picture.pixels[static_cast<std::size_t>(row * kWidth + column)];
  };
  unsigned seed = 5;
  int leftOrCorner = 0, aboveOrCorner = 0;
  for (int row = 0; row < kHeight; ++row) {
    for (int column = 0; column < kWidth; ++column) {
      seed = seed * 1664525u + 1013904223u;
      at(row, column) = static_cast<std::uint8_t>(40 + 20 * (seed >> 20 & 7));
      if (row % 2 == 0 || column % 7 == 0) continue;
      const int left = column > 0 ? at(row, column - 1) : 0, above = at(row - 1, column);
      const int corner = column > 0 ? at(row - 1, column - 1) : 0;
      const int estimate = left + above - corner;
      const int toLeft = std::abs(estimate - left), toAbove = std::abs(estimate - above);
      const int toCorner = std::abs(estimate - corner);
      int nearest = corner;
      if (toAbove <= toCorner) nearest = above;
      if (toLeft <= toAbove && toLeft <= toCorner) nearest = left;
      leftOrCorner += toLeft == toCorner && toLeft < toAbove && left != corner;
      aboveOrCorner += toAbove == toCorner && toAbove < toLeft && above != corner;
      at(row, column) = static_cast<std::uint8_t>(nearest);
    }
  }
  EXPECT_GT(leftOrCorner, 20);
  EXPECT_GT(aboveOrCorner, 20);
  EXPECT_EQ(Decoded<std::uint8_t>(EncodePng(picture, Pixels::kNumbers), kWidth, kHeight, 1), picture.pixels);
}

TEST(Png, OfOnePixelComesBackAsItWas) {
  const GreyPicture picture{1, 1, {99}};
  EXPECT_EQ(Decoded<std::uint8_t>(EncodePng(picture, Pixels::kSrgb), 1, 1, 1), picture.pixels);
}

TEST(Png, OfASmoothPictureIsAFractionOfItsPixels) {
  DeepGreyPicture slope{256, 256, {}};
  for (unsigned i = 0; i < 65536; ++i) slope.pixels.push_back(static_cast<std::uint16_t>(i % 256 * 151 + i / 256 * 83));
  EXPECT_LT(EncodePng(slope, Pixels::kNumbers).size(), 5000U);  // unfiltered, zlib makes 130,659 of them
}

TEST(Png, ColoursAreMarkedAsSrgbAndNumbersAreNot) {
  const GreyPicture picture{1, 1, {99}};
  EXPECT_NE(EncodePng(picture, Pixels::kSrgb).find("sRGB"), std::string::npos);
  EXPECT_EQ(EncodePng(picture, Pixels::kNumbers).find("sRGB"), std::string::npos);
}

TEST(Png, WithoutPixelsIsRefused) {
  EXPECT_THROW(EncodePng(GreyPicture{}, Pixels::kNumbers), Error);
  EXPECT_THROW(EncodePng(ColourPicture{3, 0, {}}), Error);
}

TEST(Png, PictureOfAPlaneRoundsClipsAndKeepsRowZeroAtTheTop) {
  Plane plane(256, 256, 0.2);
  plane[0] = 0.5;  // 127.5 rounds away from 0
  plane[1] = 1.0;
  plane[2] = 7.0;
  plane[3] = -0.25;
  plane[4] = std::numeric_limits<double>::quiet_NaN();
  plane[256] = 0.0019;  // 0.4845
  plane[257] = 0.0020;  // 0.51
  const auto pixels = Decoded<std::uint8_t>(EncodePng(GreyPictureOf(plane), Pixels::kNumbers), 256, 256, 1);
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
}  // namespace orvanel::files
