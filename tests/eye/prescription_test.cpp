// Tests reading and writing prescriptions, and lenses at a distance.
#include "eye/prescription.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/error.h"
#include "eye/errors.h"

namespace orvanel::eye {
namespace {

Refraction Power(double sphere, double cylinder, double axis) {
  return {Dioptres(sphere), Dioptres(cylinder), Degrees(axis)};
}

void ExpectSame(const Refraction& seen, const Refraction& expected, const char* text) {
  EXPECT_EQ(seen.sphere, expected.sphere) << text;
  EXPECT_EQ(seen.cylinder, expected.cylinder) << text;
  EXPECT_EQ(seen.axis, expected.axis) << text;
}

TEST(Prescription, IsReadFromAList) {
  ExpectSame(ParseRefraction("-2.25,+0.75,170"), Power(-2.25, 0.75, 170.0), "list");
  ExpectSame(ParseRefraction("1.5"), Power(1.5, 0.0, 180.0), "sphere");
  for (const char* text : {"", "-2,1", "-2,1,181", "-2,1,-5", "1,2,3,4", "-2/1/90", "nan", "-2,1,"}) {
    EXPECT_THROW(ParseRefraction(text), Error) << text;
  }
}

TEST(Prescription, IsReadAsTheClinicWritesIt) {
  for (const char* text : {"-2.00/-0.75x20", "-2.00 -0.75 x 20", "-2.00 DS -0.75 DC x 20", "-2.00/-0.75 X 020",
                           "-2.00-0.75x20", "-2.00 D / -0.75 D x 20", "-2.00 sph / -0.75 cyl axis 20",
                           " -2.00DS/-0.75DCx20\u00b0 ", "\u22122.00/\u22120.75\u00d720"}) {
    ExpectSame(ParseRefraction(text), Power(-2.0, -0.75, 20.0), text);
  }
  ExpectSame(ParseRefraction("plano/-0.75x20"), Power(0.0, -0.75, 20.0), "plano");
  ExpectSame(ParseRefraction("+1.25 DS"), Power(1.25, 0.0, 180.0), "DS");
  ExpectSame(ParseRefraction("-2.00"), Power(-2.0, 0.0, 180.0), "sphere");
  ExpectSame(ParseRefraction("-2.00/0.00x180"), Power(-2.0, 0.0, 180.0), "no cylinder");
}

// An axis of 20 behind "@" is the meridian of the power, 90 degrees away. A cylinder without sign may have lost it.
TEST(Prescription, IsRefusedWhereItMayMeanTwoThings) {
  for (const char* text :
       {"-2.00/-0.75@20", "-2.00/-0.75", "-2.00 -0.75", "-2.00/0.75x20", "-2,00/-0,75x20", "x20", "-2.00/-0.75x",
        "-2.00/-0.75x181", "-2.00/-0.75x-20", "-2.00/-0.75x20x", "/-0.75x20", "-2.0.0/-0.75x20", "-2.00 DS DS"}) {
    EXPECT_THROW(ParseRefraction(text), Error) << text;
  }
}

TEST(Prescription, OfALensHasAVertexDistanceBehindIt) {
  for (const char* text : {"-2,-0.75,20,12", "-2,-0.75,20, 12 mm", "-2/-0.75x20,12", "-2 -0.75 x 20,12mm"}) {
    const Lens lens = ParseLens(text);
    ExpectSame(lens.power, Power(-2.0, -0.75, 20.0), text);
    EXPECT_EQ(lens.vertex, Millimetres(12.0)) << text;
  }
  ExpectSame(ParseLens("-10,12mm").power, Power(-10.0, 0.0, 180.0), "sphere");
  EXPECT_EQ(ParseLens("-10,12mm").vertex, Millimetres(12.0));
  EXPECT_EQ(ParseLens("-10 DS,13.75").vertex, Millimetres(13.75));
  EXPECT_EQ(ParseLens("-10").vertex, Millimetres(0.0));
  EXPECT_EQ(ParseLens("-2,-0.75,20").vertex, Millimetres(0.0));
  EXPECT_EQ(ParseLens("-2,-0.75,20,0").vertex, Millimetres(0.0));
  for (const char* text : {"-10,12", "-2,-0.75,20,0.012", "-2,-0.75,20,31", "-2,-0.75,20,-12", "-2,-0.75,20,cm",
                           "-2,-0.75,20,12,13", "-2,-0.75,20,"}) {
    EXPECT_THROW(ParseLens(text), Error) << text;
  }
}

TEST(Prescription, ARefusalHasItsReasonAndTheText) {
  const std::pair<const char*, PrescriptionProblem> texts[] = {
      {"-2,1", PrescriptionProblem::kCylinderOrVertex},
      {"x20", PrescriptionProblem::kMalformed},
      {"-2.00/-0.75x20x", PrescriptionProblem::kMalformed},
      {"-2,00/-0,75x20", PrescriptionProblem::kMixedNotations},
      {"-2.00/0.75x20", PrescriptionProblem::kCylinderWithoutSign},
      {"-2.00/-0.75", PrescriptionProblem::kCylinderWithoutAxis}};
  for (const auto& [text, problem] : texts) {
    try {
      ParseLens(text);
      ADD_FAILURE() << text;
    } catch (const InvalidPrescription& error) {
      EXPECT_EQ(error.problem, problem) << text;
      EXPECT_EQ(error.text, text);
    }
  }
  try {
    ParseLens("-2,-0.75,20,cm");
    ADD_FAILURE();
  } catch (const InvalidPrescription& error) {
    EXPECT_EQ(error.problem, PrescriptionProblem::kMalformedVertex);
    EXPECT_EQ(error.text, "cm");
  }
  EXPECT_THROW(ParseLens("-2,-0.75,20,31"), VertexOutOfRange);
  for (const double mm : {-1.0, 0.5, 30.5, std::nan("")}) EXPECT_THROW(VertexDistance(mm), VertexOutOfRange) << mm;
  for (const double mm : {0.0, 1.0, 30.0}) EXPECT_EQ(VertexDistance(mm), Millimetres(mm));
  EXPECT_THROW(ParseRefraction("-2,-0.75,181"), AxisOutOfRange);
}

// Worked by hand: -10 / (1 + 0.012 * 10) = -8.92857, and for the other meridian -12.5 / 1.15 = -10.86957.
TEST(Prescription, ALensIsWeakerOrStrongerAtTheCorneaThanWhereItIsWorn) {
  constexpr double kFiveDigits = 5e-6;
  EXPECT_NEAR(AtCornea({Power(-10.0, 0.0, 180.0), Millimetres(12.0)}).sphere.value(), -8.92857, kFiveDigits);
  EXPECT_NEAR(AtCornea({Power(10.0, 0.0, 180.0), Millimetres(12.0)}).sphere.value(), 11.36364, kFiveDigits);
  const Refraction toric = AtCornea({Power(-10.0, -2.5, 37.0), Millimetres(12.0)});
  EXPECT_NEAR(toric.sphere.value(), -8.92857, kFiveDigits);
  EXPECT_NEAR(toric.cylinder.value(), -10.86957 + 8.92857, 2.0 * kFiveDigits);
  EXPECT_EQ(toric.axis, Degrees(37.0));
  ExpectSame(AtCornea({Power(-10.0, -2.5, 37.0), Millimetres()}), Power(-10.0, -2.5, 37.0), "contact lens");
}

// With a plus cylinder it is the same lens, so that it must be the same at the cornea.
TEST(Prescription, BothSignsOfCylinderAreTheSameLensAtTheCornea) {
  const PowerVector minus = ToPowerVector(AtCornea({Power(-4.0, -2.5, 37.0), Millimetres(13.0)}));
  const PowerVector plus = ToPowerVector(AtCornea({Power(-6.5, 2.5, 127.0), Millimetres(13.0)}));
  EXPECT_NEAR(minus.m.value(), plus.m.value(), 1e-14);
  EXPECT_NEAR(minus.j0.value(), plus.j0.value(), 1e-14);
  EXPECT_NEAR(minus.j45.value(), plus.j45.value(), 1e-14);
}

TEST(Prescription, ALensThatFocusesBeforeTheCorneaIsRefused) {
  EXPECT_THROW(AtCornea({Power(84.0, 0.0, 180.0), Millimetres(12.0)}), FocusInFrontOfCornea);
  EXPECT_THROW(AtCornea({Power(60.0, 30.0, 180.0), Millimetres(12.0)}), FocusInFrontOfCornea);
  EXPECT_NO_THROW(AtCornea({Power(-300.0, 0.0, 180.0), Millimetres(12.0)}));
}

TEST(Prescription, TextIsReadBack) {
  EXPECT_EQ(PrescriptionText(Power(-2.0, -0.75, 20.0)), "-2.00/-0.75x20");
  EXPECT_EQ(PrescriptionText(Power(0.004, 1.5, 0.3)), "0.00/+1.50x180");
  EXPECT_EQ(PrescriptionText(Power(1.25, -0.004, 20.0)), "+1.25 DS");
  EXPECT_EQ(PrescriptionText(Power(-0.004, 0.004, 20.0)), "plano");
  for (const char* text : {"-2.00/-0.75x20", "0.00/+1.50x180", "+1.25 DS", "plano"}) {
    EXPECT_EQ(PrescriptionText(ParseRefraction(text)), text);
  }
}

TEST(Prescription, IsWrittenOutWithSignsAndAWholeAxis) {
  EXPECT_EQ(Text(Power(-2.254, -0.75, 170.4)), "-2.25 D sphere, -0.75 D cylinder, axis 170");
  EXPECT_EQ(Text(Power(1.0, 0.001, 20.0)), "+1.00 D sphere, 0.00 D cylinder, axis 180");
  EXPECT_EQ(Text(Power(-0.001, -1.0, 0.3)), "0.00 D sphere, -1.00 D cylinder, axis 180");
}

}  // namespace
}  // namespace orvanel::eye
