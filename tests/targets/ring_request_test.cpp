// Tests the words for the gap of a ring.
#include "targets/ring_request.h"

#include <gtest/gtest.h>

namespace orvanel::targets {
namespace {

TEST(RingRequest, GapsHaveTheNumbersOfTheLibraryAndTheirWords) {
  EXPECT_STREQ(Word(Gap{1}), "down");
  EXPECT_STREQ(Word(Gap{2}), "up");
  EXPECT_STREQ(Word(Gap{3}), "right");
  EXPECT_STREQ(Word(Gap{4}), "left");
}

}  // namespace
}  // namespace orvanel::targets
