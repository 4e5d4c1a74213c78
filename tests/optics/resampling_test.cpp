// Tests resampling against the convolution written out.
#include "orvanel/resampling.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "optics/samples.h"

namespace orvanel {
namespace {

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

}  // namespace
}  // namespace orvanel
