// Tests the general transform and the power spectrum: direct sums, identities, and invalid arguments.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "optics/lines.h"
#include "orvanel/transforms.h"
#include "tests/support/error_bounds.h"
#include "tests/support/reference.h"

namespace orvanel {
namespace {

static_assert(kFft2Error >= reference::kTransformError, "the derivation in the tests");

using reference::At;
using reference::ComplexPlane;
using reference::Noise;
using reference::Plane;
using reference::Real;
using reference::RelativeError;
using reference::ToReal;

struct NoisePlane {
  explicit NoisePlane(int samples) : re(Noise(samples, 17)), im(Noise(samples, 401)) {}
  ComplexPlane Exact() const { return {ToReal(re), ToReal(im)}; }
  bool operator==(const NoisePlane&) const = default;

  std::vector<double> re, im;
};

double Energy(const NoisePlane& plane) {
  double sum = 0.0;
  for (const double v : plane.re) sum += v * v;
  for (const double v : plane.im) sum += v * v;
  return sum;
}

// What Zfft2dc says on standard error for these arguments.
std::string ReportOf(double* re, double* im, int m, int n, int sign) {
  testing::internal::CaptureStderr();
  Zfft2dc(re, im, m, n, sign);
  return testing::internal::GetCapturedStderr();
}

TEST(Fft2, IsTheDirectSumInBothDirections) {
  for (const int n : {1, 2, 4, 32, 256}) {
    for (const int direction : {0, 1}) {
      NoisePlane plane(n * n);
      const ComplexPlane exact = reference::Fft2(plane.Exact(), n, direction);
      EXPECT_TRUE(Fft2(plane.re.data(), plane.im.data(), n, direction));
      EXPECT_LE(RelativeError(plane.Exact(), exact), kFft2Error) << n << ", " << direction;
    }
  }
}

TEST(Fft2, ThereAndBackIsTheInputEitherWay) {
  for (const int first : {0, 1}) {
    NoisePlane plane(64 * 64);
    Fft2(plane.re.data(), plane.im.data(), 64, first);
    Fft2(plane.re.data(), plane.im.data(), 64, 1 - first);
    EXPECT_LE(RelativeError(plane.Exact(), NoisePlane(64 * 64).Exact()), 2 * kFft2Error);
  }
}

TEST(Fft2, KeepsTheEnergyTimesOrOverTheNumberOfSamples) {
  // Parseval: sum |X|^2 = n^2 sum |x|^2 unscaled, sum |x|^2 / n^2 scaled by 1 / n^2.
  const double before = Energy(NoisePlane(128 * 128));
  NoisePlane scaled(128 * 128), unscaled(128 * 128);
  Fft2(scaled.re.data(), scaled.im.data(), 128, 0);
  Fft2(unscaled.re.data(), unscaled.im.data(), 128, 1);
  EXPECT_NEAR(Energy(scaled) * 16384.0 / before, 1.0, 1e-13);
  EXPECT_NEAR(Energy(unscaled) / 16384.0 / before, 1.0, 1e-13);
}

TEST(Fft2, OfAPupilOfOnesGivesTheirShareAtTheFirstSample) {
  std::vector<double> re(256 * 256), im(256 * 256);
  for (std::size_t i = 0; i < 12853; ++i) re[i * 5 % re.size()] = 1.0;
  Fft2(re.data(), im.data(), 256, 0);
  EXPECT_NEAR(re[0], 12853.0 / 65536.0, 1e-15);
  EXPECT_NEAR(im[0], 0.0, 1e-15);
}

TEST(Fft2, BackwardTurnsWithAPositiveExponentAlongRowsAndColumns) {
  // A point at (1, 0) gives exp(+2 pi i p / 8) / 64 whatever q, one at (0, 1) the same in q.
  const double root = std::sqrt(0.5) / 64.0;
  std::vector<double> re(64), im(64);
  re[8] = 1.0;
  Fft2(re.data(), im.data(), 8, 0);
  EXPECT_NEAR(re[1 * 8 + 3], root, 1e-17);
  EXPECT_NEAR(im[1 * 8 + 3], root, 1e-17);
  std::fill(re.begin(), re.end(), 0.0);
  std::fill(im.begin(), im.end(), 0.0);
  re[1] = 1.0;
  Fft2(re.data(), im.data(), 8, 1);
  EXPECT_NEAR(re[5 * 8 + 1], 64.0 * root, 1e-15);
  EXPECT_NEAR(im[5 * 8 + 1], -64.0 * root, 1e-15);
}

TEST(Fft2, LeavesThePlanesForAnyOtherDirectionAndIsStillTrue) {
  for (const int direction : {2, -1, -2, 100}) {
    NoisePlane plane(32 * 32);
    EXPECT_TRUE(Fft2(plane.re.data(), plane.im.data(), 32, direction));
    EXPECT_EQ(plane, NoisePlane(32 * 32)) << direction;
  }
}

TEST(Fft2, OfASideThatIsNoPowerOfTwoReportsAndIsStillTrue) {
  NoisePlane plane(12 * 12);
  testing::internal::CaptureStderr();
  EXPECT_TRUE(Fft2(plane.re.data(), plane.im.data(), 12, 0));
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(plane, NoisePlane(12 * 12));
}

TEST(Zfft2dc, TakesOblongPlanes) {
  for (const auto& [rows, columns] : {std::pair(8, 32), std::pair(64, 2), std::pair(4, 128)}) {
    for (const int sign : {1, -1}) {
      NoisePlane plane(rows * columns);
      ComplexPlane exact = reference::Dft2(plane.Exact(), rows, columns, sign);
      const Real scale = sign == 1 ? Real{1} / (rows * columns) : Real{1};
      for (Plane* part : {&exact.re, &exact.im}) {
        for (Real& v : *part) v *= scale;
      }
      Zfft2dc(plane.re.data(), plane.im.data(), rows, columns, sign);
      EXPECT_LE(RelativeError(plane.Exact(), exact), kFft2Error) << rows << " x " << columns << ", " << sign;
    }
  }
}

TEST(Zfft2dc, LeavesAnAxisOfLengthOneAsItIs) {
  NoisePlane single(1);
  Zfft2dc(single.re.data(), single.im.data(), 1, 1, 1);
  EXPECT_EQ(single, NoisePlane(1));
  // One row is transformed along itself only, and one column too, to the same numbers.
  NoisePlane row(16), column(16);
  Zfft2dc(row.re.data(), row.im.data(), 1, 16, 1);
  Zfft2dc(column.re.data(), column.im.data(), 16, 1, 1);
  EXPECT_EQ(row, column);
  const std::vector<double> input = Noise(16, 17);
  EXPECT_NEAR(row.re[0], std::accumulate(input.begin(), input.end(), 0.0) / 16.0, 1e-16);
}

TEST(Zfft2dc, GivesBitReversedOrderForSignsOfTwo) {
  constexpr int kRows = 8, kColumns = 32;
  for (const int sign : {1, -1}) {
    NoisePlane natural(kRows * kColumns), reversed(kRows * kColumns);
    Zfft2dc(natural.re.data(), natural.im.data(), kRows, kColumns, sign);
    Zfft2dc(reversed.re.data(), reversed.im.data(), kRows, kColumns, 2 * sign);
    const std::array<int, kRows> row = {0, 4, 2, 6, 1, 5, 3, 7};
    for (int r = 0; r < kRows; ++r) {
      for (int c = 0; c < kColumns; ++c) {
        const std::size_t from = At(row[static_cast<std::size_t>(r)],
                                    static_cast<int>(BitReversed(static_cast<std::size_t>(c), 5)), kColumns);
        EXPECT_EQ(reversed.re[At(r, c, kColumns)], natural.re[from]) << sign << ": " << r << "," << c;
        EXPECT_EQ(reversed.im[At(r, c, kColumns)], natural.im[from]) << sign << ": " << r << "," << c;
      }
    }
  }
}

TEST(Zfft2dc, ReportsTheFirstBadArgumentAndTransformsNothing) {
  NoisePlane plane(64);
  double* const re = plane.re.data();
  double* const im = plane.im.data();
  EXPECT_EQ(ReportOf(nullptr, im, 8, 8, 1), "MKL ERROR : Parameter 1 of ZFFT2DC\n");
  EXPECT_EQ(ReportOf(re, nullptr, 8, 8, 1), "MKL ERROR : Parameter 2 of ZFFT2DC\n");
  for (const int length : {0, -8, 3, 6, 12}) {
    EXPECT_EQ(ReportOf(re, im, length, 8, 1), "MKL ERROR : Parameter 3 of ZFFT2DC\n") << length;
    EXPECT_EQ(ReportOf(re, im, 8, length, 1), "MKL ERROR : Parameter 4 of ZFFT2DC\n") << length;
  }
  EXPECT_EQ(ReportOf(re, im, 8, 8, 3), "MKL ERROR : Parameter 5 of ZFFT2DC\n");
  EXPECT_EQ(ReportOf(re, im, 8, 8, -3), "MKL ERROR : Parameter 5 of ZFFT2DC\n");
  EXPECT_EQ(ReportOf(nullptr, nullptr, 0, 0, 9), "MKL ERROR : Parameter 1 of ZFFT2DC\n");
  EXPECT_EQ(plane, NoisePlane(64));
}

TEST(Zfft2dc, ReportsNothingForGoodArguments) {
  NoisePlane plane(64);
  for (const int sign : {-2, -1, 0, 1, 2}) EXPECT_EQ(ReportOf(plane.re.data(), plane.im.data(), 8, 8, sign), "");
}

TEST(Zfft2dc, OfSignZeroTransformsNothing) {
  NoisePlane plane(64);
  Zfft2dc(plane.re.data(), plane.im.data(), 8, 8, 0);
  EXPECT_EQ(plane, NoisePlane(64));
}

TEST(BitReversal, ReversesAsManyDigitsAsAsked) {
  EXPECT_EQ(BitReversed(1, 8), 128u);
  EXPECT_EQ(BitReversed(0b00110, 5), 0b01100u);
  EXPECT_EQ(BitReversed(0b00111, 5), 0b11100u);
  EXPECT_EQ(BitReversed(5, 0), 0u);
}

TEST(ShiftedPowerSpectrum, MovesEachSampleByHalfThePlane) {
  const auto landing = [](int row, int column) {
    std::vector<double> re(65536), im(65536), out(65536, -1.0);
    re[At(row, column, 256)] = 3.0;
    im[At(row, column, 256)] = 4.0;
    ShiftedPowerSpectrum(out.data(), re.data(), im.data(), 256);
    const auto found = std::find(out.begin(), out.end(), 25.0) - out.begin();
    EXPECT_EQ(std::count(out.begin(), out.end(), 0.0), 65535);
    return std::pair(static_cast<int>(found / 256), static_cast<int>(found % 256));
  };
  EXPECT_EQ(landing(0, 0), std::pair(128, 128));
  EXPECT_EQ(landing(128, 128), std::pair(0, 0));
  EXPECT_EQ(landing(0, 255), std::pair(128, 127));
  EXPECT_EQ(landing(200, 30), std::pair(72, 158));
}

TEST(ShiftedPowerSpectrum, TwiceMovedIsWhereItWas) {
  const std::vector<double> re = Noise(64, 5), zero(64, 0.0);
  std::vector<double> once(64), twice(64);
  ShiftedPowerSpectrum(once.data(), re.data(), zero.data(), 8);
  ShiftedPowerSpectrum(twice.data(), once.data(), zero.data(), 8);
  for (std::size_t i = 0; i < 64; ++i) EXPECT_EQ(twice[i], (re[i] * re[i]) * (re[i] * re[i]));
}

TEST(ShiftedPowerSpectrum, IsTheReferencesToTheBit) {
  const NoisePlane plane(64 * 64);
  std::vector<double> power(64 * 64);
  ShiftedPowerSpectrum(power.data(), plane.re.data(), plane.im.data(), 64);
  EXPECT_EQ(power, reference::ShiftedPowerSpectrum(plane.re, plane.im, 64));
}

}  // namespace
}  // namespace orvanel
