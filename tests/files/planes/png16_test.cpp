// Tests 16-bit PNG files with an independent decoder.
#include "files/planes/png16.h"

#include <gtest/gtest.h>
#include <stb_image.h>

#include "tests/files/planes/plane_sets.h"

namespace orvanel::files {
namespace {

TEST(Png16, SamplesAreRoundedToSixteenBitsAndClipped) {
  Plane samples = Ramp();
  samples[1] = 1.0 + 0x1p-52;
  samples[2] = -0.25;
  const std::string bytes = EncodePng16(SetOfOne(samples));
  int width = 0, height = 0, channels = 0;
  stbi_us* const pixels = stbi_load_16_from_memory(reinterpret_cast<const stbi_uc*>(bytes.data()),
                                                   static_cast<int>(bytes.size()), &width, &height, &channels, 0);
  ASSERT_NE(pixels, nullptr);
  EXPECT_EQ(width, 256);
  EXPECT_EQ(height, 256);
  EXPECT_EQ(channels, 1);
  EXPECT_EQ(pixels[0], 0);
  EXPECT_EQ(pixels[1], 65535);
  EXPECT_EQ(pixels[2], 0);
  for (int k = 3; k < 65536; ++k) ASSERT_EQ(pixels[k], static_cast<int>(65535.0 * k / 65536.0 + 0.5)) << k;
  stbi_image_free(pixels);
}

}  // namespace
}  // namespace orvanel::files
