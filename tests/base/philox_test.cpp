// Tests the generator of random integers against published vectors.
#include "base/philox.h"

#include <gtest/gtest.h>

namespace orvanel {
namespace {

TEST(Philox, GivesThePublishedVectors) {
  // Of the authors' own collection, Random123, kat_vectors.
  EXPECT_EQ(Philox({0, 0, 0, 0}, {0, 0}), (PhiloxCounter{0x6627e8d5, 0xe169c58d, 0xbc57ac4c, 0x9b00dbd8}));
  EXPECT_EQ(Philox({0xffffffff, 0xffffffff, 0xffffffff, 0xffffffff}, {0xffffffff, 0xffffffff}),
            (PhiloxCounter{0x408f276d, 0x41c83b0e, 0xa20bc7c6, 0x6d5451fd}));
  EXPECT_EQ(Philox({0x243f6a88, 0x85a308d3, 0x13198a2e, 0x03707344}, {0xa4093822, 0x299f31d0}),
            (PhiloxCounter{0xd16cfe09, 0x94fdcceb, 0x5001e420, 0x24126ea1}));
}

}  // namespace
}  // namespace orvanel
