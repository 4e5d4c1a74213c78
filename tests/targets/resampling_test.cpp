// Tests the overlaps of new and original samples.
#include "targets/resampling.h"

#include <gtest/gtest.h>

namespace orvanel::targets {
namespace {

TEST(Resampling, ASampleOverSeveralTakesEachByItsPart) {
  const std::vector<Share> shares = Shares(1.5, 3.5, 6);
  ASSERT_EQ(shares.size(), 3U);
  EXPECT_EQ(shares[0].source, 1U);
  EXPECT_EQ(shares[0].weight, 0.25);
  EXPECT_EQ(shares[1].source, 2U);
  EXPECT_EQ(shares[1].weight, 0.5);
  EXPECT_EQ(shares[2].source, 3U);
  EXPECT_EQ(shares[2].weight, 0.25);
}

TEST(Resampling, ASampleWithinOneTakesItWhole) {
  const std::vector<Share> shares = Shares(2.25, 2.5, 6);
  ASSERT_EQ(shares.size(), 1U);
  EXPECT_EQ(shares[0].source, 2U);
  EXPECT_EQ(shares[0].weight, 1.0);
}

TEST(Resampling, WhatLiesOutsideIsMissing) {
  const std::vector<Share> before = Shares(-0.75, 0.25, 6), behind = Shares(5.5, 7.5, 6);
  ASSERT_EQ(before.size(), 1U);
  EXPECT_EQ(before[0].source, 0U);
  EXPECT_EQ(before[0].weight, 0.25);
  ASSERT_EQ(behind.size(), 1U);
  EXPECT_EQ(behind[0].source, 5U);
  EXPECT_EQ(behind[0].weight, 0.25);
  EXPECT_TRUE(Shares(-3.0, -1.0, 6).empty());
  EXPECT_TRUE(Shares(6.0, 7.0, 6).empty());
}

}  // namespace
}  // namespace orvanel::targets
