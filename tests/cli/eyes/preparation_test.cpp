// What is done to an eye, in which order.
#include "cli/eyes/preparation.h"

#include <gtest/gtest.h>

#include "cli/error.h"
#include "cli/pupil_rescale.h"

namespace orvanel::cli {
namespace {

Eye Measured() {
  Eye eye;
  eye.pupil = Millimetres(6.0);
  eye.side = Side::kOs;
  eye.convention = {Unit::kNanometres, Nanometres(), Normalisation::kNone, Order::kNoll, YAxis::kDown};
  eye.coefficients = {1, 2, 3, 40, 300, -20, 7, 80, -9, 10, 0, 0, 55};
  return eye;
}

TEST(Preparation, WithNothingToDoChangesNoBit) {
  Preparation same;
  same.pupil = Millimetres(6.0);
  same.mirror = Side::kOs;
  EXPECT_EQ(Prepared(Measured(), {}).coefficients, Measured().coefficients);
  EXPECT_EQ(Prepared(Measured(), same).coefficients, Measured().coefficients);
  EXPECT_TRUE(Changes(Measured(), same).empty());
}

TEST(Preparation, DoesAllThreeInTheEyesOwnConvention) {
  Preparation all;
  all.pupil = Millimetres(4.0);
  all.mirror = Side::kOd;
  all.refraction = PowerVector{Dioptres(-1.0), Dioptres(0.25), Dioptres(0.5)};
  const Eye eye = Prepared(Measured(), all);
  EXPECT_EQ(eye.pupil, Millimetres(4.0));
  EXPECT_EQ(eye.side, Side::kOd);
  EXPECT_EQ(eye.convention, Measured().convention);
  const Coefficients osa = OsaCoefficients(Measured());
  const Coefficients expected =
      Mirrored(Rescaled(WithRefraction(osa, Millimetres(6.0), *all.refraction), Millimetres(4.0) / Millimetres(6.0)));
  const Coefficients seen = OsaCoefficients(eye);
  ASSERT_EQ(seen.size(), expected.size());
  for (std::size_t j = 0; j < seen.size(); ++j) EXPECT_NEAR(seen[j], expected[j], 1e-15) << j;
  EXPECT_EQ(Changes(Measured(), all),
            (std::vector<std::string>{"refraction of -0.44 D sphere, -1.12 D cylinder, axis 32 added",
                                      "rescaled from 6 to 4 mm", "mirrored from OS to OD"}));
}

TEST(Preparation, ALargerPupilIsRefusedUnlessExtrapolationIsAllowed) {
  Preparation larger;
  larger.pupil = Millimetres(6.5);
  EXPECT_THROW(Prepared(Measured(), larger), Error);
  larger.extrapolate = true;
  EXPECT_EQ(Prepared(Measured(), larger).pupil, Millimetres(6.5));
  EXPECT_EQ(Changes(Measured(), larger), std::vector<std::string>{"extrapolated from 6 to 6.5 mm"});
}

TEST(Preparation, AnEyeOfUnknownSideIsNotMirrored) {
  Eye eye = Measured();
  eye.side = Side::kUnknown;
  Preparation mirror;
  mirror.mirror = Side::kOd;
  EXPECT_THROW(Prepared(eye, mirror), Error);
}

TEST(Preparation, WhatIsFarFromAnyEyeIsRefused) {
  for (const double coefficient : {1e10, 1e300, -1e300}) {
    Eye eye = Measured();
    eye.coefficients[4] = coefficient;
    EXPECT_THROW(Prepared(eye, {}), Error) << coefficient;
  }
  Preparation preparation;
  preparation.extrapolate = true;
  for (const double pupil : {1e-300, 1e-4, 1e4, 1e300}) {
    preparation.pupil = Millimetres(pupil);
    EXPECT_THROW(Prepared(Measured(), preparation), Error) << pupil;
  }
}

}  // namespace
}  // namespace orvanel::cli
