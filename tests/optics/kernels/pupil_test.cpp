// Tests the step from wavefront to intensity: sine and cosine, pupils at any position, and samples that are not a
// number.
#include <gtest/gtest.h>
#ifdef _WIN32
#include <quadmath.h>
#endif

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "base/elementary.h"
#include "optics/kernels/tables.h"
#include "orvanel/optics_engine.h"
#include "tests/optics/kernels/scratch.h"
#include "tests/optics/kernels/under_test.h"
#include "tests/support/error_bounds.h"
#include "tests/support/every_kernel.h"
#include "tests/support/plain.h"
#include "tests/support/planes.h"

namespace orvanel {
namespace {

using reference::At;
using reference::Noise;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// ---- Sine and cosine

// Larger of both errors.
long double SineCosineError(double x) {
  const under_test::SinCos actual = under_test::SineAndCosine(under_test::Splat(x));
#ifdef _WIN32  // whose sine of long doubles is far from the last digit
  const auto sine = static_cast<long double>(sinq(x)), cosine = static_cast<long double>(cosq(x));
#else
  const long double exact = x, sine = std::sin(exact), cosine = std::cos(exact);
#endif
  return std::max(std::abs(actual.sine[0] - sine), std::abs(actual.cosine[0] - cosine));
}

TEST(KernelSineCosine, KeepsItsBoundUpToTheLargestAngle) {
  std::mt19937_64 random(30);
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  std::uniform_int_distribution<int> exponent(-40, 0);
  long double worst = 0;
  for (int i = 0; i < 500'000; ++i) {
    worst = std::max(worst, SineCosineError(unit(random) * under_test::kLargestAngle));
    worst = std::max(worst, SineCosineError(std::ldexp(unit(random) * under_test::kLargestAngle, exponent(random))));
  }
  worst = std::max(worst, SineCosineError(under_test::kLargestAngle));
  worst = std::max(worst, SineCosineError(-under_test::kLargestAngle));
  EXPECT_LE(worst, under_test::kSineCosineError);
  RecordProperty("error_in_2_to_minus_53", std::to_string(static_cast<double>(worst * 0x1p53L)));
}

TEST(KernelSineCosine, KeepsItsBoundAroundQuartersAndEighthsOfATurn) {
  long double worst = 0;
  for (int k = 0; k < 1'300'000; k += k < 2000 ? 1 : 997) {
    const double middle = k * 0.7853981633974483;
    if (middle > under_test::kLargestAngle) break;
    double x = middle;
    for (int i = 0; i < 8; ++i) {
      worst =
          std::max({worst, SineCosineError(x), SineCosineError(-x), SineCosineError(x + std::ldexp(middle, -40 - i))});
      x = std::nextafter(x, 1e9);
    }
  }
  EXPECT_LE(worst, under_test::kSineCosineError);
  RecordProperty("error_in_2_to_minus_53", std::to_string(static_cast<double>(worst * 0x1p53L)));
}

TEST(KernelSineCosine, OfZeroIsExact) {
  const under_test::SinCos zero = under_test::SineAndCosine(under_test::Splat(-0.0));
  EXPECT_EQ(zero.sine[0], 0.0);
  EXPECT_EQ(zero.cosine[0], 1.0);
}

TEST(KernelPupilFunction, TakesLargeAnglesFromTheTablesLaneByLane) {
  const double turn = kWavelength / 6.28318530717958;
  for (const double angle : {0x1p20, -0x1p20, 0x1.0000001p20, -0x1.7p23, -0x1.23p45, -1e15}) {
    for (const double neighbour : {0.37, 1000.0, 0x1.1p30 * turn}) {
      under_test::V w = under_test::Splat(neighbour);
      w[0] = angle * turn;
      const under_test::Complex field = under_test::PupilFunction(w, under_test::Splat(kWavelength), TransformTables());
      const SineCosine exact = SineAndCosine((w[0] / kWavelength) * 6.28318530717958);
      EXPECT_NEAR(field.re[0], exact.cosine, under_test::kSineCosineError) << angle;
      EXPECT_NEAR(field.im[0], exact.sine, under_test::kSineCosineError) << angle;
    }
  }
}

TEST(KernelPupilFunction, EndsBeyondNineHundredAndNinetyNine) {
  for (const double outside : {std::nextafter(999.0, 1e3), 1000.0, kNan, std::numeric_limits<double>::infinity()}) {
    under_test::V w = under_test::Splat(1e-4);
    w[1] = outside;
    const under_test::Complex field = under_test::PupilFunction(w, under_test::Splat(kWavelength), TransformTables());
    EXPECT_EQ(field.re[1], 0.0);
    EXPECT_EQ(field.im[1], 0.0);
    EXPECT_NEAR(std::hypot(field.re[0], field.im[0]), 1.0, 2 * under_test::kSineCosineError);
  }
}

// ---- The intensity

class KernelIntensity : public test::EveryKernel {
 protected:
  struct Result {
    std::vector<double> intensity = std::vector<double>(256 * kIntensityPitch, kNan), rowMaxima = Result::Maxima();
    static std::vector<double> Maxima() { return std::vector<double>(256, kNan); }
  };

  static Result Of(const std::vector<double>& wavefront) {
    Result result;
    const test::KernelScratch scratch;
    GetParam()->intensity(wavefront.data(), kWavelength, TransformTables(), scratch.Of(), result.intensity.data(),
                          result.rowMaxima.data());
    return result;
  }

  // The plain form has its zero frequency in the middle, and 1/256^2 in its field.
  static void ExpectPlain(const std::vector<double>& wavefront) {
    const Result actual = Of(wavefront);
    plain::ComplexPlane field = plain::PupilFunction(wavefront, kWavelength);
    const auto inside = std::count_if(wavefront.begin(), wavefront.end(), [](double w) { return w <= 999.0; });
    plain::Fft2(field, 256, 1);
    // As the other direction, which turns the imaginary parts about, would have it.
    const auto intensity = [&](int r, int c) {
      const std::size_t mirrored = At((256 - r) % 256, (256 - c) % 256, 256);
      return field.re[mirrored] * field.re[mirrored] + field.im[mirrored] * field.im[mirrored];
    };
    // No sample of either field is off by more than the error's norm.
    const double norm = 256.0 * std::sqrt(static_cast<double>(inside));
    const auto fieldError =
        static_cast<double>(2 * reference::kTransformError + 2 * under_test::kSineCosineError) * norm;
    for (int r = 0; r < 256; ++r) {
      double largest = 0.0;
      for (int c = 0; c < 256; ++c) {
        const double value = actual.intensity[At(r, c, kIntensityPitch)], expected = intensity(r, c);
        ASSERT_NEAR(value, expected, fieldError * (2 * std::sqrt(expected) + fieldError)) << r << "," << c;
        largest = std::max(largest, value);
      }
      ASSERT_EQ(actual.rowMaxima[static_cast<std::size_t>(r)], largest) << r;
      for (int c = 256; c < kIntensityPitch; ++c) {
        ASSERT_EQ(actual.intensity[At(r, c, kIntensityPitch)], actual.intensity[At(r, c - 256, kIntensityPitch)]);
      }
    }
  }

  // Up to some waves on the samples where inside(row, column) holds.
  template <class Inside>
  static std::vector<double> Wavefront(Inside inside, double waves = 3.0) {
    std::vector<double> plane = Noise(65536, 51);
    for (int r = 0; r < 256; ++r) {
      for (int c = 0; c < 256; ++c) {
        double& w = plane[At(r, c, 256)];
        w = inside(r, c) ? w * waves * kWavelength : kWavefrontOutside;
      }
    }
    return plane;
  }
};

TEST_P(KernelIntensity, OfTheMiddleIsThePlainOne) {
  ExpectPlain(Wavefront([](int r, int c) { return (r - 128) * (r - 128) + (c - 128) * (c - 128) <= 4096; }));
  ExpectPlain(Wavefront([](int r, int c) { return r >= 64 && r <= 192 && c >= 64 && c <= 192; }));
}

TEST_P(KernelIntensity, OfAnyOtherPupilIsThePlainOne) {
  ExpectPlain(Wavefront([](int, int) { return true; }));
  ExpectPlain(Wavefront([](int r, int c) { return r < 90 && c > 170; }));
  ExpectPlain(Wavefront([](int r, int c) { return (r + 2 * c) % 7 == 0; }));
}

// One pair of neighbours alone, and beside a pupil in the middle, at the middle's edges and just outside.
TEST_P(KernelIntensity, FindsEverySampleOutsideTheMiddle) {
  const std::array<int, 8> places = {0, 63, 64, 128, 192, 193, 200, 255};
  for (const int row : places) {
    for (const int column : places) {
      ExpectPlain(Wavefront(
          [&](int r, int c) { return (r == row && c == column) || (r == 100 && c == 90) || (r == 171 && c == 140); }));
    }
  }
}

TEST_P(KernelIntensity, OfManyWavesIsThePlainOne) {
  const auto disc = [](int r, int c) { return (r - 128) * (r - 128) + (c - 128) * (c - 128) <= 900; };
  for (const double waves : {1e3, 2e5, 1e9, 1e14}) ExpectPlain(Wavefront(disc, waves));
}

TEST_P(KernelIntensity, HasTheSameMaximaWithoutItsPlane) {
  for (const int edge : {192, 200}) {
    const std::vector<double> wavefront =
        Wavefront([&](int r, int c) { return r > 100 && c > 80 && c <= edge && r < 190; });
    std::vector<double> rowMaxima(256, kNan);
    const test::KernelScratch scratch;
    GetParam()->intensity(wavefront.data(), kWavelength, TransformTables(), scratch.Of(), nullptr, rowMaxima.data());
    EXPECT_TRUE(test::SameBits(rowMaxima, Of(wavefront).rowMaxima));
  }
}

TEST_P(KernelIntensity, OfNothingIsZero) {
  for (const double outside : {kWavefrontOutside, kNan}) {
    const Result result = Of(std::vector<double>(65536, outside));
    for (const double v : result.intensity) ASSERT_EQ(v, 0.0);
    for (const double v : result.rowMaxima) ASSERT_EQ(v, 0.0);
  }
}

// ---- The point spread function of an engine

class KernelPsf : public test::EveryKernel {
 protected:
  struct Result {
    double strehl = -1.0, alone = -1.0;
    std::vector<double> psf = std::vector<double>(65536);
  };
  static Result Of(const std::vector<double>& wavefront) {
    Result result;
    OpticsEngine engine(std::array<double, kCoefficients>{}.data(), 3.0, 256, 1, 1, 1);
    std::copy(wavefront.begin(), wavefront.end(), engine.wavefrontPlane.begin());
    double pitch = 0.0;
    result.alone = engine.ComputeStrehl(kWavelength);
    engine.ComputePsf(kWavelength, result.psf.data(), &pitch, &result.strehl, 256);
    return result;
  }
  static void ExpectDark(const std::vector<double>& wavefront) {
    const Result result = Of(wavefront);
    EXPECT_EQ(result.strehl, 0.0);
    EXPECT_EQ(result.alone, 0.0);
    EXPECT_TRUE(test::SameBits(result.psf, std::vector<double>(65536)));
  }
};

TEST_P(KernelPsf, IsThePlainOneAndItsStrehlRatioTheSameWithoutThePsf) {
  std::vector<double> wavefront(65536, kWavefrontOutside);
  const std::vector<double> noise = Noise(65536, 61);
  for (int r = 70; r < 250; ++r) {
    for (int c = 5; c < 120; ++c) wavefront[At(r, c, 256)] = 0.3 * kWavelength * noise[At(r, c, 256)];
  }
  const Result actual = Of(wavefront);
  const plain::Psf expected = plain::ComputePsf(wavefront, kWavelength, 256);
  const std::vector<long double> plane(expected.plane.begin(), expected.plane.end());
  const auto bound =
      static_cast<double>(reference::PsfError(plane, 2 * reference::FieldError(reference::ToReal(wavefront), 0)));
  for (std::size_t i = 0; i < 65536; ++i) ASSERT_NEAR(actual.psf[i], expected.plane[i], bound) << i;
  EXPECT_NEAR(actual.strehl / expected.strehl, 1.0, bound);
  EXPECT_EQ(actual.alone, actual.strehl);
}

TEST_P(KernelPsf, OfASampleThatIsInfinitelyFarIsDark) {
  std::vector<double> wavefront(65536, kWavefrontOutside);
  for (int r = 100; r < 150; ++r) std::fill_n(&wavefront[At(r, 100, 256)], 50, 0.0);
  for (const auto& [row, column] : {std::pair{100, 100}, {149, 149}, {5, 250}}) {
    std::vector<double> broken = wavefront;
    broken[At(row, column, 256)] = -std::numeric_limits<double>::infinity();
    ExpectDark(broken);
  }
}

TEST_P(KernelPsf, WithoutNumbersIsDark) { ExpectDark(std::vector<double>(65536, kNan)); }

TEST_P(KernelPsf, TakesASampleThatIsNotANumberAsOutside) {
  std::vector<double> wavefront(65536, kWavefrontOutside);
  for (int r = 100; r < 150; ++r) std::fill_n(&wavefront[At(r, 100, 256)], 50, 1e-4);
  std::vector<double> broken = wavefront;
  wavefront[At(120, 117, 256)] = kWavefrontOutside;
  broken[At(120, 117, 256)] = kNan;
  EXPECT_TRUE(test::SameBits(Of(broken).psf, Of(wavefront).psf));
}

ORVANEL_ON_EVERY_KERNEL(KernelIntensity);
ORVANEL_ON_EVERY_KERNEL(KernelPsf);

}  // namespace
}  // namespace orvanel
