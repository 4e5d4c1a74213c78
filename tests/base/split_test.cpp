// Lists are split at every comma, and at nothing else.
#include "base/split.h"

#include <gtest/gtest.h>

namespace orvanel {
namespace {

using Parts = std::vector<std::string_view>;

TEST(Split, GivesThePartsBetweenTheCommas) {
  EXPECT_EQ(Split("psf,mtf"), (Parts{"psf", "mtf"}));
  EXPECT_EQ(Split("psf"), Parts{"psf"});
  EXPECT_EQ(Split(" 1 ; 2, 3"), (Parts{" 1 ; 2", " 3"}));
}

TEST(Split, KeepsEmptyParts) {
  EXPECT_EQ(Split(""), Parts{""});
  EXPECT_EQ(Split(","), (Parts{"", ""}));
  EXPECT_EQ(Split("a,,b,"), (Parts{"a", "", "b", ""}));
}

}  // namespace
}  // namespace orvanel
