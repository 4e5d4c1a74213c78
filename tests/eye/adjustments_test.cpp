// Tests the adjustments of an eye and their order.
#include "eye/adjustments.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/number_text.h"
#include "eye/errors.h"
#include "eye/pupil_rescale.h"
#include "tests/eye/eyes.h"

namespace orvanel::eye {
namespace {

Eye Measured() {
  Eye eye;
  eye.pupil = Millimetres(6.0);
  eye.side = Side::kOs;
  eye.coefficients = {{Unit::kNanometres, Nanometres(), Normalisation::kNone, IndexScheme::kNoll, YAxis::kDown},
                      {1, 2, 3, 40, 300, -20, 7, 80, -9, 10, 0, 0, 55}};
  return eye;
}

TEST(Adjustments, WithNothingToDoChangesNoBit) {
  Adjustments same;
  same.pupil = Millimetres(6.0);
  same.mirror = Side::kOs;
  EXPECT_EQ(Adjusted(Measured(), {}).coefficients, Measured().coefficients);
  EXPECT_EQ(Adjusted(Measured(), same).coefficients, Measured().coefficients);
  EXPECT_TRUE(Changes(Measured(), same).empty());
}

TEST(Adjustments, DoesAllThreeAndKeepsTheStatedConvention) {
  Adjustments all;
  all.pupil = Millimetres(4.0);
  all.mirror = Side::kOd;
  all.refraction = PowerVector{Dioptres(-1.0), Dioptres(0.25), Dioptres(0.5)};
  const Eye eye = Adjusted(Measured(), all);
  EXPECT_EQ(eye.pupil, Millimetres(4.0));
  EXPECT_EQ(eye.side, Side::kOd);
  EXPECT_EQ(eye.coefficients.convention(), Measured().coefficients.convention());
  const Coefficients osa = Measured().coefficients.osa();
  const Coefficients expected =
      Mirrored(Rescaled(WithRefraction(osa, Millimetres(6.0), *all.refraction), Millimetres(4.0) / Millimetres(6.0)));
  const Coefficients seen = eye.coefficients.osa();
  EXPECT_EQ(seen, expected);
  EXPECT_EQ(Changes(Measured(), all),
            (std::vector<std::string>{"refraction of -0.44 D sphere, -1.12 D cylinder, axis 32 added",
                                      "rescaled from 6 to 4 mm", "mirrored from OS to OD"}));
}

// Brought from the cornea to 13 mm before it by hand: F = F' / (1 + d F').
TEST(Adjustments, SpectaclesOfTheEyesOwnPrescriptionLeaveNoRefraction) {
  const Millimetres pupil = Measured().pupil;
  const Refraction own =
      ToRefraction(LeastSquaresRefraction(Measured().coefficients.osa(), pupil), CylinderSign::kMinus);
  const auto before = [](Dioptres power) { return power / (1.0 + 0.013 * power.value()); };
  Adjustments wearing;
  wearing.lens.emplace();
  wearing.lens->vertex = Millimetres(13.0);
  wearing.lens->power.sphere = before(own.sphere);
  wearing.lens->power.cylinder = before(own.sphere + own.cylinder) - before(own.sphere);
  wearing.lens->power.axis = own.axis;
  EXPECT_GT(std::fabs(own.cylinder.value()), 0.01);
  const PowerVector rest = LeastSquaresRefraction(Adjusted(Measured(), wearing).coefficients.osa(), pupil);
  constexpr double kRounding = 1e-13;  // of some dioptres, through a dozen operations
  EXPECT_NEAR(rest.m.value(), 0.0, kRounding);
  EXPECT_NEAR(rest.j0.value(), 0.0, kRounding);
  EXPECT_NEAR(rest.j45.value(), 0.0, kRounding);
}

TEST(Adjustments, ALensIsTheNegativeOfARefraction) {
  Adjustments lens, refraction;
  lens.lens = ParseLens("-2,-0.75,20");
  refraction.refraction = ToPowerVector(ParseRefraction("2,0.75,20"));
  const Coefficients worn = Adjusted(Measured(), lens).coefficients.AsStated();
  const Coefficients added = Adjusted(Measured(), refraction).coefficients.AsStated();
  for (std::size_t j = 0; j < worn.size(); ++j) EXPECT_NEAR(worn[j], added[j], 1e-10) << j;  // nm
  EXPECT_EQ(Changes(Measured(), lens), std::vector<std::string>{"lens -2.00/-0.75x20 worn at the cornea"});
  lens.lens = ParseLens("-10,12mm");
  EXPECT_EQ(Changes(Measured(), lens),
            std::vector<std::string>{"lens -10.00 DS worn at 12 mm, which is -8.93 DS at the cornea"});
}

TEST(Adjustments, OrdersAboveTheHighestAreDroppedAndTheirRmsIsTold) {
  Adjustments dropping;
  dropping.highestOrder = 3;
  Eye eye = Measured();
  eye.coefficients = {kOsaConvention, {9, 9, 9, 0.0, 0.3, 0.0, 0.0, 0.4, 0.0, 0.0, 0.06, 0.0, -0.08}};
  SetTerm(eye, OsaIndex({8, 0}), 0.24);
  std::optional<Dropped> dropped;
  const Eye kept = Adjusted(eye, dropping, &dropped);
  EXPECT_EQ(kept.coefficients.osa(), Coefficients({9, 9, 9, 0.0, 0.3, 0.0, 0.0, 0.4, 0.0, 0.0}));
  ASSERT_TRUE(dropped);
  EXPECT_EQ(dropped->above, 3);
  EXPECT_NEAR(dropped->rms.value(), 0.26, 1e-15);  // of 0.06, 0.08 and 0.24
  EXPECT_NEAR(Share(*dropped), 0.26 / std::sqrt(0.25 + 0.0676), 1e-15);
  EXPECT_EQ(Changes(eye, dropping),
            std::vector<std::string>{"radial orders above 3 dropped, 0.26 um RMS of 0.564 um (46.1 %)"});
  dropping.highestOrder = 8;
  EXPECT_EQ(Adjusted(eye, dropping, &dropped).coefficients, eye.coefficients);
  EXPECT_EQ(dropped->rms, Micrometres(0.0));
  EXPECT_FALSE([&] {
    std::optional<Dropped> nothing;
    Adjusted(eye, {}, &nothing);
    return nothing.has_value();
  }());
}

// Within a smaller pupil a high order is lower orders, too, which stay.
TEST(Adjustments, OrdersAreDroppedOverThePupilWanted) {
  Adjustments both, smaller, dropping;
  both.highestOrder = dropping.highestOrder = 2;
  both.pupil = smaller.pupil = Millimetres(3.5);
  const Eye first = Adjusted(Adjusted(Measured(), smaller), dropping), together = Adjusted(Measured(), both);
  EXPECT_EQ(together.coefficients, first.coefficients);
  EXPECT_NE(together.coefficients, Adjusted(Adjusted(Measured(), dropping), smaller).coefficients);
}

TEST(Adjustments, WhatWentInManyEyesIsCounted) {
  DroppedOfMany many;
  for (const double rms : {0.0, 0.25, 0.125}) many.Add({6, Micrometres(rms), Micrometres(1.0)});
  EXPECT_EQ(Text(many, 6), "radial orders above 6 dropped: 2 of 3 eyes had such terms, at most 0.25 um RMS");
}

TEST(Adjustments, ARefractionStatedBesideTheEyeIsAddedOnce) {
  const PowerVector stated{Dioptres(-1.5), Dioptres(0.25), Dioptres(-0.5)};
  Adjustments more;
  more.refraction = PowerVector{Dioptres(0.75), Dioptres(-0.125), Dioptres(0.25)};
  Eye measured = Measured();
  measured.prescription = stated;
  const Coefficients before = Measured().coefficients.osa();
  const Eye eye = Adjusted(measured, {}), both = Adjusted(measured, more);
  EXPECT_FALSE(eye.prescription);
  const PowerVector was = LeastSquaresRefraction(before, Millimetres(6.0));
  const PowerVector is = LeastSquaresRefraction(eye.coefficients.osa(), Millimetres(6.0));
  const PowerVector added = LeastSquaresRefraction(both.coefficients.osa(), Millimetres(6.0));
  constexpr double kRounding = 1e-13;  // dioptres, of numbers below 2
  EXPECT_NEAR((is.m - was.m).value(), -1.5, kRounding);
  EXPECT_NEAR((is.j0 - was.j0).value(), 0.25, kRounding);
  EXPECT_NEAR((is.j45 - was.j45).value(), -0.5, kRounding);
  EXPECT_NEAR((added.m - was.m).value(), -0.75, kRounding);
  EXPECT_EQ(Changes(measured, {}),
            std::vector<std::string>{"prescription of -0.94 D sphere, -1.12 D cylinder, axis 148 added"});
}

// Signs and the end of the list are exact in any convention.
TEST(Adjustments, MirroredAndShortenedEyesKeepTheirStatedNumbers) {
  Adjustments both;
  both.mirror = Side::kOd;
  both.highestOrder = 3;
  EXPECT_EQ(Adjusted(Measured(), both).coefficients.AsStated(), Coefficients({1, 2, -3, -40, 300, -20, 7, 80, 9, -10}));
}

TEST(Adjustments, ALargerPupilIsRefusedUnlessExtrapolationIsAllowed) {
  Adjustments larger;
  larger.pupil = Millimetres(6.5);
  EXPECT_THROW(Adjusted(Measured(), larger), PupilLargerThanMeasured);
  larger.extrapolate = true;
  EXPECT_EQ(Adjusted(Measured(), larger).pupil, Millimetres(6.5));
  EXPECT_EQ(Changes(Measured(), larger), std::vector<std::string>{"extrapolated from 6 to 6.5 mm"});
}

TEST(Adjustments, AnEyeOfUnknownSideIsNotMirrored) {
  Eye eye = Measured();
  eye.side = Side::kUnknown;
  Adjustments mirror;
  mirror.mirror = Side::kOd;
  EXPECT_THROW(Adjusted(eye, mirror), LateralityUnknown);
}

TEST(Adjustments, WhatIsFarFromAnyEyeIsRefused) {
  for (const double coefficient : {1e10, 1e300, -1e300}) {
    Eye eye = Measured();
    SetTerm(eye, 4, coefficient);
    EXPECT_THROW(Adjusted(eye, {}), ImplausibleWavefront) << coefficient;
  }
  Adjustments adjustments;
  adjustments.extrapolate = true;
  for (const double pupil : {1e-300, 1e-4, 1e4, 1e300}) {
    adjustments.pupil = Millimetres(pupil);
    EXPECT_THROW(Adjusted(Measured(), adjustments), ImplausiblePupil) << pupil;
  }
}

}  // namespace
}  // namespace orvanel::eye
