// Tests the Landolt ring (broken ring): its size, its samples, its gap.
#include "optics/ring.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>
#include <vector>

#include "optics/samples.h"
#include "orvanel/constants.h"

namespace orvanel {
namespace {

RingScale ScaleForPupil(double pupil) { return {256, 256, 32 * 17.0 * kWavelength / pupil, 17.0}; }

struct Ring {
  std::vector<double> plane;
  double effectiveAcuity = 0.0;
  int diameter = 0;

  double operator()(int row, int column) const { return plane[SampleIndex(row, column, 256)]; }
};

Ring Draw(RingScale scale, double acuity, int gapDirection, int n = 256) {
  scale.n = n;
  Ring ring;
  ring.plane.assign(SampleCount(n), -1.0);
  ring.diameter = RingDiameter(scale, acuity);
  ring.effectiveAcuity = EffectiveAcuity(scale, ring.diameter);
  DrawRing(ring.plane.data(), n, ring.diameter, gapDirection);
  return ring;
}

// The acuity whose raw size is half-way between the truncation limits of D0 = diameter, for a 4 mm pupil.
double AcuityForDiameter(int diameter) {
  return EffectiveAcuity(ScaleForPupil(4.0), 1) / (std::abs(diameter) + 2.5) * (diameter < 0 ? -1.0 : 1.0);
}

struct Worked {
  double pupil;
  double acuity;
  int diameter;
  double effectiveAcuity;
};

void PrintTo(const Worked& worked, std::ostream* out) {
  *out << "acuity " << worked.acuity << " at " << worked.pupil << " mm";
}

class RingSize : public testing::TestWithParam<Worked> {};

TEST_P(RingSize, IsAsWorkedOut) {
  const Worked worked = GetParam();
  const RingScale scale = ScaleForPupil(worked.pupil);
  EXPECT_EQ(RingDiameter(scale, worked.acuity), worked.diameter);
  EXPECT_NEAR(EffectiveAcuity(scale, worked.diameter), worked.effectiveAcuity, 5e-6 * worked.effectiveAcuity);
}

INSTANTIATE_TEST_SUITE_P(WorkedValues, RingSize,
                         testing::Values(Worked{4.0, 1.0, 40, 0.990156}, Worked{4.0, 0.5, 80, 0.495078},
                                         Worked{6.0, 1.0, 60, 0.990156}, Worked{3.0, 2.0, 15, 1.98031},
                                         Worked{4.0, 0.1, 395, 0.100269}));

TEST(Ring, TheHalfWidthOfAFourMillimetrePupilIsAsWorkedOut) {
  EXPECT_NEAR(ScaleForPupil(4.0).psfHalfWidth, 0.0799082, 5e-8);
  EXPECT_NEAR(ScaleForPupil(6.0).psfHalfWidth, 0.0532721, 5e-8);
}

TEST(Ring, DiameterIsTwoLessThanTheTruncatedSizeRoundedUpToFives) {
  const RingScale scale = ScaleForPupil(4.0);
  for (int d0 = 1; d0 <= 60; ++d0) {
    const int expected = (d0 + 4) / 5 * 5;
    EXPECT_EQ(RingDiameter(scale, AcuityForDiameter(d0)), expected) << d0;
  }
}

TEST(Ring, EffectiveAcuityIsTheOneWhoseRawSizeIsTheDiameter) {
  const RingScale scale = ScaleForPupil(4.0);
  // 5 strokes of 1 minute of arc each over 256 samples of 2 h = 2 * 0.0799 mm at 17 mm.
  const double samplesPerMinute = 256 / (2 * 0.07990816) * 17.0 * (2 * 0.000145444);
  EXPECT_NEAR(EffectiveAcuity(scale, 40), 5 * samplesPerMinute / 40, 1e-9);
}

TEST(Ring, RawSizeIsEvaluatedFromLeftToRight) {
  // Raw sizes that are a whole number to rounding: another order of evaluation falls on the other side of it.
  EXPECT_EQ(RingDiameter(ScaleForPupil(3.0), 1.0608813203271645), 25);
  EXPECT_EQ(RingDiameter(ScaleForPupil(3.0), 0.9001417263382002), 30);
}

TEST(Ring, DiameterIsCutOffOnlyAtTheEndsOfInt) {
  EXPECT_EQ(RingDiameter(ScaleForPupil(4.0), 3e-8), 1320207865);
  EXPECT_EQ(RingDiameter(ScaleForPupil(4.0), 1e-12), 2147483645);
  EXPECT_LT(RingDiameter(ScaleForPupil(4.0), -1e-12), -2147483640);
}

TEST(Ring, NumeratorDependsOnTheSideOfThePlane) {
  const RingScale full = ScaleForPupil(4.0);
  RingScale half = full;
  half.n = 128;
  RingScale twice = full;
  twice.n = 512;
  EXPECT_DOUBLE_EQ(EffectiveAcuity(half, 40), EffectiveAcuity(full, 40) * 3.0 / 5.0);
  EXPECT_DOUBLE_EQ(EffectiveAcuity(twice, 40), EffectiveAcuity(full, 40) * 3.0 / 5.0);
}

TEST(Ring, OfAcuityOneAtFourMillimetresHasTheStatedRadii) {
  const Ring ring = Draw(ScaleForPupil(4.0), 1.0, 0);
  for (int y = 0; y < 256; ++y) {
    for (int x = 0; x < 256; ++x) {
      const double d2 = (x - 128.5) * (x - 128.5) + (y - 128.5) * (y - 128.5);
      ASSERT_EQ(ring(y, x), d2 >= 144.0 && d2 <= 400.0 ? 0.0 : 1.0) << y << "," << x;
    }
  }
}

TEST(Ring, ThatIsEvenLiesBetweenFourSamples) {
  const Ring ring = Draw(ScaleForPupil(4.0), 1.0, 0);
  EXPECT_EQ(ring(128, 148), 0.0);
  EXPECT_EQ(ring(128, 109), 0.0);
  EXPECT_EQ(ring(128, 149), 1.0);
  EXPECT_EQ(ring(128, 108), 1.0);
}

TEST(Ring, ThatIsOddLiesOnASample) {
  const Ring ring = Draw(ScaleForPupil(3.0), 2.0, 0);  // D = 15: radii 7.5 and 4.5
  EXPECT_EQ(ring(128, 135), 0.0);
  EXPECT_EQ(ring(128, 136), 1.0);
  EXPECT_EQ(ring(128, 121), 0.0);
  EXPECT_EQ(ring(128, 120), 1.0);
  EXPECT_EQ(ring(128, 132), 1.0);
  EXPECT_EQ(ring(128, 133), 0.0);
}

TEST(Ring, TheGapOfDirectionThreeIsOnTheRight) {
  const Ring closed = Draw(ScaleForPupil(4.0), 1.0, 0);
  const Ring ring = Draw(ScaleForPupil(4.0), 1.0, 3);
  for (int y = 0; y < 256; ++y) {
    for (int x = 0; x < 256; ++x) {
      const bool inBar = y >= 125 && y <= 132 && x >= 129;
      ASSERT_EQ(ring(y, x), inBar ? 1.0 : closed(y, x)) << y << "," << x;
    }
  }
}

TEST(Ring, TheGapOfDirectionOneIsBelow) {
  const Ring closed = Draw(ScaleForPupil(4.0), 1.0, 0);
  const Ring ring = Draw(ScaleForPupil(4.0), 1.0, 1);
  for (int y = 0; y < 256; ++y) {
    for (int x = 0; x < 256; ++x) {
      const bool inBar = x >= 125 && x <= 132 && y >= 129;
      ASSERT_EQ(ring(y, x), inBar ? 1.0 : closed(y, x)) << y << "," << x;
    }
  }
}

TEST(Ring, TheGapOfDirectionTwoIsAbove) {
  const Ring closed = Draw(ScaleForPupil(4.0), 1.0, 0);
  const Ring ring = Draw(ScaleForPupil(4.0), 1.0, 2);
  for (int y = 0; y < 256; ++y) {
    for (int x = 0; x < 256; ++x) {
      const bool inBar = x >= 125 && x <= 132 && y <= 128;
      ASSERT_EQ(ring(y, x), inBar ? 1.0 : closed(y, x)) << y << "," << x;
    }
  }
}

TEST(Ring, TheGapOfDirectionFourIsOnTheLeft) {
  const Ring closed = Draw(ScaleForPupil(3.0), 2.0, 0);
  const Ring ring = Draw(ScaleForPupil(3.0), 2.0, 4);  // D = 15: three rows, 127 to 129
  for (int y = 0; y < 256; ++y) {
    for (int x = 0; x < 256; ++x) {
      const bool inBar = y >= 127 && y <= 129 && x <= 128;
      ASSERT_EQ(ring(y, x), inBar ? 1.0 : closed(y, x)) << y << "," << x;
    }
  }
}

TEST(Ring, TheGapOfAnOddRingBeginsAtTheCentreSample) {
  // D = 5: R = 2.5, r = 1.5, so that the ring is thin enough to see where the bar begins.
  const Ring right = Draw(ScaleForPupil(4.0), AcuityForDiameter(5), 3);
  EXPECT_EQ(right(128, 130), 1.0);
  EXPECT_EQ(right(127, 130), 0.0);
  EXPECT_EQ(right(129, 130), 0.0);
  EXPECT_EQ(right(128, 126), 0.0);
}

TEST(Ring, TheGapIsAFifthOfTheDiameterWide) {
  for (int diameter = 5; diameter <= 400; diameter += 5) {
    const GapRange gap = GapAcross(diameter, 256);
    EXPECT_EQ(gap.last - gap.first + 1, diameter / 5) << diameter;
    // Symmetric about 128 or 128.5.
    EXPECT_EQ(gap.first + gap.last, diameter % 2 == 0 ? 257 : 256) << diameter;
  }
}

TEST(Ring, OtherGapDirectionsDrawAClosedRing) {
  const Ring closed = Draw(ScaleForPupil(4.0), 1.0, 0);
  EXPECT_EQ(closed.plane, Draw(ScaleForPupil(4.0), 1.0, 5).plane);
  EXPECT_EQ(closed.plane, Draw(ScaleForPupil(4.0), 1.0, -1).plane);
  EXPECT_NE(closed.plane, Draw(ScaleForPupil(4.0), 1.0, 4).plane);
}

TEST(Ring, OfNegativeAcuityIsDrawnWithoutGap) {
  // X = +39.6, so that D0 = -2 - 39 = -41 and D = -40.
  const Ring negative = Draw(ScaleForPupil(4.0), -1.0, 3);
  EXPECT_EQ(negative.plane, Draw(ScaleForPupil(4.0), 1.0, 0).plane);
  EXPECT_EQ(negative.diameter, -40);
  EXPECT_NEAR(negative.effectiveAcuity, -0.990156, 5e-7);
}

TEST(Ring, OfDiameterMinusFiveOpensOneSample) {
  const double acuity = EffectiveAcuity(ScaleForPupil(4.0), 1) / -4.5;  // X = 4.5, D0 = -6
  const Ring ring = Draw(ScaleForPupil(4.0), acuity, 3);
  Ring closed = Draw(ScaleForPupil(4.0), acuity, 0);
  EXPECT_EQ(closed(128, 130), 0.0);
  closed.plane[SampleIndex(128, 130, 256)] = 1.0;
  EXPECT_EQ(ring.plane, closed.plane);
}

TEST(Ring, TooSmallToDrawLeavesAWhitePlaneAndInfiniteAcuity) {
  const double tooFine = EffectiveAcuity(ScaleForPupil(4.0), 1) / 1.5;  // |X| = 1.5
  const Ring ring = Draw(ScaleForPupil(4.0), tooFine, 2);
  EXPECT_TRUE(std::all_of(ring.plane.begin(), ring.plane.end(), [](double v) { return v == 1.0; }));
  EXPECT_EQ(ring.effectiveAcuity, std::numeric_limits<double>::infinity());
  EXPECT_EQ(ring.diameter, 0);
}

TEST(Ring, LargerThanThePlaneIsCutOffAtItsEdge) {
  const Ring ring = Draw(ScaleForPupil(4.0), 0.1, 3);  // D = 395, R = 197.5, r = 118.5
  EXPECT_EQ(ring(0, 128), 0.0);
  EXPECT_EQ(ring(128, 0), 0.0);
  EXPECT_EQ(ring(128, 255), 1.0);  // the gap
  EXPECT_EQ(ring(128 - 39, 255), 1.0);
  EXPECT_EQ(ring(128 - 40, 255), 0.0);
  EXPECT_EQ(ring(0, 0), 0.0);
  EXPECT_EQ(ring(128, 128), 1.0);
}

TEST(Ring, OfAnAcuityThatMeansNothingEndsAllTheSame) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double acuity : {0.0, -0.0, 1e-300, -1e-300, kInfinity, -kInfinity, std::nan("")}) {
    const Ring ring = Draw(ScaleForPupil(4.0), acuity, 1);
    EXPECT_TRUE(std::all_of(ring.plane.begin(), ring.plane.end(), [](double v) { return v == 0.0 || v == 1.0; }));
  }
}

TEST(Ring, OnASmallerPlaneUsesThePlanesSideForItsCentre) {
  Ring ring = Draw(ScaleForPupil(4.0), 0.6, 0, 128);  // K = 3: as acuity 1.0 on the full plane, D = 40, centre 64.5
  EXPECT_EQ(ring.plane[SampleIndex(64, 84, 128)], 0.0);
  EXPECT_EQ(ring.plane[SampleIndex(64, 85, 128)], 1.0);
  EXPECT_EQ(ring.plane[SampleIndex(64, 45, 128)], 0.0);
  EXPECT_EQ(ring.plane[SampleIndex(64, 44, 128)], 1.0);
}

}  // namespace
}  // namespace orvanel
