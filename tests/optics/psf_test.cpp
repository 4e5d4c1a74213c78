// Tests each step from wavefront to point spread function separately.
#include "optics/psf.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numeric>
#include <vector>

#include "base/elementary.h"
#include "orvanel/constants.h"

namespace orvanel {
namespace {

constexpr double kWave = kWavelength;

TEST(StrehlReference, OfTheFullGridIsThatOfItsDisc) {
  EXPECT_NEAR(StrehlReference(256, 129), std::pow(12853.0 / 65536.0, 2), 5e-16);
  EXPECT_EQ(StrehlReference(128, 65), 3209.0 * 3209.0);
  EXPECT_EQ(StrehlReference(256, 65), 0.0);
  EXPECT_EQ(StrehlReference(512, 257), 0.0);
}

TEST(PupilFunction, TakesTheQuotientFirstAndItsOwnTwoPi) {
  const double wavefront[4] = {1.2345e-3, -0.987654, 3.3e-5, 123.4};
  double re[4], im[4];
  PupilFunction({wavefront, 2}, kWave, {{re, 2}, {im, 2}});
  for (int i = 0; i < 4; ++i) {
    const SineCosine expected = SineAndCosine((wavefront[i] / kWave) * 6.28318530717958);
    EXPECT_EQ(re[i], expected.cosine);
    EXPECT_EQ(im[i], expected.sine);
  }
  // At 200000 waves the longer 2 pi would turn the phase by 1e-9.
  const SineCosine longer = SineAndCosine((123.4 / kWave) * 6.283185307179586);
  EXPECT_GT(std::hypot(re[3] - longer.cosine, im[3] - longer.sine), 1e-10);
}

TEST(PupilFunction, EndsBeyondNineHundredAndNinetyNine) {
  const double wavefront[4] = {999.0, std::nextafter(999.0, 1e3), 1000.0, std::nan("")};
  double re[4], im[4];
  PupilFunction({wavefront, 2}, kWave, {{re, 2}, {im, 2}});
  EXPECT_NEAR(std::hypot(re[0], im[0]), 1.0, 1e-15);
  for (int i = 1; i < 4; ++i) {
    EXPECT_EQ(re[i], 0.0);
    EXPECT_EQ(im[i], 0.0);
  }
}

TEST(FindPeak, TakesTheFirstOfEqualMaximaInRowMajorOrder) {
  std::vector<double> plane(64, 0.25);
  plane[2 * 8 + 6] = 0.75;
  plane[2 * 8 + 7] = 0.75;
  plane[5 * 8 + 1] = 0.75;
  const Peak peak = FindPeak({plane.data(), 8});
  EXPECT_EQ(peak.row, 2);
  EXPECT_EQ(peak.column, 6);
  EXPECT_EQ(peak.value, 0.75);
}

TEST(FindPeak, PassesOverWhatIsNotANumber) {
  std::vector<double> plane(16, std::nan(""));
  plane[9] = 0.125;
  const Peak peak = FindPeak({plane.data(), 4});
  EXPECT_EQ(peak.row, 2);
  EXPECT_EQ(peak.column, 1);
}

TEST(FindPeak, WithoutPositiveSampleIsTheCentre) {
  const std::vector<double> plane(64, 0.0);
  const Peak peak = FindPeak({plane.data(), 8});
  EXPECT_EQ(peak.row, 4);
  EXPECT_EQ(peak.column, 4);
  EXPECT_EQ(peak.value, 0.0);
}

TEST(RecentreLine, BringsTheElementToTheMiddle) {
  for (int index = 0; index < 8; ++index) {
    std::array<double, 8> line;
    std::iota(line.begin(), line.end(), 10.0);
    RecentreLine(line.data(), index, 8);
    for (int j = 0; j < 8; ++j) EXPECT_EQ(line[static_cast<std::size_t>(j)], 10.0 + (j + index + 4) % 8);
  }
}

TEST(RecentrePlane, BringsTheSampleToTheCentreAlongBothAxes) {
  std::vector<double> plane(36), before(36);
  std::iota(before.begin(), before.end(), 0.0);
  plane = before;
  RecentrePlane({plane.data(), 6}, 1, 4);
  for (std::size_t r = 0; r < 6; ++r) {
    for (std::size_t c = 0; c < 6; ++c) {
      EXPECT_EQ(plane[r * 6 + c], before[(r + 1 + 3) % 6 * 6 + (c + 4 + 3) % 6]);
    }
  }
}

TEST(StrehlRatio, IsThePeakOverTheReferenceOrMinusOneWithoutOne) {
  EXPECT_EQ(StrehlRatio(0.25, 256, 129), 0.25 / StrehlReference(256, 129));
  EXPECT_EQ(StrehlRatio(0.25, 512, 257), -1.0);
}

}  // namespace
}  // namespace orvanel
