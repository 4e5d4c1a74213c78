// Tests the text of CSV files of planes.
#include "files/planes/csv.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/files/planes/plane_sets.h"

namespace orvanel::files {
namespace {

TEST(Csv, HasALineForEachRowAndNoHeader) {
  const Plane samples = Ramp();
  const std::string text = EncodeCsv(SetOfOne(samples));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 256);
  EXPECT_EQ(std::count(text.begin(), text.end(), ','), 256 * 255);
  EXPECT_TRUE(text.starts_with("NaN,1.52587890625e-05,3.0517578125e-05,")) << text.substr(0, 60);
  EXPECT_NE(text.find("\n0.00390625,"), std::string::npos);  // row 1 begins with sample 256
  EXPECT_TRUE(text.ends_with(",0.9999847412109375\n"));
}

TEST(Csv, NumbersReadBackTheSame) {
  Plane samples = Ramp();
  samples[1] = 0.1 + 0.2;
  EXPECT_EQ(EncodeCsv(SetOfOne(samples)).substr(4, 20), "0.30000000000000004,");
}

TEST(Csv, LinesHaveAsManyNumbersAsThePlaneHasColumns) {
  const Plane samples(3, 2, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0});
  EXPECT_EQ(EncodeCsv(SetOfOne(samples)), "1,2,3\n4,5,6\n");
}

}  // namespace
}  // namespace orvanel::files
