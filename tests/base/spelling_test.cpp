// Tests the edit distance of words.
#include "base/spelling.h"

#include <gtest/gtest.h>

namespace orvanel {
namespace {

TEST(Spelling, DistanceCountsInsertionsDeletionsAndReplacements) {
  EXPECT_EQ(EditDistance("", "abc"), 3U);
  EXPECT_EQ(EditDistance("unit", "unit"), 0U);
  EXPECT_EQ(EditDistance("units", "unit"), 1U);
  EXPECT_EQ(EditDistance("kitten", "sitting"), 3U);
}

TEST(Spelling, NearestIsTheClosestWithinTheLimit) {
  constexpr const char* kKnown[] = {"unit", "order", "eye"};
  const auto one = [](std::size_t) -> std::size_t { return 1; };
  EXPECT_EQ(Nearest("ordr", kKnown, one), "order");
  EXPECT_EQ(Nearest("eyes", kKnown, one), "eye");
  EXPECT_EQ(Nearest("age", kKnown, one), std::nullopt);
  EXPECT_EQ(Nearest("a very long name of a column", kKnown, one), std::nullopt);
}

}  // namespace
}  // namespace orvanel
