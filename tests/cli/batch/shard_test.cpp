// Tests that every row is in exactly one shard.
#include "cli/batch/shard.h"

#include <gtest/gtest.h>

#include "base/error.h"

namespace orvanel::cli {
namespace {

TEST(Shard, IsReadFromItsText) { EXPECT_EQ(ParseShard("3/12"), (Shard{3, 12})); }

TEST(Shard, WhatIsNoneIsRefused) {
  for (const char* text : {"", "3", "/", "0/3", "4/3", "0/0", "1/0", "-1/3", "1/3x", "1.5/3", "1/ 3"}) {
    EXPECT_THROW(ParseShard(text), Error) << text;
  }
}

TEST(Shard, KnowsTheRowOfTheTable) {
  for (const std::size_t of : {1U, 2U, 5U}) {
    std::size_t own[5] = {};
    for (std::size_t row = 0; row < 60; ++row) {
      constexpr std::size_t kChunkRows = 3;
      for (std::size_t number = 1; number <= of; ++number) {
        const Shard shard{number, of};
        if (!Owns(shard, row / kChunkRows)) continue;
        EXPECT_EQ(RowOf(shard, kChunkRows, own[number - 1]++), row);
      }
    }
  }
}

TEST(Shard, RowsOfAllShardsTogetherAreTheTable) {
  for (const std::size_t rows : {0U, 1U, 4U, 5U, 37U, 100U}) {
    for (const std::size_t of : {1U, 2U, 3U, 7U}) {
      std::size_t sum = 0;
      for (std::size_t number = 1; number <= of; ++number) {
        const Shard shard{number, of};
        std::size_t counted = 0;
        for (std::size_t row = 0; row < rows; ++row) counted += Owns(shard, row / 5) ? 1 : 0;
        EXPECT_EQ(RowsOf(shard, 5, rows), counted) << rows << ' ' << number << '/' << of;
        sum += counted;
      }
      EXPECT_EQ(sum, rows);
    }
  }
}

}  // namespace
}  // namespace orvanel::cli
