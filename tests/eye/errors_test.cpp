// Tests the fields and sentences of the errors of eyes.
#include "eye/errors.h"

#include <gtest/gtest.h>

namespace orvanel::eye {
namespace {

TEST(EyeErrors, SayWhyAnEyeIsNotAdjusted) {
  const PupilLargerThanMeasured larger(Millimetres(6.5), Millimetres(6.0));
  EXPECT_EQ(larger.wanted, Millimetres(6.5));
  EXPECT_EQ(larger.measured, Millimetres(6.0));
  EXPECT_STREQ(LateralityUnknown(Side::kOs).what(),
               "the eye cannot be mirrored to OS, since its laterality is not known; state the eye");
  EXPECT_STREQ(ImplausiblePupil(Millimetres(2500.0)).what(),
               "a pupil of 2500 mm is not that of an eye; check its unit");
  EXPECT_STREQ(ImplausibleWavefront(Micrometres(2e6)).what(),
               "the wavefront would be higher than a metre; check the unit of the coefficients");
}

TEST(EyeErrors, SayWhatIsWrongWithAPrescription) {
  const auto text = [](PrescriptionProblem problem) { return std::string(InvalidPrescription(problem, "-2").what()); };
  EXPECT_EQ(text(PrescriptionProblem::kMalformed),
            "'-2' is not a prescription; write sphere, or sphere,cylinder,axis as -2.25,-0.75,170 or -2.25/-0.75x170");
  EXPECT_EQ(text(PrescriptionProblem::kMixedNotations),
            "'-2' mixes commas with clinical notation; write -2.25,-0.75,170 or -2.25/-0.75x170");
  EXPECT_EQ(text(PrescriptionProblem::kCylinderWithoutSign),
            "'-2' has a cylinder without a sign; write + or - before it");
  EXPECT_EQ(text(PrescriptionProblem::kCylinderWithoutAxis),
            "'-2' has a cylinder without an axis; write it as -2.25/-0.75x170");
  EXPECT_EQ(text(PrescriptionProblem::kMalformedVertex), "'-2' is not a vertex distance; write it in mm, as 12");
  EXPECT_EQ(text(PrescriptionProblem::kCylinderOrVertex),
            "'-2' may be sphere and cylinder, or sphere and vertex distance; write -10,-0.75,170 or, with the unit, "
            "-10,12mm");
  EXPECT_STREQ(AxisOutOfRange(Degrees(181.0)).what(), "the axis 181 is outside 0 to 180 degrees");
  EXPECT_STREQ(
      VertexOutOfRange(Millimetres(0.012)).what(),
      "the vertex distance 0.012 is neither 0, for a contact lens, nor from 1 to 30 mm; write it in mm, as 12");
  EXPECT_STREQ(FocusInFrontOfCornea(Dioptres(84.0), Millimetres(12.0)).what(),
               "a lens of +84.00 D at 12 mm has its focus in front of the cornea; check its power and its vertex "
               "distance");
}

}  // namespace
}  // namespace orvanel::eye
