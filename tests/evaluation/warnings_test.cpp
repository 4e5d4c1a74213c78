// Tests which results give warnings.
#include "evaluation/warnings.h"

#include <gtest/gtest.h>

#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::evaluation {
namespace {

std::vector<std::string> WarningsOf(const Eye& eye, const std::vector<RingRequest>& rings) {
  return Simulated(eye, rings).warnings;
}

TEST(Warnings, APsfWindowThatLosesLightIsDoubted) {
  Eye eye = AsymmetricEye();
  SetTerm(eye, 4, 1.5);
  PhysicalSettings settings;
  settings.field = ArcMinutes(5.0);
  const std::vector<std::string> warnings = PhysicallySimulated(eye, {}, settings).warnings;
  ASSERT_FALSE(warnings.empty());
  EXPECT_TRUE(warnings.back().ends_with("% of the light; use a larger field")) << warnings.back();
  EXPECT_TRUE(PhysicallySimulated(PerfectEye(Millimetres(3.0)), {}).warnings.empty());
}

// lambda/D of 3 mm at 555 nm is 0.636'.
TEST(Warnings, PsfSamplesThatMissDetailsAreDoubted) {
  PhysicalSettings settings;
  settings.field = ArcMinutes(20.0);
  settings.samples = 62;
  const Eye eye = PerfectEye(Millimetres(3.0));
  const std::vector<std::string> warnings = PhysicallySimulated(eye, {}, settings).warnings;
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_TRUE(warnings[0].starts_with("the samples of the PSF are 0.323 arc minutes apart")) << warnings[0];
  settings.samples = 63;
  EXPECT_TRUE(PhysicallySimulated(eye, {}, settings).warnings.empty());
}

TEST(Warnings, WavefrontsTooSteepForTheSamplesAreDoubted) {
  Eye eye = AsymmetricEye();
  SetTerm(eye, 4, 4.5);
  const std::vector<std::string> warnings = WarningsOf(eye, {{1.3, Gap::kUp}});
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_NE(warnings[0].find("% of the pupil the wavefront changes by more than half a wave"), std::string::npos);
}

TEST(Warnings, RingsThatFillTheFieldAreDoubtedOnceForAnAcuity) {
  const std::vector<std::string> warnings =
      WarningsOf(AsymmetricEye(), {{0.1, Gap::kUp}, {0.1, Gap::kLeft}, {0.8, Gap::kLeft}});
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_TRUE(warnings[0].starts_with("the ring of acuity 0.1 is 445 samples wide")) << warnings[0];
  EXPECT_TRUE(warnings[0].ends_with("use an acuity of at least 0.21")) << warnings[0];
  EXPECT_TRUE(WarningsOf(AsymmetricEye(), {{0.21, Gap::kUp}}).empty());
  EXPECT_TRUE(WarningsOf(AsymmetricEye(), {{1e-9, Gap::kUp}}).back().ends_with("use an acuity of at least 0.21"));
}

TEST(Warnings, RingsFarFromWhatWasAskedForAreDoubtedOnceForAnAcuity) {
  // 44.56 samples over the acuity: at 4.5 mm, 1.7 becomes 25, 2.0 becomes 20 and 2.5 becomes 15.
  EXPECT_TRUE(WarningsOf(AsymmetricEye(), {{1.7, Gap::kUp}, {0.21, Gap::kUp}}).empty());
  const std::vector<std::string> warnings =
      WarningsOf(AsymmetricEye(), {{2.0, Gap::kUp}, {2.0, Gap::kLeft}, {2.5, Gap::kUp}});
  ASSERT_EQ(warnings.size(), 2U);
  EXPECT_EQ(warnings[0],
            "the ring requested with acuity 2 is drawn with acuity 2.23, 11.4 % above that: the diameter of a ring is "
            "a multiple of 5 samples, here 20; the names of its files have the acuity drawn");
  EXPECT_NE(warnings[1].find("acuity 2.5 is drawn with acuity 2.97, 18.8 % above that"), std::string::npos)
      << warnings[1];
}

}  // namespace
}  // namespace orvanel::evaluation
