// Tests the modulation and phase transfer function against direct sums over the PSF, and the scales of the sections.
#include "optics/mtf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <numeric>
#include <vector>

#include "orvanel/optics_engine.h"

namespace orvanel {
namespace {

using Coefficients = std::array<double, kCoefficients>;
using Complex = std::complex<long double>;

// Rounding of the transform, relative to the zero frequency.
constexpr double kRounding = 1e-14;

// What the disc of samples costs the MTF of a perfect eye: the overlap of 12,853 samples with themselves, counted,
// departs from that of a circle by at most 6.73e-4, at the last sample before the cut-off.
constexpr double kDiscSampling = 6.8e-4;

// The share of the pupil's samples that lie in the pupil again when it is moved by (u, v).
double Overlap(int u, int v) {
  const auto inside = [](int x, int y) { return x * x + y * y <= 4096; };
  int pupil = 0, both = 0;
  for (int y = -64; y <= 64; ++y) {
    for (int x = -64; x <= 64; ++x) {
      pupil += inside(x, y);
      both += inside(x, y) && inside(x + u, y + v);
    }
  }
  return static_cast<double>(both) / pupil;
}

struct Result {
  OpticsEngine engine;
  std::vector<double> mtf = std::vector<double>(65536, -1.0);
  std::array<double, 128> row{}, column{}, limit{};
  double step = 0.0;

  double operator()(int r, int c) const { return mtf[static_cast<std::size_t>(256 * r + c)]; }
};

Result Computed(const Coefficients& c, double pupil = 3.0) {
  Result result{OpticsEngine(c.data(), pupil, 256, 1, 1, 1)};
  EXPECT_TRUE(result.engine.ComputeMtf(kWavelength, result.mtf.data(), &result.step, result.row.data(),
                                       result.column.data(), result.limit.data(), 256));
  return result;
}

// Different along rows and columns, and without any symmetry.
Coefficients Lopsided() {
  Coefficients c{};
  c[3] = 0.11 * kWavelength;
  c[4] = 0.27 * kWavelength;
  c[5] = 0.31 * kWavelength;
  c[7] = 0.42 * kWavelength;
  c[8] = -0.23 * kWavelength;
  c[16] = 0.07 * kWavelength;
  return c;
}

// sum of psf exp(-2 pi i (u x + v y) / 256) / sum of psf, x and y from the centre.
Complex TransferFunction(const GridPlane& psf, int u, int v) {
  Complex sum = 0.0L;
  long double total = 0.0L;
  for (int r = 0; r < 256; ++r) {
    for (int c = 0; c < 256; ++c) {
      const int turns = (u * (c - 128) + v * (r - 128)) % 256;
      sum += std::polar(static_cast<long double>(psf(r, c)), -6.283185307179586476925L * turns / 256);
      total += psf(r, c);
    }
  }
  return sum / total;
}

TEST(Mtf, IsTheModulusOfThePsfsTransform) {
  const Result result = Computed(Lopsided());
  for (const auto& [u, v] : {std::pair{5, 0}, {0, 5}, {17, -9}, {-3, 40}, {-60, -11}}) {
    EXPECT_NEAR(result(128 + v, 128 + u), static_cast<double>(std::abs(TransferFunction(result.engine.psfPlane, u, v))),
                kRounding)
        << u << "," << v;
  }
}

TEST(Mtf, PhaseIsTheArgumentWithANegativeExponent) {
  const Result result = Computed(Lopsided());
  for (const auto& [u, v] : {std::pair{5, 0}, {0, 5}, {17, -9}, {-3, 40}}) {
    const Complex otf = TransferFunction(result.engine.psfPlane, u, v);
    ASSERT_GT(std::abs(std::arg(otf)), 0.01L) << "too small to tell its sign";
    EXPECT_NEAR(result.engine.phasePlane(128 + v, 128 + u), static_cast<double>(std::arg(otf)),
                kRounding / static_cast<double>(std::abs(otf)))
        << u << "," << v;
  }
}

TEST(Mtf, IsExactlyOneAtTheCentreWithoutPhase) {
  for (const Coefficients& c : {Coefficients{}, Lopsided()}) {
    const Result result = Computed(c);
    EXPECT_EQ(result(128, 128), 1.0);
    EXPECT_NEAR(result.engine.phasePlane(128, 128), 0.0, kRounding);
  }
}

TEST(Mtf, StaysBetweenZeroAndOneAndLooksTheSameUpsideDown) {
  const Result result = Computed(Lopsided());
  for (int r = 1; r < 256; ++r) {
    for (int c = 1; c < 256; ++c) {
      ASSERT_GE(result(r, c), 0.0);
      ASSERT_LE(result(r, c), 1.0 + kRounding);
      ASSERT_NEAR(result(r, c), result(256 - r, 256 - c), kRounding);
    }
  }
}

TEST(Mtf, OfAPerfectEyeIsTheOverlapOfItsPupil) {
  const Result result = Computed({});
  for (const auto& [u, v] : {std::pair{1, 0}, {0, 127}, {64, 0}, {33, -70}, {-90, 90}, {91, 90}}) {
    EXPECT_NEAR(result(128 + v, 128 + u), Overlap(u, v), kRounding) << u << "," << v;
  }
}

TEST(Mtf, OfAPerfectEyeIsTheDiffractionLimit) {
  const Result result = Computed({});
  for (std::size_t i = 0; i < 128; ++i) {
    EXPECT_NEAR(result.row[i], result.limit[i], kDiscSampling) << i;
    EXPECT_NEAR(result.column[i], result.limit[i], kDiscSampling) << i;
  }
  // And nothing beyond the cut-off, in the corners.
  EXPECT_NEAR(result(128 + 95, 128 + 95), 0.0, kRounding);
}

TEST(Mtf, SectionsGoRightAndDownFromTheCentre) {
  const Result result = Computed(Lopsided());
  for (int i = 0; i < 128; ++i) {
    EXPECT_EQ(result.row[static_cast<std::size_t>(i)], result(128, 128 + i));
    EXPECT_EQ(result.column[static_cast<std::size_t>(i)], result(128 + i, 128));
  }
  EXPECT_GT(std::fabs(result.row[40] - result.column[40]), 0.05);
}

TEST(Mtf, FrequencyStepAndRangeOfAThreeMillimetrePupilAreAsWorkedOut) {
  const Result result = Computed(Lopsided(), 3.0);
  EXPECT_NEAR(result.step, 1.3994789739, 5e-11);
  EXPECT_NEAR(result.step * 127.5, 178.43, 0.005);
}

TEST(Mtf, FrequencyRangeIsTwiceTheOpticalCutOffOfTheStatedPupilBySmallAngles) {
  // d / wavelength per radian, and atan(1/17) instead of 1/17 and 127.5 of 255 samples in between.
  const double cutOff = 3.0 / kWavelength * 3.14159265358979 / 180.0;
  EXPECT_NEAR(Computed({}, 3.0).step * 127.5 / cutOff, 2.0 * (1.0 / 17.0) / std::atan(1.0 / 17.0), 1e-12);
}

TEST(Mtf, DiffractionLimitHasItsKnownValues) {
  const Result result = Computed({});
  EXPECT_NEAR(result.limit[0], 1.000000000000001, 4e-16);
  EXPECT_NEAR(result.limit[1], 0.99005, 5e-6);
  EXPECT_NEAR(result.limit[64], 0.39100, 5e-6);
  EXPECT_NEAR(result.limit[127], 0.00083, 5e-6);
  EXPECT_TRUE(std::is_sorted(result.limit.rbegin(), result.limit.rend()));
}

TEST(Mtf, OfASmallerSizeIsTheMiddlePacked) {
  const Result whole = Computed(Lopsided());
  OpticsEngine engine(Lopsided().data(), 3.0, 256, 1, 1, 1);
  std::vector<double> part(65536, -1.0);
  std::array<double, 101> row{}, column{}, limit{};
  double step = 0.0;
  for (const int s : {202, 101}) {
    row.fill(-5.0);
    engine.ComputeMtf(kWavelength, part.data(), &step, row.data(), column.data(), limit.data(), s);
    for (int r = 0; r < s; ++r) {
      for (int c = 0; c < s; ++c) {
        ASSERT_EQ(part[static_cast<std::size_t>(r * s + c)], whole(128 - s / 2 + r, 128 - s / 2 + c));
      }
    }
    // Behind the MTF the output has samples of the PSF.
    for (auto i = static_cast<std::size_t>(s * s); i < part.size(); ++i) ASSERT_EQ(part[i], engine.psfPlane[i]) << i;
    std::fill(part.begin(), part.end(), -1.0);
    for (std::size_t i = 0; i < static_cast<std::size_t>(s / 2); ++i) {
      ASSERT_EQ(row[i], whole.row[i]);
      ASSERT_EQ(column[i], whole.column[i]);
      ASSERT_EQ(limit[i], whole.limit[i]);
    }
  }
  EXPECT_EQ(row[50], -5.0);
  EXPECT_EQ(step, whole.step);
}

TEST(Mtf, AlwaysComputesThePsfAfresh) {
  Result result = Computed(Lopsided());
  const std::vector<double> psf(result.engine.psfPlane.begin(), result.engine.psfPlane.end());
  std::fill(result.engine.psfPlane.begin(), result.engine.psfPlane.end(), 0.5);
  result.engine.otfValid = 1;
  result.engine.ComputeMtf(kWavelength, result.mtf.data(), &result.step, result.row.data(), result.column.data(),
                           result.limit.data(), 256);
  EXPECT_TRUE(std::equal(psf.begin(), psf.end(), result.engine.psfPlane.begin()));
  EXPECT_EQ(result.engine.otfValid, 0);
}

TEST(Mtf, OfAnEmptyPupilIsNotANumberAndTheNextEyeIsRight) {
  Coefficients broken{};
  broken[20] = std::nan("");
  Result result = Computed(broken);
  EXPECT_TRUE(std::isnan(result(128, 128)));
  result.engine.synthesizeWavefront(Lopsided().data(), 3.0, 1, 1, 1);
  result.engine.ComputeMtf(kWavelength, result.mtf.data(), &result.step, result.row.data(), result.column.data(),
                           result.limit.data(), 256);
  EXPECT_EQ(result.mtf, Computed(Lopsided()).mtf);
}

TEST(Mtf, IsTheModulusOfTheTransferFunctionDividedByThatAtTheCentreToTheBit) {
  Result result = Computed(Lopsided());
  result.engine.EnsureOtf();
  const auto modulus = [&](int row, int column) {
    const double re = result.engine.otfRealPlane(row, column), im = result.engine.otfImagPlane(row, column);
    return std::sqrt(re * re + im * im);
  };
  for (int r = 0; r < 256; ++r) {
    for (int c = 0; c < 256; ++c) {
      ASSERT_EQ(result(r, c), modulus((r + 128) % 256, (c + 128) % 256) / modulus(0, 0)) << r << "," << c;
    }
  }
}

// What ComputeMtf makes of its PSF, written out: the transform told 8 whatever the grid, moduli divided by the
// centre's, and arguments.
TEST(Mtf, TellsTheTransformOfTheFullGridOnEveryGrid) {
  constexpr int n = 128;
  OpticsEngine engine(Lopsided().data(), 3.0, n, 1, 1, 1);
  std::vector<double> mtf(n * n);
  double step = 0.0;
  engine.ComputeMtf(kWavelength, mtf.data(), &step, nullptr, nullptr, nullptr, n);
  std::vector<double> re(engine.psfPlane.begin(), engine.psfPlane.end()), im(re.size(), 0.0);
  engine.CentredFft2(re.data(), im.data(), 1, n, 8);
  const auto modulus = [&](std::size_t i) { return std::sqrt(re[i] * re[i] + im[i] * im[i]); };
  for (std::size_t i = 0; i < mtf.size(); ++i) {
    ASSERT_EQ(mtf[i], modulus(i) / modulus(n / 2 * n + n / 2)) << i;
    ASSERT_NEAR(engine.phasePlane.data()[i], std::atan2(im[i], re[i]), 1e-15) << i;
  }
}

TEST(Mtf, OnASmallerGridScalesItsAxesByThatGrid) {
  OpticsEngine engine(Lopsided().data(), 3.0, 128, 1, 1, 1);
  std::vector<double> mtf(128 * 128);
  std::array<double, 64> row{}, column{}, limit{};
  double step = 0.0;
  engine.ComputeMtf(kWavelength, mtf.data(), &step, row.data(), column.data(), limit.data(), 128);
  // The half width is halved too, so that the range stays, over 63.5 steps.
  EXPECT_NEAR(step * 63.5, 178.43356917149, 1e-9);
  EXPECT_NEAR(limit[32], 0.39100221895577, 1e-13);
}

}  // namespace
}  // namespace orvanel
