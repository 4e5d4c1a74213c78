// Tests the comparison of drawn and requested rings.
#include "evaluation/rings.h"

#include <gtest/gtest.h>

namespace orvanel::evaluation {
namespace {

Ring RingOf(double asked, double drawn, int diameter = 20, Gap gap = Gap::kUp) {
  return {{asked, gap}, ArcMinutes(0.1), diameter, drawn, {}, {}};
}

TEST(Rings, AreFarOffBeyondATenthEitherWay) {
  EXPECT_FALSE(IsFarOff(RingOf(1.0, 1.0999)));
  EXPECT_TRUE(IsFarOff(RingOf(1.0, 1.1001)));
  EXPECT_FALSE(IsFarOff(RingOf(1.0, 0.9001)));
  EXPECT_TRUE(IsFarOff(RingOf(1.0, 0.8999)));
  EXPECT_EQ(DeviationText(RingOf(2.0, 2.25)), "12.5 % above");
  EXPECT_EQ(DeviationText(RingOf(2.0, 1.75)), "12.5 % below");
}

TEST(Rings, ThoseOfOneDiameterAndGapAreShownOnce) {
  const std::vector<Ring> rings = {RingOf(2.4, 2.5), RingOf(2.4, 2.5, 20, Gap::kLeft), RingOf(1.0, 1.1, 45),
                                   RingOf(2.5, 2.5)};
  const std::vector<ShownRing> shown = ShownRings(rings);
  ASSERT_EQ(shown.size(), 3U);
  EXPECT_EQ(shown[0].ring, &rings[0]);
  EXPECT_EQ(RequestedText(shown[0]), "requested 2.4, 2.5");
  EXPECT_EQ(RequestedText(shown[1]), "requested 2.4");
  EXPECT_EQ(shown[2].ring, &rings[2]);
}

}  // namespace
}  // namespace orvanel::evaluation
