// MAT files: what shows without decompressing them. read_back.py tests the rest.
#include "files/planes/mat.h"

#include <gtest/gtest.h>

#include "tests/files/planes/plane_sets.h"

namespace orvanel::files {
namespace {

TEST(Mat, HeaderIsThatOfVersionFiveWithoutADate) {
  const Plane samples = Ramp();
  const std::string bytes = EncodeMat(SetOfOne(samples));
  const std::string text = "MATLAB 5.0 MAT-file, created by orvanel " ORVANEL_VERSION;
  EXPECT_EQ(bytes.substr(0, 116), text + std::string(115 - text.size(), ' ') + '\0');
  EXPECT_EQ(bytes.substr(124, 4), std::string("\0\x01IM", 4));
}

TEST(Mat, TheSamePlanesGiveTheSameBytes) {
  const Plane samples = Ramp();
  EXPECT_EQ(EncodeMat(SetOfOne(samples)), EncodeMat(SetOfOne(samples)));
}

}  // namespace
}  // namespace orvanel::files
