// Tests TIFF files tag by tag, without the library that wrote them.
#include "files/planes/tiff.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <map>

#include "tests/files/planes/plane_sets.h"

namespace orvanel::files {
namespace {

std::uint32_t Number(const std::string& bytes, std::size_t position, std::size_t count) {
  std::uint32_t number = 0;
  for (std::size_t i = count; i-- > 0;) number = number << 8 | static_cast<std::uint8_t>(bytes.at(position + i));
  return number;
}

// Each tag of the one directory with its number or the place of its value.
std::map<std::uint32_t, std::uint32_t> Tags(const std::string& bytes) {
  std::map<std::uint32_t, std::uint32_t> tags;
  const std::size_t directory = Number(bytes, 4, 4);
  const std::size_t count = Number(bytes, directory, 2);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t entry = directory + 2 + 12 * i;
    const bool isShort = Number(bytes, entry + 2, 2) == 3;
    tags[Number(bytes, entry, 2)] = Number(bytes, entry + 8, isShort ? 2 : 4);
  }
  EXPECT_EQ(Number(bytes, directory + 2 + 12 * count, 4), 0U) << "a second directory";
  return tags;
}

TEST(Tiff, HoldsFloatsWithResolutionAndNoDate) {
  const Plane samples = Ramp();
  const std::string bytes = EncodeTiff(SetOfOne(samples));
  ASSERT_TRUE(bytes.starts_with("II*"));
  auto tags = Tags(bytes);
  EXPECT_EQ(tags[256], 256U);  // width
  EXPECT_EQ(tags[257], 256U);  // height
  EXPECT_EQ(tags[258], 32U);   // bits
  EXPECT_EQ(tags[339], 3U);    // floating point
  EXPECT_EQ(tags[296], 3U);    // centimetres
  EXPECT_EQ(Number(bytes, tags[282], 4) / Number(bytes, tags[282] + 4, 4), 400U);
  EXPECT_EQ(tags.count(306), 0U) << "a date";
}

TEST(Tiff, DescriptionHasUnitAndSpacing) {
  const Plane samples = Ramp();
  const std::string bytes = EncodeTiff(SetOfOne(samples));
  const std::string description = bytes.c_str() + Tags(bytes)[270];
  EXPECT_EQ(description, "ramp-0.5: a ramp\nunit: mm\nsample_spacing_mm: 0.025\nview: pupil");
}

TEST(Tiff, SamplesStandInOneStripInTheOrderOfThePlane) {
  const Plane samples = Ramp();
  const std::string bytes = EncodeTiff(SetOfOne(samples));
  std::vector<float> strip(samples.size());
  std::memcpy(strip.data(), bytes.data() + Tags(bytes)[273], strip.size() * sizeof(float));
  EXPECT_NE(strip[0], strip[0]);  // not a number
  for (std::size_t k = 1; k < strip.size(); ++k) ASSERT_EQ(strip[k], samples[k]) << k;
}

TEST(Tiff, AWidePlaneKeepsItsRows) {
  const Plane samples(3, 2, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0});
  const std::string bytes = EncodeTiff(SetOfOne(samples));
  auto tags = Tags(bytes);
  EXPECT_EQ(tags[256], 3U);  // width
  EXPECT_EQ(tags[257], 2U);  // height
  std::vector<float> strip(samples.size());
  std::memcpy(strip.data(), bytes.data() + tags[273], strip.size() * sizeof(float));
  EXPECT_EQ(strip, (std::vector<float>{1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F}));
}

}  // namespace
}  // namespace orvanel::files
