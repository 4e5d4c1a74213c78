// Tests NPY files byte by byte.
#include "files/planes/npy.h"

#include <gtest/gtest.h>

#include "tests/files/planes/plane_sets.h"

namespace orvanel::files {
namespace {

constexpr std::size_t kHeader = 128;

TEST(Npy, HeaderIsThatOfFormatOneAndEndsOnAMultipleOf64) {
  const Plane samples = Ramp();
  const std::string bytes = EncodeNpy(SetOfOne(samples));
  ASSERT_EQ(bytes.size(), kHeader + 65536 * 8U);
  EXPECT_EQ(bytes.substr(0, 10), std::string("\x93NUMPY\x01\x00\x76\x00", 10));  // 0x76 = 128 - 10
  const std::string dictionary = "{'descr': '<f8', 'fortran_order': False, 'shape': (256, 256), }";
  EXPECT_EQ(bytes.substr(10, dictionary.size()), dictionary);
  EXPECT_EQ(bytes.substr(10 + dictionary.size(), kHeader - 11 - dictionary.size()),
            std::string(kHeader - 11 - dictionary.size(), ' '));
  EXPECT_EQ(bytes[kHeader - 1], '\n');
}

TEST(Npy, NumbersAreLittleEndianInTheOrderOfThePlane) {
  Plane samples = Ramp();
  samples[1] = -2.0;
  samples[256] = 3.0;
  const std::string bytes = EncodeNpy(SetOfOne(samples));
  EXPECT_EQ(bytes.substr(kHeader, 8), std::string("\0\0\0\0\0\0\xf8\x7f", 8));
  EXPECT_EQ(bytes.substr(kHeader + 8, 8), std::string("\0\0\0\0\0\0\0\xc0", 8));
  EXPECT_EQ(bytes.substr(kHeader + 8 * 256, 8), std::string("\0\0\0\0\0\0\x08\x40", 8));
}

TEST(Npy, ShapeIsRowsThenColumns) {
  const Plane samples(3, 2, 1.0);
  const std::string bytes = EncodeNpy(SetOfOne(samples));
  EXPECT_NE(bytes.find("'shape': (2, 3), }"), std::string::npos) << bytes.substr(10, 80);
  EXPECT_EQ(bytes.size(), kHeader + 6 * 8U);
}

}  // namespace
}  // namespace orvanel::files
