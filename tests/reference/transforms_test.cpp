// Terms and transforms, each by itself.
#include <gtest/gtest.h>
#include <orvanel/optics_engine.h>

#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "optics/elementary.h"
#include "optics/fft.h"
#include "optics/zernike.h"
#include "tests/reference/error_bounds.h"
#include "tests/support/reference.h"

namespace orvanel {
namespace {

using reference::ComplexPlane;
using reference::kCentredTransformError;
using reference::kTransformError;
using reference::kUlp;
using reference::Near;
using reference::Noise;
using reference::Plane;
using reference::Real;
using reference::Record;
using reference::RelativeError;
using reference::TermMagnitude;
using reference::ToReal;

TEST(LibraryTerms, AllFortyFiveAreTheirFactorialFormula) {
  // At most 15 monomials of 9 factors: 8 + 14 roundings. They hold X and Y up to the 8th power, made by multiplication.
  constexpr Real kTermRoundings = 22;
  const double points[][2] = {{0.317, -0.733}, {-0.919, 0.217}, {-0.0137, -0.573}, {0.6661, 0.7229}};
  for (int n = 0; n <= 8; ++n) {
    for (int k = 0; k <= n; ++k) {
      for (const auto& [x, y] : points) {
        const int m = -n + 2 * k;
        const double actual =
            ZernikeTermTable[static_cast<std::size_t>(n)][static_cast<std::size_t>(k)](PowersOf(x), PowersOf(y));
        EXPECT_PRED3(Near, actual, reference::ZernikeTerm(n, m, x, y),
                     kTermRoundings * kUlp * TermMagnitude(n, std::abs(m)))
            << n << ", " << m;
      }
    }
  }
}

struct NoisePlane {
  explicit NoisePlane(int samples) : re(Noise(samples, 17)), im(Noise(samples, 401)) {}
  ComplexPlane Exact() const { return {ToReal(re), ToReal(im)}; }
  std::vector<double> re, im;
};

TEST(LibraryTransforms, Fft2IsTheDirectSum) {
  for (const int n : {4, 32, 256}) {
    OpticsEngine engine(n);
    for (const int direction : {0, 1}) {
      NoisePlane plane(n * n);
      const ComplexPlane exact = reference::Fft2(plane.Exact(), n, direction);
      EXPECT_TRUE(engine.Fft2(plane.re.data(), plane.im.data(), n, direction));
      const Real error = RelativeError(plane.Exact(), exact);
      Record(direction == 0 ? "backward" : "forward", error, kTransformError);
      EXPECT_LE(error, kTransformError) << n << ", " << direction;
    }
  }
}

TEST(LibraryTransforms, Fft2LeavesThePlanesForAnyOtherDirection) {
  OpticsEngine engine(32);
  for (const int direction : {2, -1}) {
    NoisePlane plane(32 * 32);
    EXPECT_TRUE(engine.Fft2(plane.re.data(), plane.im.data(), 32, direction));
    EXPECT_EQ(plane.re, NoisePlane(32 * 32).re);
    EXPECT_EQ(plane.im, NoisePlane(32 * 32).im);
  }
}

TEST(LibraryTransforms, TheGeneralFormTakesOblongPlanes) {
  for (const auto& [rows, columns] : {std::pair(8, 32), std::pair(64, 2), std::pair(1, 16), std::pair(16, 1)}) {
    for (const int sign : {1, -1}) {
      NoisePlane plane(rows * columns);
      ComplexPlane exact = reference::Dft2(plane.Exact(), rows, columns, sign);
      for (Plane* part : {&exact.re, &exact.im}) {
        for (Real& v : *part) v = sign == 1 ? v / (rows * columns) : v;
      }
      Zfft2dc(plane.re.data(), plane.im.data(), rows, columns, sign);
      EXPECT_LE(RelativeError(plane.Exact(), exact), kTransformError) << rows << " x " << columns << ", " << sign;
    }
  }
}

TEST(LibraryTransforms, CentredFft2IsTheDirectSumAroundTheCentre) {
  for (const auto& [n, log2n] : {std::pair(4, 2), std::pair(32, 5), std::pair(256, 8)}) {
    OpticsEngine engine(n);
    for (const int direction : {1, 0, -1, 5, -7}) {
      NoisePlane plane(n * n);
      const ComplexPlane exact = reference::CentredFft2(plane.Exact(), n, direction);
      engine.CentredFft2(plane.re.data(), plane.im.data(), direction, n, log2n);
      const Real error = RelativeError(plane.Exact(), exact);
      Record(direction >= 0 ? "negative" : "positive", error, kCentredTransformError);
      EXPECT_LE(error, kCentredTransformError) << n << ", " << direction;
    }
  }
}

TEST(LibraryTransforms, CentredFft2TakesTheStatedStepsToTheBit) {
  const auto sine = [](double x) { return SineAndCosine(x).sine; };
  const auto cosine = [](double x) { return SineAndCosine(x).cosine; };
  for (const auto& [n, log2n] : {std::pair(4, 2), std::pair(32, 5), std::pair(256, 8)}) {
    OpticsEngine engine(n);
    for (const int direction : {1, -1}) {
      NoisePlane actual(n * n), expected(n * n);
      engine.CentredFft2(actual.re.data(), actual.im.data(), direction, n, log2n);
      reference::CentredFft2Steps(expected.re, expected.im, direction, n, log2n, sine, cosine);
      EXPECT_EQ(actual.re, expected.re) << n << ", " << direction;
      EXPECT_EQ(actual.im, expected.im) << n << ", " << direction;
    }
  }
}

TEST(LibraryTransforms, PowerSpectrumAndRecentringAreTheReferencesToTheBit) {
  const int n = 64;
  OpticsEngine engine(n);
  const NoisePlane plane(n * n);
  std::vector<double> power(plane.re.size());
  engine.ShiftedPowerSpectrum(power.data(), plane.re.data(), plane.im.data());
  EXPECT_EQ(power, reference::ShiftedPowerSpectrum(plane.re, plane.im, n));
  for (const int index : {0, 1, 31, 32, 33, 63}) {
    std::vector<double> line = Noise(n, 3);
    engine.RecentreLine(line.data(), index);
    EXPECT_EQ(line, reference::RecentreLine(Noise(n, 3), index)) << index;
  }
}

}  // namespace
}  // namespace orvanel
