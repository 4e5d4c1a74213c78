// Tests that lines have no repetition and all orders, and that seeds give the same lines everywhere.
#include "targets/charts/letter_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>

namespace orvanel::targets::charts {
namespace {

TEST(LetterOrder, NoLetterComesTwiceInALine) {
  for (std::uint32_t line = 0; line < 2000; ++line) {
    const std::vector<int> order = RandomLine(10, 5, 7, line);
    ASSERT_EQ(order.size(), 5U);
    EXPECT_EQ(std::set<int>(order.begin(), order.end()).size(), 5U);
    EXPECT_GE(*std::min_element(order.begin(), order.end()), 0);
    EXPECT_LT(*std::max_element(order.begin(), order.end()), 10);
  }
}

TEST(LetterOrder, WithFewKindsNeighboursDifferAndCountsAreEven) {
  for (std::uint32_t line = 0; line < 2000; ++line) {
    const std::vector<int> order = RandomLine(4, 10, 7, line);
    std::array<int, 4> counts{};
    for (std::size_t i = 0; i < order.size(); ++i) {
      ++counts[static_cast<std::size_t>(order[i])];
      if (i == 0) continue;
      EXPECT_NE(order[i], order[i - 1]);
    }
    EXPECT_LE(*std::max_element(counts.begin(), counts.end()) - *std::min_element(counts.begin(), counts.end()), 1);
  }
  EXPECT_EQ(RandomLine(1, 3, 7, 0), (std::vector<int>{0, 0, 0}));
}

TEST(LetterOrder, EachLetterComesEquallyOftenInEachPlace) {
  constexpr int kLines = 20000;
  std::array<std::array<int, 10>, 5> counts{};
  for (std::uint32_t line = 0; line < kLines; ++line) {
    const std::vector<int> order = RandomLine(10, 5, 99, line);
    for (std::size_t i = 0; i < 5; ++i) ++counts[i][static_cast<std::size_t>(order[i])];
  }
  // Chi squared with nine degrees of freedom exceeds 33.7 once in ten thousand.
  for (const auto& place : counts) {
    double chi = 0.0;
    for (const int count : place) chi += (count - kLines / 10.0) * (count - kLines / 10.0) / (kLines / 10.0);
    EXPECT_LT(chi, 33.7);
  }
}

TEST(LetterOrder, SeedAndLineChooseTheOrder) {
  std::set<std::vector<int>> orders;
  for (std::uint64_t seed : {0ULL, 1ULL, 1ULL << 32U, 5ULL << 32U}) {
    for (std::uint32_t line = 0; line < 4; ++line) orders.insert(RandomLine(10, 10, seed, line));
  }
  EXPECT_EQ(orders.size(), 16U);
  EXPECT_EQ(RandomLine(10, 10, 3, 2), RandomLine(10, 10, 3, 2));
  // A longer line begins in the same way.
  const std::vector<int> longer = RandomLine(10, 9, 3, 2), shorter = RandomLine(10, 4, 3, 2);
  EXPECT_TRUE(std::equal(shorter.begin(), shorter.end(), longer.begin()));
}

TEST(LetterOrder, IsTheSameEverywhere) {
  EXPECT_EQ(RandomLine(10, 5, 1, 0), (std::vector<int>{4, 2, 3, 9, 0}));
  EXPECT_EQ(RandomLine(4, 6, 0x123456789abcdefU, 3), (std::vector<int>{2, 3, 0, 1, 3, 1}));
}

}  // namespace
}  // namespace orvanel::targets::charts
