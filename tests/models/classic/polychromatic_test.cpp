// Tests the white-light PSF against its three parts.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "orvanel/optics_engine.h"
#include "orvanel/resampling.h"

namespace orvanel {
namespace {

using Coefficients = std::array<double, kCoefficients>;
using Plane = std::vector<double>;

Coefficients Lopsided() {
  Coefficients c{};
  c[4] = 1.1e-4;
  c[7] = 1.6e-4;
  c[8] = -0.9e-4;
  return c;
}

TEST(RescalePlane, IsRescaleInPlace) {
  constexpr int kSide = 64;
  OpticsEngine engine(kSide);
  Plane plane, expected(kSide * kSide);
  for (int i = 0; i < kSide * kSide; ++i) plane.push_back(1.5 + std::sin(0.31 * (i / kSide)) * std::cos(0.17 * i));
  Rescale(plane.data(), kSide, 1.37, expected.data());
  engine.RescalePlane(plane.data(), 1.37);
  EXPECT_EQ(plane, expected);
}

class WhiteLight : public testing::Test {
 protected:
  struct Part {
    Plane psf;
    double halfWidth;
    double strehl;
  };

  static Part PartOf(double wavelength) {
    OpticsEngine engine(Lopsided().data(), 4.4, 256, 1, 1, 1);
    Part part{Plane(65536), 0.0, 0.0};
    double pitch = 0.0;
    engine.ComputePsf(wavelength, part.psf.data(), &pitch, &part.strehl, 256);
    part.halfWidth = engine.psfHalfWidth;
    return part;
  }

  WhiteLight() { engine_.PolychromaticPsf(white_.data(), &spacing_, 12345); }

  Part blue_ = PartOf(0.000435835), yellow_ = PartOf(0x1.340cf7e020e78p-11), red_ = PartOf(0.0006328);
  OpticsEngine engine_{Lopsided().data(), 4.4, 256, 1, 1, 1};
  Plane white_ = Plane(65536);
  double spacing_ = 0.0;
};

TEST_F(WhiteLight, IsTheWeightedSumOnTheSamplingOfBlueNormalisedUpToTheCentre) {
  OpticsEngine tool;
  Plane sum(65536);
  tool.RescalePlane(yellow_.psf.data(), yellow_.halfWidth / blue_.halfWidth);
  tool.RescalePlane(red_.psf.data(), red_.halfWidth / blue_.halfWidth);
  for (std::size_t i = 0; i < sum.size(); ++i) {
    sum[i] = 0.5 * blue_.psf[i] + 1.0 * yellow_.psf[i] + 0.5 * red_.psf[i];
  }
  constexpr std::size_t kCentre = 128 * 256 + 128;
  EXPECT_NEAR(sum[kCentre], 2.0, 1e-14);
  for (std::size_t i = 0; i < sum.size(); ++i) {
    ASSERT_NEAR(white_[i], i <= kCentre ? sum[i] / sum[kCentre] : sum[i], 1e-14) << i;
  }
  EXPECT_EQ(white_[kCentre], 1.0);
  EXPECT_GT(white_[kCentre + 1], 1.0);  // not divided
}

TEST_F(WhiteLight, IsWiderThanBlueAlone) {
  EXPECT_GT(yellow_.halfWidth / blue_.halfWidth, 1.3);
  EXPECT_GT(red_.halfWidth, yellow_.halfWidth);
}

TEST_F(WhiteLight, LeavesItsPsfWithTheHalfWidthOfYellowAndTheRestOfRed) {
  EXPECT_TRUE(std::equal(white_.begin(), white_.end(), engine_.psfPlane.begin()));
  EXPECT_EQ(engine_.psfHalfWidth, yellow_.halfWidth);
  EXPECT_EQ(engine_.psfWavelength, 0.0006328);
  EXPECT_EQ(engine_.strehlRatio, red_.strehl);
  EXPECT_EQ(engine_.otfValid, 0);
  EXPECT_EQ(spacing_, (blue_.halfWidth + blue_.halfWidth) / 255);
}

TEST_F(WhiteLight, IsWhatImagesAreSeenThroughAfterwards) {
  // A point, so dim that nothing is clipped, shows the PSF squared; that of red alone would be narrower.
  Plane object(65536, 0.0), image(65536), monochromatic(65536);
  object[100 * 256 + 90] = 0.25;
  engine_.normaliseOutput = 0;
  engine_.PatternRetinalImage(image.data(), object.data(), 256);
  OpticsEngine other(Lopsided().data(), 4.4, 256, 1, 1, 1);
  Plane psf(65536);
  double pitch = 0.0, strehl = 0.0;
  other.ComputePsf(0.0006328, psf.data(), &pitch, &strehl, 256);
  other.normaliseOutput = 0;
  other.PatternRetinalImage(monochromatic.data(), object.data(), 256);
  EXPECT_NE(image, monochromatic);
}

}  // namespace
}  // namespace orvanel
