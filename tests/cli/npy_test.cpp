// NPY files byte by byte.
#include "cli/npy.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvanel::cli {
namespace {

TEST(Npy, HeaderIsThatOfFormatOneAndEndsOnAMultipleOf64) {
  const std::string bytes = EncodeNpy({0.5, -2.0, 3.0, 0.25}, 2);
  ASSERT_EQ(bytes.size(), 128 + 4 * 8U);
  EXPECT_EQ(bytes.substr(0, 10), std::string("\x93NUMPY\x01\x00\x76\x00", 10));  // 0x76 = 128 - 10
  const std::string dictionary = "{'descr': '<f8', 'fortran_order': False, 'shape': (2, 2), }";
  EXPECT_EQ(bytes.substr(10, dictionary.size()), dictionary);
  EXPECT_EQ(bytes.substr(10 + dictionary.size(), 128 - 11 - dictionary.size()),
            std::string(128 - 11 - dictionary.size(), ' '));
  EXPECT_EQ(bytes[127], '\n');
}

TEST(Npy, NumbersAreLittleEndianInTheOrderOfThePlane) {
  const std::string bytes = EncodeNpy({0.5, -2.0, 3.0, std::numeric_limits<double>::quiet_NaN()}, 2);
  EXPECT_EQ(bytes.substr(128, 8), std::string("\0\0\0\0\0\0\xe0\x3f", 8));
  EXPECT_EQ(bytes.substr(136, 8), std::string("\0\0\0\0\0\0\0\xc0", 8));
  EXPECT_EQ(bytes.substr(144, 8), std::string("\0\0\0\0\0\0\x08\x40", 8));
  EXPECT_EQ(bytes.substr(152, 8), std::string("\0\0\0\0\0\0\xf8\x7f", 8));
}

}  // namespace
}  // namespace orvanel::cli
