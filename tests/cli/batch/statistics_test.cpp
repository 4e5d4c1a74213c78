// Tests statistics of small tables against values computed by hand.
#include "cli/batch/statistics.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_files.h"

namespace orvanel::cli {
namespace {

TEST(Statistics, OfAFewNumbers) {
  std::vector<double> values = {4.0, 1.0, 3.0, 2.0, 10.0};
  const Statistics statistics = StatisticsOf(values);
  EXPECT_EQ(statistics.count, 5U);
  EXPECT_EQ(statistics.mean, 4.0);
  EXPECT_DOUBLE_EQ(statistics.deviation, 3.5355339059327378);  // the root of 50 / 4
  EXPECT_EQ(statistics.percentiles[0], 1.0);
  EXPECT_DOUBLE_EQ(statistics.percentiles[1], 1.2);
  EXPECT_EQ(statistics.percentiles[2], 2.0);
  EXPECT_EQ(statistics.percentiles[3], 3.0);
  EXPECT_EQ(statistics.percentiles[4], 4.0);
  EXPECT_DOUBLE_EQ(statistics.percentiles[5], 8.8);
  EXPECT_EQ(statistics.percentiles[6], 10.0);
}

TEST(Statistics, WhatIsTheSameEverywhereHasNoDeviation) {
  std::vector<double> values(1000, 0.1);
  const Statistics statistics = StatisticsOf(values);
  EXPECT_EQ(statistics.mean, 0.1);
  EXPECT_EQ(statistics.deviation, 0.0);
}

TEST(Statistics, OfOneNumberAndOfNone) {
  std::vector<double> one = {0.25}, none;
  EXPECT_EQ(StatisticsOf(one).deviation, 0.0);
  EXPECT_EQ(StatisticsOf(one).percentiles.back(), 0.25);
  EXPECT_EQ(StatisticsOf(none).count, 0U);
}

TEST(Statistics, LeaveOutRowsWithAnErrorAndAxes) {
  const TemporaryFolder folder;
  const std::string file = (folder / "r.csv").string();
  Write(file, "id,a,b_axis_deg,c,error\n1,1,90,5,\n2,,,,\"line 3: no, not\"\n\"3\n3\",2,10,7,\n");
  EXPECT_EQ(
      StatisticsText(file, {"a", "b_axis_deg", "c"}),
      "m       eyes       mean         SD   smallest        5 %       25 %       50 %       75 %       95 %    "
      "largest\n"
      "a          2        1.5    0.70711          1       1.05       1.25        1.5       1.75       1.95       "
      "   2\n"
      "c          2          6     1.4142          5        5.1        5.5          6        6.5        6.9       "
      "   7\n");
}

TEST(Statistics, LeaveOutMissingValuesAndCountRowsWithANote) {
  const TemporaryFolder folder;
  const std::string file = (folder / "r.csv").string();
  Write(file, "id,a,c,quality_note,error\n1,1,5,,\n2,,6,\"a: not, here\",\n3,2,7,,\n4,,,,an error\n");
  const std::string text = StatisticsText(file, {"a", "c"});
  EXPECT_NE(text.find("\na          2        1.5"), std::string::npos) << text;
  EXPECT_NE(text.find("\nc          3          6"), std::string::npos) << text;
  EXPECT_EQ(CountNoted(file), 1U);
  Write(file, "id,a,error\n1,1,\n");
  EXPECT_EQ(CountNoted(file), 0U);
}

}  // namespace
}  // namespace orvanel::cli
