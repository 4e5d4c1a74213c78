// Tests which eyes give warnings.
#include "eye/plausibility.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/eye/eyes.h"

namespace orvanel::eye {
namespace {

TEST(Plausibility, PupilsUnlikeAnEyesAreDoubted) {
  EXPECT_EQ(EyeWarnings(PerfectEye(Millimetres(12.5))),
            std::vector<std::string>{"the pupil of 12.5 mm is unlike that of a human eye, which is 2 to 8 mm"});
  EXPECT_EQ(EyeWarnings(PerfectEye(Millimetres(0.49))).size(), 1U);
  EXPECT_TRUE(EyeWarnings(PerfectEye(Millimetres(0.51))).empty());
  EXPECT_TRUE(EyeWarnings(PerfectEye(Millimetres(11.5))).empty());
}

// So much defocus and astigmatism in dioptres over a pupil of 6 mm.
Eye EyeOf(double m, double j0, double j45) {
  Eye eye;
  eye.pupil = Millimetres(6.0);
  eye.coefficients = {kOsaConvention,
                      {0, 0, 0, -j45 * 9.0 / std::sqrt(24.0), -m * 9.0 / std::sqrt(48.0), -j0 * 9.0 / std::sqrt(24.0)}};
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
            "2 of 3 eyes are unlike a human eye; the first in line 3: the pupil of 13 mm is unlike that of a human "
            "eye, which is 2 to 8 mm");
}

}  // namespace
}  // namespace orvanel::eye
