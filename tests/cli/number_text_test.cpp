// Numbers as text.
#include "cli/number_text.h"

#include <gtest/gtest.h>

namespace orvanel::cli {
namespace {

TEST(NumberText, KeepsTheSignificantDigitsAskedFor) {
  EXPECT_EQ(Text(178.4338, 5), "178.43");
  EXPECT_EQ(Text(0.0578349, 3), "0.0578");
  EXPECT_EQ(Text(6.0, 4), "6");
  EXPECT_EQ(Text(-2.5, 3), "-2.5");
}

TEST(NumberText, ShortestReadsBackAsTheSameNumber) {
  EXPECT_EQ(ShortestText(0.63), "0.63");
  EXPECT_EQ(ShortestText(1.0), "1");
  EXPECT_EQ(std::stod(ShortestText(1.0 / 3.0)), 1.0 / 3.0);
}

}  // namespace
}  // namespace orvanel::cli
