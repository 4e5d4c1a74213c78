// Tests the line of progress in a terminal.
#include "cli/batch/rate.h"

#include <gtest/gtest.h>

namespace orvanel::cli {
namespace {

using Seconds = std::chrono::duration<double>;

TEST(Rate, TellsShareRateAndRemainingTime) {
  EXPECT_EQ(RateText(0.5, 0.0, 1200, Seconds(2.0)),
            "[###############...............] 50 %, 1200 eyes, 600/s, 0:00:02 left");
  EXPECT_EQ(RateText(0.25, 0.0, 100, Seconds(3725.0)),
            "[#######.......................] 25 %, 100 eyes, 0.0268/s, 3:06:15 left");
}

TEST(Rate, WhatEarlierRunsHaveDoneCountsForTheShareAlone) {
  EXPECT_EQ(RateText(0.75, 0.5, 10, Seconds(10.0)),
            "[######################........] 75 %, 10 eyes, 1/s, 0:00:10 left");
}

TEST(Rate, JudgesNothingTooEarlyAndNoTableWithoutLength) {
  EXPECT_EQ(RateText(0.1, 0.0, 3, Seconds(0.2)), "[###...........................] 10 %, 3 eyes");
  EXPECT_EQ(RateText(std::nullopt, 0.0, 300, Seconds(2.0)), "300 eyes, 150/s");
  EXPECT_EQ(RateText(std::nullopt, 0.0, 4243, Seconds(2.0)), "4243 eyes, 2122/s");
}

}  // namespace
}  // namespace orvanel::cli
