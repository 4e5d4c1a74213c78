// Tests the embedded Siemens star (sector star): its bytes and the samples decoded from them.
#include "interface/pattern_asset.h"

#include <gtest/gtest.h>
#ifdef _WIN32
#include <windows.h>
#endif

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "orvanel/orvanel.h"

// The bytes of assets/sector_star.dib.
extern "C" const unsigned char orvanel_sector_star_file[];
extern "C" const unsigned char orvanel_sector_star_file_end[];

namespace orvanel {
namespace {

constexpr int kSide = ORVANEL_GRID_SIZE;

// 40 sectors of 9 degrees about the middle of the picture, a white one around each axis; two samples are white all
// the same.
bool IsWhite(int row, int column) {
  if ((row == 139 && column == 130) || (row == 140 && column == 59)) return true;
  double degrees = std::atan2(127.5 - row, column - 127.5) * 180.0 / 3.14159265358979323846;
  if (degrees < 0.0) degrees += 360.0;
  return static_cast<int>(std::floor((degrees + 4.5) / 9.0)) % 2 == 0;
}

std::vector<double> Loaded() {
  std::vector<double> pattern(ORVANEL_PLANE_SAMPLES, -1.0);
  LoadPatternAsset(pattern.data());
  return pattern;
}

template <class Value>
Value HeaderField(std::size_t offset) {
  Value value;
  std::memcpy(&value, orvanel_sector_star_file + offset, sizeof value);
  return value;
}

TEST(PatternAsset, IsTheSectorStarTopRowFirst) {
  const std::vector<double> pattern = Loaded();
  for (int row = 0; row < kSide; ++row) {
    for (int column = 0; column < kSide; ++column) {
      ASSERT_EQ(pattern[static_cast<std::size_t>(kSide * row + column)], IsWhite(row, column) ? 1.0 : 0.0)
          << row << "," << column;
    }
  }
}

TEST(PatternAsset, HasTwoSamplesThatBreakTheRule) {
  const std::vector<double> pattern = Loaded();
  EXPECT_EQ(pattern[139 * 256 + 130], 1.0);
  EXPECT_EQ(pattern[140 * 256 + 59], 1.0);
  // Their mirror images follow it.
  EXPECT_EQ(pattern[(255 - 139) * 256 + 130], 0.0);
  EXPECT_EQ(pattern[(255 - 140) * 256 + 59], 0.0);
}

TEST(PatternAsset, HasTheStatedNumbersOfBlackAndWhiteSamples) {
  const std::vector<double> pattern = Loaded();
  EXPECT_EQ(std::count(pattern.begin(), pattern.end(), 1.0), 32402);
  EXPECT_EQ(std::count(pattern.begin(), pattern.end(), 0.0), 33134);
}

TEST(PatternAsset, IsABitmapWithoutFileHeader) {
  EXPECT_EQ(orvanel_sector_star_file_end - orvanel_sector_star_file, 66600);
  EXPECT_EQ(HeaderField<std::uint32_t>(0), 40u);
  EXPECT_EQ(HeaderField<std::int32_t>(4), 256);
  EXPECT_EQ(HeaderField<std::int32_t>(8), 256);
  EXPECT_EQ(HeaderField<std::uint16_t>(12), 1u);
  EXPECT_EQ(HeaderField<std::uint16_t>(14), 8u);
  EXPECT_EQ(HeaderField<std::uint32_t>(16), 0u);
  EXPECT_EQ(HeaderField<std::uint32_t>(20), 65536u);
  for (const std::size_t offset : {24u, 28u, 32u, 36u}) EXPECT_EQ(HeaderField<std::uint32_t>(offset), 0u);
  EXPECT_EQ(HeaderField<std::uint32_t>(40), 0x00000000u);
  EXPECT_EQ(HeaderField<std::uint32_t>(40 + 255 * 4), 0x00ffffffu);
}

TEST(PatternAsset, UsesOnlyBlackAndWhiteOfItsColours) {
  EXPECT_TRUE(std::all_of(orvanel_sector_star_file + 1064, orvanel_sector_star_file_end,
                          [](unsigned char index) { return index == 0 || index == 255; }));
}

#ifdef _WIN32
TEST(PatternAsset, IsTheFileByteForByteAmongTheResources) {
  const HRSRC resource = FindResourceA(nullptr, MAKEINTRESOURCEA(1000), RT_BITMAP);
  ASSERT_NE(resource, nullptr);
  ASSERT_EQ(SizeofResource(nullptr, resource), 66600U);
  EXPECT_EQ(std::memcmp(LockResource(LoadResource(nullptr, resource)), orvanel_sector_star_file, 66600), 0);
}

TEST(PatternAsset, IsTheSameRenderedForTheScreenAndDecodedWithoutOne) {
  const std::vector<double> expected = Loaded();
  std::vector<double> rendered(expected.size(), -1.0), decoded(expected.size(), -1.0);
  EXPECT_TRUE(LoadRenderedPattern(rendered.data())) << "no screen of 32 bits a pixel";
  LoadPatternResource(decoded.data());
  EXPECT_EQ(rendered, expected);
  EXPECT_EQ(decoded, expected);
}
#endif

}  // namespace
}  // namespace orvanel
