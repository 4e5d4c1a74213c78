// What is done to an eye, in which order.
#include "eye/adjustments.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/error.h"
#include "base/number_text.h"
#include "eye/pupil_rescale.h"

namespace orvanel::eye {
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

// Brought from the cornea to 13 mm before it by hand: F = F' / (1 + d F').
TEST(Preparation, SpectaclesOfTheEyesOwnPrescriptionLeaveNoRefraction) {
  const Millimetres pupil = Measured().pupil;
  const Refraction own = ToRefraction(LeastSquaresRefraction(OsaCoefficients(Measured()), pupil), CylinderSign::kMinus);
  const auto before = [](Dioptres power) { return power / (1.0 + 0.013 * power.value()); };
  Preparation wearing;
  wearing.lens.emplace();
  wearing.lens->vertex = Millimetres(13.0);
  wearing.lens->power.sphere = before(own.sphere);
  wearing.lens->power.cylinder = before(own.sphere + own.cylinder) - before(own.sphere);
  wearing.lens->power.axis = own.axis;
  EXPECT_GT(std::fabs(own.cylinder.value()), 0.01);
  const PowerVector rest = LeastSquaresRefraction(OsaCoefficients(Prepared(Measured(), wearing)), pupil);
  constexpr double kRounding = 1e-13;  // of some dioptres, through a dozen operations
  EXPECT_NEAR(rest.m.value(), 0.0, kRounding);
  EXPECT_NEAR(rest.j0.value(), 0.0, kRounding);
  EXPECT_NEAR(rest.j45.value(), 0.0, kRounding);
}

TEST(Preparation, ALensIsTheNegativeOfARefraction) {
  Preparation lens, refraction;
  lens.lens = ParseLens("-2,-0.75,20");
  refraction.refraction = ToPowerVector(ParseRefraction("2,0.75,20"));
  const Coefficients worn = Prepared(Measured(), lens).coefficients;
  const Coefficients added = Prepared(Measured(), refraction).coefficients;
  for (std::size_t j = 0; j < worn.size(); ++j) EXPECT_NEAR(worn[j], added[j], 1e-10) << j;  // nm
  EXPECT_EQ(Changes(Measured(), lens), std::vector<std::string>{"lens -2.00/-0.75x20 worn at the cornea"});
  lens.lens = ParseLens("-10,12mm");
  EXPECT_EQ(Changes(Measured(), lens),
            std::vector<std::string>{"lens -10.00 DS worn at 12 mm, which is -8.93 DS at the cornea"});
}

TEST(Preparation, OrdersAboveTheHighestAreDroppedAndTheirRmsIsTold) {
  Preparation dropping;
  dropping.highestOrder = 3;
  Eye eye = Measured();
  eye.convention = kOsaConvention;
  eye.coefficients = {9, 9, 9, 0.0, 0.3, 0.0, 0.0, 0.4, 0.0, 0.0, 0.06, 0.0, -0.08, 0.0, 0.0, 0.0};
  eye.coefficients.resize(OsaIndex({8, 0}) + 1);
  eye.coefficients[OsaIndex({8, 0})] = 0.24;
  std::optional<Dropped> dropped;
  const Eye kept = Prepared(eye, dropping, &dropped);
  EXPECT_EQ(kept.coefficients, Coefficients({9, 9, 9, 0.0, 0.3, 0.0, 0.0, 0.4, 0.0, 0.0}));
  ASSERT_TRUE(dropped);
  EXPECT_EQ(dropped->above, 3);
  EXPECT_NEAR(dropped->rms.value(), 0.26, 1e-15);  // of 0.06, 0.08 and 0.24
  EXPECT_NEAR(Share(*dropped), 0.26 / std::sqrt(0.25 + 0.0676), 1e-15);
  EXPECT_EQ(Changes(eye, dropping),
            std::vector<std::string>{"radial orders above 3 dropped, 0.26 um RMS of 0.564 um (46.1 %)"});
  dropping.highestOrder = 8;
  EXPECT_EQ(Prepared(eye, dropping, &dropped).coefficients, eye.coefficients);
  EXPECT_EQ(dropped->rms, Micrometres(0.0));
  EXPECT_FALSE([&] {
    std::optional<Dropped> nothing;
    Prepared(eye, {}, &nothing);
    return nothing.has_value();
  }());
}

// Within a smaller pupil a high order is lower orders, too, which stay.
TEST(Preparation, OrdersAreDroppedOverThePupilWanted) {
  Preparation both, smaller, dropping;
  both.highestOrder = dropping.highestOrder = 2;
  both.pupil = smaller.pupil = Millimetres(3.5);
  const Eye first = Prepared(Prepared(Measured(), smaller), dropping), together = Prepared(Measured(), both);
  EXPECT_EQ(together.coefficients, first.coefficients);
  EXPECT_NE(together.coefficients, Prepared(Prepared(Measured(), dropping), smaller).coefficients);
}

TEST(Preparation, WhatWentInManyEyesIsCounted) {
  DroppedOfMany many;
  for (const double rms : {0.0, 0.25, 0.125}) many.Add({6, Micrometres(rms), Micrometres(1.0)});
  EXPECT_EQ(Text(many, 6), "radial orders above 6 dropped: 2 of 3 eyes have lost something, at most 0.25 um RMS");
}

TEST(Preparation, ARefractionStatedBesideTheEyeIsAddedOnce) {
  const PowerVector stated{Dioptres(-1.5), Dioptres(0.25), Dioptres(-0.5)};
  Preparation more;
  more.refraction = PowerVector{Dioptres(0.75), Dioptres(-0.125), Dioptres(0.25)};
  Eye measured = Measured();
  measured.prescription = stated;
  const Coefficients before = OsaCoefficients(Measured());
  const Eye eye = Prepared(measured, {}), both = Prepared(measured, more);
  EXPECT_FALSE(eye.prescription);
  const PowerVector was = LeastSquaresRefraction(before, Millimetres(6.0));
  const PowerVector is = LeastSquaresRefraction(OsaCoefficients(eye), Millimetres(6.0));
  const PowerVector added = LeastSquaresRefraction(OsaCoefficients(both), Millimetres(6.0));
  constexpr double kRounding = 1e-13;  // dioptres, of numbers below 2
  EXPECT_NEAR((is.m - was.m).value(), -1.5, kRounding);
  EXPECT_NEAR((is.j0 - was.j0).value(), 0.25, kRounding);
  EXPECT_NEAR((is.j45 - was.j45).value(), -0.5, kRounding);
  EXPECT_NEAR((added.m - was.m).value(), -0.75, kRounding);
  EXPECT_EQ(Changes(measured, {}),
            std::vector<std::string>{"prescription of -0.94 D sphere, -1.12 D cylinder, axis 148 added"});
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
}  // namespace orvanel::eye
