// Pupils of an eye in different light, and what is refused.
#include "models/physical/eye.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

Eye AnEye() { return EyeOf({0.5, 0.1, -0.2, 0.03, 0.3, -0.1, 0.05}, 5.0, 850.0); }

// Of the difference of the wavefronts at two wavelengths, at a place in mm: the slope in mrad.
Jet ChromaticSlope(const Eye& eye, double fromNm, double toNm, double xMm, double yMm) {
  const double radius = eye.diameterMm / 2;
  const Jet a = At(PupilInLight(eye, fromNm).wavefrontUm, xMm / radius, yMm / radius);
  const Jet b = At(PupilInLight(eye, toNm).wavefrontUm, xMm / radius, yMm / radius);
  return {b.value - a.value, (b.dx - a.dx) / radius, (b.dy - a.dy) / radius};
}

// A refraction of R dioptres is a slope of -R mrad for each mm from the axis.
TEST(Eye, OtherWavelengthsAreOutOfFocusByTheChromaticDifference) {
  const Jet slope = ChromaticSlope(AnEye(), 850, 555, 1.7, -0.9);
  const double difference = ChromaticDifference(555, 850);
  EXPECT_LT(difference, -0.85);
  EXPECT_NEAR(slope.dx, -difference * 1.7, 1e-13);
  EXPECT_NEAR(slope.dy, -difference * -0.9, 1e-13);
}

// Blue light focuses in front: a short-sighted eye, whose c4 is positive.
TEST(Eye, IsShortSightedInBlueLight) {
  EXPECT_GT(PupilInLight(AnEye(), 450).modesUm[4], AnEye().modesUm[4]);
  EXPECT_EQ(PupilInLight(AnEye(), 850).modesUm[4], AnEye().modesUm[4]);
}

TEST(Eye, ChromaticAberrationDoesNotDeflectTheAchromaticAxis) {
  Eye eye = AnEye();
  eye.achromaticAxisXmm = 0.4;
  eye.achromaticAxisYmm = -0.3;
  const Jet on = ChromaticSlope(eye, 450, 650, 0.4, -0.3), centre = ChromaticSlope(eye, 450, 650, 0.0, 0.0);
  EXPECT_NEAR(on.dx, 0.0, 1e-14);
  EXPECT_NEAR(on.dy, 0.0, 1e-14);
  // Light through the centre of a pupil that is d mm off the axis is deflected by d mrad for each dioptre.
  EXPECT_NEAR(centre.dx, ChromaticDifference(650, 450) * 0.4, 1e-13);
  EXPECT_NEAR(centre.dy, ChromaticDifference(650, 450) * -0.3, 1e-13);
}

TEST(Eye, OfUnknownReferenceIsTheSameInEveryMonochromaticLight) {
  Eye eye = AnEye();
  eye.referenceNm = 0.0;
  const Outcome<std::vector<Beam>> beams = BeamsOf(eye, Monochromatic(633));
  ASSERT_TRUE(beams);
  EXPECT_EQ(beams->front().pupil.modesUm[4], eye.modesUm[4]);
}

TEST(Eye, HasABeamForEachLineWithLight) {
  const Outcome<std::vector<Beam>> beams = BeamsOf(AnEye(), {{500, 1.0}, {550, 0.0}, {600, 3.0}});
  ASSERT_TRUE(beams);
  ASSERT_EQ(beams->size(), 2u);
  EXPECT_EQ((*beams)[0].line, 0);
  EXPECT_EQ((*beams)[1].line, 2);
  EXPECT_DOUBLE_EQ((*beams)[1].share, 0.75);
  // 0.6 um over 5 mm.
  EXPECT_NEAR((*beams)[1].unitArcmin, 0.12 * 10.8 / std::acos(-1.0), 1e-15);
  EXPECT_EQ((*beams)[1].pupil.radiusMm, 2.5);
  EXPECT_DOUBLE_EQ((*beams)[1].pupil.wavelengthUm, 0.6);
  EXPECT_EQ((*beams)[1].pupil.modesUm[0], 0.0);
}

// What is wrong, with its numbers.
void ExpectRefused(const Eye& eye, const Light& light, Problem problem, double value, int index = -1) {
  const Outcome<std::vector<Beam>> beams = BeamsOf(eye, light);
  ASSERT_FALSE(beams) << static_cast<int>(problem);
  EXPECT_EQ(beams.refusal().problem, problem);
  if (!std::isnan(value)) {
    EXPECT_EQ(beams.refusal().value, value);
  }
  EXPECT_EQ(beams.refusal().index, index);
}

TEST(Eye, RefusesWhatIsNoEye) {
  const Light green = Monochromatic(555);
  for (const double diameter : {0.0, 0.49, 12.1, -6.0, kInfinity, kNan}) {
    Eye eye = AnEye();
    eye.diameterMm = diameter;
    ExpectRefused(eye, green, Problem::kPupilDiameter, diameter);
  }
  for (const double mode : {kInfinity, kNan}) {
    Eye eye = AnEye();
    eye.modesUm[65] = mode;
    ExpectRefused(eye, green, Problem::kMode, mode, 65);
  }
  for (const Ellipse& outline :
       {Ellipse{0.0, 1.0, 0, 0, 0}, Ellipse{0.5, -0.5, 0, 0, 0}, Ellipse{0.8, 0.5, 0.3, 0.3, 0},
        Ellipse{1.1, 0.5, 0, 0, 0}, Ellipse{0.5, 0.5, 0, kNan, 0}, Ellipse{0.5, 0.5, kInfinity, 0, 0}}) {
    Eye eye = AnEye();
    eye.outline = outline;
    ExpectRefused(eye, green, Problem::kOutline, kNan);
  }
  Eye inside = AnEye();
  inside.outline = {0.7, 0.5, 0.0, 0.3, 0.0};
  EXPECT_TRUE(BeamsOf(inside, green));
  for (const StilesCrawford& effect :
       {StilesCrawford{-0.01, 0, 0}, StilesCrawford{1.1, 0, 0}, StilesCrawford{kNan, 0, 0},
        StilesCrawford{0.05, 6.1, 0}, StilesCrawford{0.05, 0, kNan}}) {
    Eye eye = AnEye();
    eye.stilesCrawford = effect;
    ExpectRefused(eye, green, Problem::kStilesCrawford, kNan);
  }
  Eye eye = AnEye();
  eye.achromaticAxisYmm = -7.0;
  ExpectRefused(eye, green, Problem::kAchromaticAxis, -7.0);
  eye = AnEye();
  eye.referenceNm = 214.1;
  ExpectRefused(eye, green, Problem::kReferenceWavelength, 214.1);
}

TEST(Eye, RefusesWhatIsNoLight) {
  ExpectRefused(AnEye(), {}, Problem::kNoLight, 0.0);
  ExpectRefused(AnEye(), {{500, 0.0}, {600, 0.0}}, Problem::kNoLight, 0.0);
  ExpectRefused(AnEye(), {{500, 1.0}, {600, -0.5}}, Problem::kWeight, -0.5, 1);
  ExpectRefused(AnEye(), {{500, 1.0}, {600, kInfinity}}, Problem::kWeight, kInfinity, 1);
  ExpectRefused(AnEye(), {{500, kNan}}, Problem::kWeight, kNan, 0);
  ExpectRefused(AnEye(), {{500, 1.0}, {299, 1.0}}, Problem::kWavelength, 299, 1);
  ExpectRefused(AnEye(), {{kNan, 1.0}}, Problem::kWavelength, kNan, 0);
  Eye unknown = AnEye();
  unknown.referenceNm = 0.0;
  ExpectRefused(unknown, WhiteLight(), Problem::kNoReferenceWavelength, 0.0);
  ExpectRefused(unknown, {{500, 1.0}, {600, 1.0}}, Problem::kNoReferenceWavelength, 0.0);
}

}  // namespace
}  // namespace orvanel::physical
