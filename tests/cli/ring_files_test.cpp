// Tests that names of rings have the acuity drawn and are unique.
#include "cli/ring_files.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "models/sampling.h"

namespace orvanel::cli {
namespace {

TEST(RingFiles, AreNamedByTheAcuityDrawn) {
  EXPECT_EQ(RingStem(0.49507, Gap::kRight), "ring_acuity-0.4951_gap-right");
  EXPECT_EQ(RingStem(2.0, Gap::kDown), "ring_acuity-2_gap-down");
  const double drawn = EffectiveAcuity(Millimetres(4.5), RingDiameter(Millimetres(4.5), 0.7));
  Request request;
  request.pupil = Millimetres(4.5);
  request.model = ModelKind::kClassic;
  EXPECT_EQ(RingStem(request, {0.7, Gap::kLeft}), RingStem(drawn, Gap::kLeft));
  EXPECT_NE(drawn, 0.7);
}

TEST(RingFiles, OfThePhysicalModelAreDrawnAtTheAcuityRequested) {
  Request request;
  request.pupil = Millimetres(4.5);
  request.model = ModelKind::kPhysical;
  EXPECT_EQ(RingStem(request, {0.7, Gap::kLeft}), "ring_acuity-0.7_gap-left");
}

TEST(RingFiles, HaveNamesOfTheirOwnAtEveryDiameterUpToFiveThousandSamples) {
  for (const double pupil : {0.5, 3.0, 5.3, 7.537, 12.0}) {
    std::set<std::string> stems;
    for (int diameter = 5; diameter < 5000; diameter += 5) {
      const std::string stem = RingStem(EffectiveAcuity(Millimetres(pupil), diameter), Gap::kUp);
      EXPECT_TRUE(stems.insert(stem).second) << stem;
    }
  }
}

}  // namespace
}  // namespace orvanel::cli
