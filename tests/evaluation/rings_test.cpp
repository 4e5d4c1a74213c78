// Rings beside what was asked for.
#include "evaluation/rings.h"

#include <gtest/gtest.h>

#include <set>

#include "models/sampling.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::evaluation {
namespace {

Ring RingOf(double asked, double drawn, int diameter = 20, Gap gap = Gap::kUp) {
  return {{asked, gap}, diameter, drawn, {}, {}};
}

TEST(Rings, FilesAreNamedByTheAcuityDrawn) {
  EXPECT_EQ(RingStem(0.49507, Gap::kRight), "ring_acuity-0.4951_gap-right");
  EXPECT_EQ(RingStem(2.0, Gap::kDown), "ring_acuity-2_gap-down");
  const Ring ring = ResultsOf(AsymmetricEye(), {{0.7, Gap::kLeft}}).simulation.rings[0];
  EXPECT_EQ(RingStem(Millimetres(4.5), ring.request), RingStem(ring.effectiveAcuity, Gap::kLeft));
  EXPECT_NE(ring.effectiveAcuity, 0.7);
}

TEST(Rings, HaveNamesOfTheirOwnAtEveryDiameterUpToFiveThousandSamples) {
  for (const double pupil : {0.5, 3.0, 5.3, 7.537, 12.0}) {
    std::set<std::string> stems;
    for (int diameter = 5; diameter < 5000; diameter += 5) {
      const std::string stem = RingStem(EffectiveAcuity(Millimetres(pupil), diameter), Gap::kUp);
      EXPECT_TRUE(stems.insert(stem).second) << stem;
    }
  }
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
  EXPECT_EQ(AskedText(shown[0]), "asked for 2.4, 2.5");
  EXPECT_EQ(AskedText(shown[1]), "asked for 2.4");
  EXPECT_EQ(shown[2].ring, &rings[2]);
}

}  // namespace
}  // namespace orvanel::evaluation
