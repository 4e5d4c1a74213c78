// The embedded sector star: its bytes and what is made of them.
#include "interface/pattern_asset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "orvanel/orvanel.h"

extern "C" const unsigned char orvanel_sector_star[];
extern "C" const unsigned char orvanel_sector_star_end[];

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
  std::memcpy(&value, orvanel_sector_star + offset, sizeof value);
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
  EXPECT_EQ(orvanel_sector_star_end - orvanel_sector_star, 66600);
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
  EXPECT_TRUE(std::all_of(orvanel_sector_star + 1064, orvanel_sector_star_end,
                          [](unsigned char index) { return index == 0 || index == 255; }));
}

}  // namespace
}  // namespace orvanel
