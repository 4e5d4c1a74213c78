// Chords, attenuation and slopes of a pupil against their definitions.
#include "models/physical/pupil/pupil.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

TEST(Pupil, ChordsEndOnItsOutline) {
  const Ellipse outline{0.8, 0.5, 0.6, 0.05, -0.12};
  const Chords chords = ChordsOf(outline);
  for (const double v : {-0.9, -0.2, 0.0, 0.55, 1.0}) {
    for (const double side : {-1.0, 1.0}) {
      const double x = chords.MiddleAt(v) + side * chords.halfWidth * std::sqrt(1 - v * v) - outline.centreX;
      const double y = chords.HeightAt(v) - outline.centreY;
      const double along = x * std::cos(outline.angle) + y * std::sin(outline.angle);
      const double across = y * std::cos(outline.angle) - x * std::sin(outline.angle);
      EXPECT_NEAR(std::hypot(along / outline.semiAxisA, across / outline.semiAxisB), 1.0, 1e-14) << v;
    }
  }
}

TEST(Pupil, ChordsOfADiscAreNotSheared) {
  const Chords chords = ChordsOf({0.7, 0.7, 1.1, 0.02, 0.03});
  EXPECT_EQ(chords.shear, 0.0);
  EXPECT_EQ(chords.halfWidth, 0.7);
  EXPECT_EQ(chords.halfHeight, 0.7);
}

TEST(Pupil, AttenuationIsHalfTheDecadicExponentOfTheIntensity) {
  Pupil pupil = PupilOf({}, 2.5);
  pupil.stilesCrawford = {0.06, 0.4, -0.3};
  const double middle = 0.1, height = -0.35, u = 0.25;
  const std::array<double, 3> line = AttenuationOf(pupil).AlongLine(middle, height);
  const double dx = 2.5 * (middle + u) - 0.4, dy = 2.5 * height + 0.3;
  const double intensity = std::pow(10.0, -0.06 * (dx * dx + dy * dy));
  EXPECT_NEAR(std::exp(2 * (line[0] + u * line[1] + u * u * line[2])), intensity, 1e-15);
}

// c4 Z(2, 0) and c2 Z(1, 1) have the slopes 4 sqrt 3 c4 (x, y) and 2 c2, per radius; wavelength / diameter is half a
// wavelength per radius.
TEST(Pupil, SlopesAreThoseOfTheRim) {
  const double c2 = 0.1, c4 = -0.2;
  const SlopeRange range = SlopesOf(PupilOf({0, 0, c2, 0, c4}, 3.0, 0.5));
  const double rim = 4 * std::sqrt(3.0) * 0.2 * 4, tilt = 2 * c2 * 4;
  EXPECT_NEAR(range.lowX, tilt - rim, 1e-12);
  EXPECT_NEAR(range.highX, tilt + rim, 1e-12);
  EXPECT_NEAR(range.lowY, -rim, 1e-12);
  EXPECT_NEAR(range.highY, rim, 1e-12);
}

TEST(Pupil, SlopesOfWhatIsNoNumberAreNone) {
  EXPECT_TRUE(std::isnan(SlopesOf(PupilOf({0, 0, 0, std::numeric_limits<double>::quiet_NaN()})).highX));
}

TEST(Pupil, FlatKeepsOutlineAndTransmission) {
  Pupil pupil = PupilOf({0.1, 0.2, 0.3, 0.4});
  pupil.outline.semiAxisB = 0.5;
  pupil.stilesCrawford.rho = 0.05;
  const Pupil flat = Flat(pupil);
  EXPECT_EQ(At(flat.wavefrontUm, 0.3, 0.4).value, 0.0);
  EXPECT_EQ(flat.modesUm[3], 0.0);
  EXPECT_EQ(flat.outline, pupil.outline);
  EXPECT_EQ(flat.stilesCrawford, pupil.stilesCrawford);
  EXPECT_EQ(flat.radiusMm, pupil.radiusMm);
}

}  // namespace
}  // namespace orvanel::physical
