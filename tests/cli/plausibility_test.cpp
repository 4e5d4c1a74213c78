// Which inputs are doubted, and which are not.
#include "cli/plausibility.h"

#include <gtest/gtest.h>

#include <cmath>

#include "cli/eyes/eye_file.h"
#include "tests/cli/simulated_eyes.h"

namespace orvanel::cli {
namespace {

std::vector<std::string> WarningsOf(const Eye& eye, const std::vector<RingRequest>& rings) {
  return ResultsOf(eye, rings).warnings;
}

TEST(Plausibility, ShippedEyesAreNotDoubted) {
  for (const char* name : {"/standard_observer_6mm.json", "/watson_2015_example_6mm.json", "/perfect_3mm.json"}) {
    EXPECT_TRUE(WarningsOf(ReadEyeFile(ORVANEL_EYES + std::string(name)), {{0.4, Gap::kUp}}).empty()) << name;
  }
}

TEST(Plausibility, PupilsUnlikeAnEyesAreDoubted) {
  EXPECT_EQ(WarningsOf(PerfectEye(Millimetres(12.5)), {{1.3, Gap::kUp}}),
            std::vector<std::string>{"the pupil of 12.5 mm is unlike a human eye's, which measures 2 to 8 mm"});
  EXPECT_EQ(EyeWarnings(PerfectEye(Millimetres(0.49))).size(), 1U);
  EXPECT_TRUE(EyeWarnings(PerfectEye(Millimetres(0.51))).empty());
  EXPECT_TRUE(WarningsOf(PerfectEye(Millimetres(11.5)), {{1.3, Gap::kUp}}).empty());
}

// So much defocus and astigmatism in dioptres over a pupil of 6 mm.
Eye EyeOf(double m, double j0, double j45) {
  Eye eye;
  eye.pupil = Millimetres(6.0);
  eye.convention = kOsaConvention;
  eye.coefficients = {0, 0, 0, -j45 * 9.0 / std::sqrt(24.0), -m * 9.0 / std::sqrt(48.0), -j0 * 9.0 / std::sqrt(24.0)};
  return eye;
}

TEST(Plausibility, RefractionsBeyondThirtyDioptresInAnyMeridianAreDoubted) {
  EXPECT_TRUE(EyeWarnings(EyeOf(-29.9, 0.0, 0.0)).empty());
  EXPECT_TRUE(EyeWarnings(EyeOf(24.9, 3.0, -4.0)).empty());
  EXPECT_EQ(EyeWarnings(EyeOf(-31.0, 0.0, 0.0)),
            std::vector<std::string>{"the refraction of -31.0 D in its strongest meridian is beyond 30 D; check unit, "
                                     "normalisation and pupil"});
  EXPECT_EQ(EyeWarnings(EyeOf(25.1, 3.0, -4.0)).size(), 1U);
  EXPECT_EQ(EyeWarnings(EyeOf(-25.1, -4.0, 3.0)).size(), 1U);
}

TEST(Plausibility, OfATableIsOneSentence) {
  TableDoubts doubts;
  doubts.Add(EyeOf(-2.0, 0.5, 0.0), "line 2");
  EXPECT_EQ(doubts.Summary(), "");
  doubts.Add(PerfectEye(Millimetres(13.0)), "line 3");
  doubts.Add(EyeOf(-40.0, 0.5, 0.0), "line 4");
  EXPECT_EQ(doubts.Summary(),
            "2 of 3 eyes are unlike a human's; the first in line 3: the pupil of 13 mm is unlike a human eye's, which "
            "measures 2 to 8 mm");
}

TEST(Plausibility, WavefrontsTooSteepForTheSamplesAreDoubted) {
  Eye eye = AsymmetricEye();
  eye.coefficients[4] = 4.5;
  const std::vector<std::string> warnings = WarningsOf(eye, {{1.3, Gap::kUp}});
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_NE(warnings[0].find("% of the pupil the wavefront changes by more than half a wave"), std::string::npos);
}

TEST(Plausibility, RingsThatFillTheFieldAreDoubtedOnceForAnAcuity) {
  const std::vector<std::string> warnings =
      WarningsOf(AsymmetricEye(), {{0.1, Gap::kUp}, {0.1, Gap::kLeft}, {0.8, Gap::kLeft}});
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_TRUE(warnings[0].starts_with("the ring of acuity 0.1 is 445 samples wide")) << warnings[0];
  EXPECT_TRUE(warnings[0].ends_with("rings fit from acuity 0.21 on")) << warnings[0];
  EXPECT_TRUE(WarningsOf(AsymmetricEye(), {{0.21, Gap::kUp}}).empty());
  EXPECT_TRUE(WarningsOf(AsymmetricEye(), {{1e-9, Gap::kUp}}).back().ends_with("rings fit from acuity 0.21 on"));
}

TEST(Plausibility, RingsFarFromWhatWasAskedForAreDoubtedOnceForAnAcuity) {
  // 44.56 samples over the acuity: at 4.5 mm, 1.7 becomes 25, 2.0 becomes 20 and 2.5 becomes 15.
  EXPECT_TRUE(WarningsOf(AsymmetricEye(), {{1.7, Gap::kUp}, {0.21, Gap::kUp}}).empty());
  const std::vector<std::string> warnings =
      WarningsOf(AsymmetricEye(), {{2.0, Gap::kUp}, {2.0, Gap::kLeft}, {2.5, Gap::kUp}});
  ASSERT_EQ(warnings.size(), 2U);
  EXPECT_EQ(warnings[0],
            "the ring asked for with acuity 2 is drawn with acuity 2.23, 11.4 % above that: rings have a multiple of 5 "
            "samples, this one 20, and its files are named by the acuity drawn");
  EXPECT_NE(warnings[1].find("acuity 2.5 is drawn with acuity 2.97, 18.8 % above that"), std::string::npos)
      << warnings[1];
}

}  // namespace
}  // namespace orvanel::cli
