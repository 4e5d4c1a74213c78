// Resampling against the convolution written out, and the white-light PSF against its three parts.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "optics/samples.h"
#include "orvanel/optics_engine.h"
#include "orvanel/resampling.h"

namespace orvanel {
namespace {

using Coefficients = std::array<double, kCoefficients>;
using Plane = std::vector<double>;

constexpr int kSide = 64;

// 16 products of two weights each, which add up to at most 1.6 in modulus, rounded three times each.
constexpr double kRounding = 16 * 3 * 1.6 * 0x1p-53;

Plane Hills() {
  Plane plane;
  for (int r = 0; r < kSide; ++r) {
    for (int c = 0; c < kSide; ++c) plane.push_back(1.5 + std::sin(0.31 * r) * std::cos(0.17 * c - 0.4) + 0.002 * c);
  }
  return plane;
}

Plane Rescaled(const Plane& plane, double factor) {
  Plane out(plane.size(), -1.0);
  Rescale(plane.data(), kSide, factor, out.data());
  return out;
}

double At(const Plane& plane, int row, int column) { return plane[SampleIndex(row, column, kSide)]; }

// The sum over the whole plane of samples times kernel, at an offset from the centre.
double Convolved(const Plane& plane, double v, double u) {
  double sum = 0.0;
  for (int r = 0; r < kSide; ++r) {
    for (int c = 0; c < kSide; ++c) {
      sum += At(plane, r, c) * CubicKernel(v - (r - kSide / 2)) * CubicKernel(u - (c - kSide / 2));
    }
  }
  return sum;
}

Coefficients Lopsided() {
  Coefficients c{};
  c[4] = 1.1e-4;
  c[7] = 1.6e-4;
  c[8] = -0.9e-4;
  return c;
}

TEST(CubicKernel, IsOneAtZeroAndZeroAtTheOtherSamples) {
  EXPECT_EQ(CubicKernel(0.0), 1.0);
  for (const double x : {1.0, 2.0, 2.5, 1e9}) EXPECT_EQ(CubicKernel(x), 0.0) << x;
}

TEST(CubicKernel, IsEvenWithTheKnownValuesBetween) {
  EXPECT_DOUBLE_EQ(CubicKernel(0.5), 0.625);
  EXPECT_DOUBLE_EQ(CubicKernel(1.5), -0.125);
  for (const double x : {0.3, 0.99, 1.01, 1.7}) EXPECT_EQ(CubicKernel(-x), CubicKernel(x));
}

TEST(CubicKernel, WeightsOfOnePointAddUpToOne) {
  for (double f = 0.0; f < 1.0; f += 0.0625) {
    EXPECT_NEAR(CubicKernel(1.0 + f) + CubicKernel(f) + CubicKernel(1.0 - f) + CubicKernel(2.0 - f), 1.0, 1e-15);
  }
}

TEST(Rescale, ByOneKeepsTheInsideAndClearsTheBorder) {
  const Plane plane = Hills();
  const Plane out = Rescaled(plane, 1.0);
  for (int r = 0; r < kSide; ++r) {
    for (int c = 0; c < kSide; ++c) {
      // Offsets -29 to 29: three samples at the top and left, two at the bottom and right are lost.
      const bool inside = std::abs(r - 32) <= 29 && std::abs(c - 32) <= 29;
      ASSERT_EQ(At(out, r, c), inside ? At(plane, r, c) : 0.0) << r << "," << c;
    }
  }
}

TEST(Rescale, IsTheCubicConvolutionAboutTheCentre) {
  const Plane plane = Hills();
  for (const double factor : {1.37, 0.81, 1.0 / 3.0, -1.2}) {
    const Plane out = Rescaled(plane, factor);
    for (int r = 0; r < kSide; r += 3) {
      for (int c = 0; c < kSide; c += 5) {
        const double v = (r - 32) / factor, u = (c - 32) / factor;
        if (std::fabs(v) > 28.0 || std::fabs(u) > 28.0) continue;
        ASSERT_NEAR(At(out, r, c), Convolved(plane, v, u), 3.0 * kRounding) << r << "," << c << " by " << factor;
      }
    }
  }
}

TEST(Rescale, LosesWhatLiesBeyondItsBounds) {
  const Plane plane(kSide * kSide, 1.0);
  const Plane out = Rescaled(plane, 0.5);  // offsets up to 64 in the source
  // u = 2 dx: first = u for u > 0 below 30, so dx up to 14; first = u - 1 from -30 on, so dx from -14.
  EXPECT_EQ(At(out, 32, 32 + 14), 1.0);
  EXPECT_EQ(At(out, 32, 32 + 15), 0.0);
  EXPECT_EQ(At(out, 32, 32 - 14), 1.0);
  EXPECT_EQ(At(out, 32, 32 - 15), 0.0);
  // Between samples: u = 29.4 still counts, 30.1 does not; -28.9 is cut to -29, -29.1 to -30, -30.2 to -31.
  const Plane finer = Rescaled(plane, 20.0 / 29.4);
  EXPECT_NEAR(At(finer, 32, 32 + 20), 1.0, kRounding);
  EXPECT_EQ(At(finer, 32, 32 + 21), 0.0);
  EXPECT_NEAR(At(finer, 32, 32 - 20), 1.0, kRounding);
  EXPECT_EQ(At(finer, 32, 32 - 21), 0.0);
}

TEST(Rescale, CutsWhatIsNegative) {
  Plane plane(kSide * kSide, 0.0);
  plane[SampleIndex(32, 34, kSide)] = 1.0;
  const Plane out = Rescaled(plane, 2.0 / 3.0);  // offset 1 takes from 1.5, half-way between, offset 0 from the centre
  EXPECT_NEAR(At(out, 32, 33), 0.625, 1e-12);
  EXPECT_EQ(At(out, 32, 32), 0.0);
  const Plane finer = Rescaled(plane, 2.0);  // offset 1 takes from 0.5, where the kernel of a sample 1.5 away is -0.125
  EXPECT_EQ(At(finer, 32, 33), 0.0);
}

TEST(Rescale, ByAFactorThatMeansNothingIsBlack) {
  for (const double factor : {0.0, std::nan(""), 1e-300}) {
    const Plane out = Rescaled(Hills(), factor);
    for (int r = 0; r < kSide; ++r) {
      if (r == 32) continue;
      EXPECT_EQ(At(out, r, 40), 0.0) << factor;
    }
  }
}

TEST(Rescale, OfAnEngineWorksInPlace) {
  OpticsEngine engine(kSide);
  Plane plane = Hills();
  engine.RescalePlane(plane.data(), 1.37);
  EXPECT_EQ(plane, Rescaled(Hills(), 1.37));
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
