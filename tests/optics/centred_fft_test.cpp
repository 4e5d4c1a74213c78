// Tests the centred transform: direct sums around the centre, its steps to the bit, closed forms.
#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "orvanel/transforms.h"
#include "tests/support/error_bounds.h"
#include "tests/support/plain.h"
#include "tests/support/reference.h"

namespace orvanel {
namespace {

static_assert(kCentredFft2Error >= reference::kCentredTransformError, "the derivation in the tests");

using reference::ComplexPlane;
using reference::Noise;
using reference::RelativeError;
using reference::ToReal;

struct NoisePlane {
  explicit NoisePlane(int samples) : re(Noise(samples, 23)), im(Noise(samples, 977)) {}
  ComplexPlane Exact() const { return {ToReal(re), ToReal(im)}; }

  std::vector<double> re, im;
};

double Energy(const NoisePlane& plane) {
  double sum = 0.0;
  for (const double v : plane.re) sum += v * v;
  for (const double v : plane.im) sum += v * v;
  return sum;
}

TEST(CentredFft2, IsTheDirectSumAroundTheCentre) {
  for (const auto& [n, log2n] : {std::pair(4, 2), std::pair(32, 5), std::pair(256, 8)}) {
    for (const int direction : {1, 0, -1, 5, -7}) {
      NoisePlane plane(n * n);
      const ComplexPlane exact = reference::CentredFft2(plane.Exact(), n, direction);
      CentredFft2(plane.re.data(), plane.im.data(), direction, n, log2n);
      EXPECT_LE(RelativeError(plane.Exact(), exact), kCentredFft2Error) << n << ", " << direction;
    }
  }
}

TEST(CentredFft2, TakesItsStepsToTheBit) {
  for (const auto& [n, log2n] : {std::pair(4, 2), std::pair(32, 5), std::pair(128, 7), std::pair(256, 8)}) {
    for (const int direction : {1, -1}) {
      NoisePlane actual(n * n);
      plain::ComplexPlane expected{actual.re, actual.im};
      CentredFft2(actual.re.data(), actual.im.data(), direction, n, log2n);
      plain::CentredFft2(expected, direction, n, log2n);
      EXPECT_EQ(actual.re, expected.re) << n << ", " << direction;
      EXPECT_EQ(actual.im, expected.im) << n << ", " << direction;
    }
  }
}

TEST(CentredFft2, OfAPointAtTheCentreIsConstant) {
  std::vector<double> re(65536), im(65536);
  re[128 * 256 + 128] = 1.0;
  CentredFft2(re.data(), im.data(), 1, 256, 8);
  for (std::size_t i = 0; i < re.size(); ++i) {
    ASSERT_NEAR(re[i], 1.0 / 256.0, 1e-17);
    ASSERT_NEAR(im[i], 0.0, 1e-17);
  }
}

TEST(CentredFft2, OfAConstantIsAPointAtTheCentre) {
  std::vector<double> re(65536, 1.0), im(65536);
  CentredFft2(re.data(), im.data(), 1, 256, 8);
  EXPECT_NEAR(re[128 * 256 + 128], 256.0, 1e-12);
  re[128 * 256 + 128] = 0.0;
  for (std::size_t i = 0; i < re.size(); ++i) {
    ASSERT_NEAR(re[i], 0.0, 1e-12);
    ASSERT_NEAR(im[i], 0.0, 1e-12);
  }
}

TEST(CentredFft2, TurnsWithANegativeExponentUnlessTheDirectionIsNegative) {
  // A point one row below the centre: exp(-2 pi i p' / 8) / 8.
  for (const int direction : {1, -1}) {
    std::vector<double> re(64), im(64);
    re[5 * 8 + 4] = 1.0;
    CentredFft2(re.data(), im.data(), direction, 8, 3);
    EXPECT_NEAR(re[5 * 8 + 2], std::sqrt(0.5) / 8.0, 1e-16);
    EXPECT_NEAR(im[5 * 8 + 2], -direction * std::sqrt(0.5) / 8.0, 1e-16);
    EXPECT_NEAR(im[4 * 8 + 2], 0.0, 1e-16);
  }
}

TEST(CentredFft2, KeepsTheEnergy) {
  NoisePlane plane(256 * 256);
  const double before = Energy(plane);
  CentredFft2(plane.re.data(), plane.im.data(), 1, 256, 8);
  EXPECT_NEAR(Energy(plane) / before, 1.0, 1e-13);
}

TEST(CentredFft2, ThereAndBackIsTheInput) {
  NoisePlane plane(64 * 64);
  CentredFft2(plane.re.data(), plane.im.data(), 1, 64, 6);
  CentredFft2(plane.re.data(), plane.im.data(), -1, 64, 6);
  EXPECT_LE(RelativeError(plane.Exact(), NoisePlane(64 * 64).Exact()), 2 * kCentredFft2Error);
}

TEST(CentredFft2, ToldAWrongLogarithmStaysInsideThePlanes) {
  // A canary behind the planes; the sanitizers watch too.
  for (const int log2n : {-1, 0, 3, 8, 40, 100}) {
    std::vector<double> re = Noise(32 * 32 + 1, 3), im = Noise(32 * 32 + 1, 5);
    const double lastRe = re.back(), lastIm = im.back();
    CentredFft2(re.data(), im.data(), 1, 32, log2n);
    EXPECT_EQ(re.back(), lastRe);
    EXPECT_EQ(im.back(), lastIm);
  }
}

}  // namespace
}  // namespace orvanel
