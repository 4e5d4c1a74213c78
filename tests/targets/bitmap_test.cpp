// Tests decoding bitmaps with asymmetric pixels and colours.
#include "targets/bitmap.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

namespace orvanel::targets {
namespace {

constexpr std::size_t kSide = 256, kColours = 40, kPixels = kColours + 4 * 256;

// A bitmap with the colour table (i, 255 - i, 7 i mod 256, 0), blue first.
std::vector<unsigned char> Bitmap() {
  std::vector<unsigned char> bitmap(kPixels + kSide * kSide, 0);
  for (std::size_t i = 0; i < 256; ++i) {
    bitmap[kColours + 4 * i] = static_cast<unsigned char>(i);
    bitmap[kColours + 4 * i + 1] = static_cast<unsigned char>(255 - i);
    bitmap[kColours + 4 * i + 2] = static_cast<unsigned char>(7 * i);
  }
  return bitmap;
}

TEST(Bitmap, HasItsBottomRowFirst) {
  std::vector<unsigned char> bitmap = Bitmap();
  bitmap[kPixels + 3] = 200;                // column 3 of the bottom row
  bitmap[kPixels + 255 * kSide + 17] = 90;  // column 17 of the top row
  std::vector<double> samples(kSide * kSide, -1.0);
  DecodeBitmap(bitmap.data(), samples.data());
  EXPECT_EQ(samples[255 * kSide + 3], 200 * kByteToUnit);
  EXPECT_EQ(samples[17], 90 * kByteToUnit);
  EXPECT_EQ(samples[3], 0.0);
}

TEST(Bitmap, SamplesAreTheBlueOfTheColourTable) {
  std::vector<unsigned char> bitmap = Bitmap();
  bitmap[kColours + 4 * 31] = 255;  // the table decides, not the index
  bitmap[kPixels] = 31;
  std::vector<double> samples(kSide * kSide, -1.0);
  DecodeBitmap(bitmap.data(), samples.data());
  EXPECT_EQ(samples[255 * kSide], 1.0);
}

}  // namespace
}  // namespace orvanel::targets
