// Tests the point spread function: closed forms, identities, and the state of the engine after it.
#include "optics/psf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <limits>
#include <numeric>
#include <vector>

#include "base/elementary.h"
#include "orvanel/optics_engine.h"
#include "tests/support/every_kernel.h"

namespace orvanel {
namespace {

using Coefficients = std::array<double, kCoefficients>;
using Complex = std::complex<long double>;

constexpr long double kTwoPi = 6.28318530717958647692528676655900577L;
constexpr double kWave = kWavelength;

// Rounding of a 256 x 256 transform's largest element and of what is made of it.
constexpr double kRounding = 2e-13;

// What a disc of samples costs the Strehl ratio of defocus up to 0.35 waves, against a round pupil: rho^2 is 5.8e-4
// below 1/2 on average over the 12,853 samples, and their sum, computed apart, is at most 9.6e-4 off the closed form.
constexpr double kDiscSampling = 1e-3;

struct Result {
  OpticsEngine engine;
  std::vector<double> copy;
  double pitch = 0.0;
  double strehl = 0.0;
};

Result Computed(OpticsEngine engine) {
  Result result{std::move(engine), {}, 0.0, 0.0};
  const int n = result.engine.gridSize;
  result.copy.resize(result.engine.psfPlane.size());
  EXPECT_TRUE(result.engine.ComputePsf(kWave, result.copy.data(), &result.pitch, &result.strehl, n));
  return result;
}

Result Computed(const Coefficients& c, double pupil = 3.0, int n = 256) {
  return Computed(OpticsEngine(c.data(), pupil, n, 1, 1, 1));
}

Coefficients Only(std::size_t j, double waves) {
  Coefficients c{};
  c[j] = waves * kWave;
  return c;
}

// A lopsided eye with one brightest point, away from the axis.
Coefficients Lopsided() {
  Coefficients c{};
  c[3] = 0.11 * kWave;
  c[4] = -0.17 * kWave;
  c[7] = 0.42 * kWave;
  c[8] = -0.23 * kWave;
  c[9] = 0.13 * kWave;
  c[16] = 0.07 * kWave;
  return c;
}

// |mean of exp(2 pi i w / wavelength)|^2 over the pupil: the intensity on the axis over that of a perfect pupil.
long double StrehlOnAxis(const OpticsEngine& engine) {
  Complex sum = 0.0L;
  long double count = 0.0L;
  for (const double w : engine.wavefrontPlane) {
    if (w == kWavefrontOutside) continue;
    sum += std::polar(1.0L, kTwoPi * w / kWave);
    count += 1.0L;
  }
  return std::norm(sum / count);
}

// Root mean square of the wavefront about its mean, in waves.
double RmsInWaves(const OpticsEngine& engine) {
  long double sum = 0.0L, squares = 0.0L, count = 0.0L;
  for (const double w : engine.wavefrontPlane) {
    if (w == kWavefrontOutside) continue;
    sum += w / kWave;
    squares += (w / kWave) * (w / kWave);
    count += 1.0L;
  }
  return static_cast<double>(std::sqrt(squares / count - (sum / count) * (sum / count)));
}

TEST(Psf, OfAPerfectEyePeaksAtTheCentreWithStrehlOne) {
  const Result result = Computed(Coefficients{});
  EXPECT_NEAR(result.strehl, 1.0, kRounding);
  EXPECT_NEAR(result.engine.psfPlane(128, 128), 1.0, std::numeric_limits<double>::epsilon());
  EXPECT_EQ(std::max_element(result.copy.begin(), result.copy.end()) - result.copy.begin(), 128 * 256 + 128);
}

TEST(Psf, OfAPerfectEyeLooksTheSameUpsideDown) {
  const Result result = Computed(Coefficients{});
  for (int r = 1; r < 256; ++r) {
    for (int c = 1; c < 256; ++c) {
      ASSERT_NEAR(result.engine.psfPlane(r, c), result.engine.psfPlane(256 - r, 256 - c), kRounding) << r << "," << c;
    }
  }
}

TEST(Psf, HalfWidthAndPitchOfAThreeMillimetrePupilAreAsWorkedOut) {
  const Result result = Computed(Coefficients{}, 3.0);
  EXPECT_NEAR(result.engine.psfHalfWidth, 0.10654421333, 5e-12);
  EXPECT_DOUBLE_EQ(result.pitch, 2.0 * result.engine.psfHalfWidth / 255.0);
}

TEST(Psf, StrehlIsTheMeanFieldOnTheAxisWhereThatIsTheBrightest) {
  for (const double waves : {0.05, 0.1, 0.2, 0.3}) {
    const Result defocus = Computed(Only(4, waves));
    EXPECT_NEAR(defocus.strehl, static_cast<double>(StrehlOnAxis(defocus.engine)), kRounding) << waves;
    const Result trefoil = Computed(Only(9, waves));
    EXPECT_NEAR(trefoil.strehl, static_cast<double>(StrehlOnAxis(trefoil.engine)), kRounding) << waves;
  }
}

TEST(Psf, StrehlOfDefocusFollowsItsClosedForm) {
  for (const double waves : {0.05, 0.12, 0.2, 0.27, 0.35}) {
    const double x = 2.0 * static_cast<double>(kTwoPi) / 2.0 * waves;  // a (2 rho^2 - 1), a in waves
    EXPECT_NEAR(Computed(Only(4, waves)).strehl, std::pow(std::sin(x) / x, 2), kDiscSampling) << waves;
  }
}

TEST(Psf, StrehlOfSmallAberrationsFollowsTheirVariance) {
  // 1 - s^2 + s^4 / 2 - ..., s = 2 pi sigma / lambda; the remainder is of third order in s^2.
  for (std::size_t j = 3; j < kCoefficients; ++j) {
    const Result result = Computed(Only(j, 0.08));
    const double s2 = std::pow(static_cast<double>(kTwoPi) * RmsInWaves(result.engine), 2);
    EXPECT_NEAR(result.strehl, 1.0 - s2 + s2 * s2 / 2.0, 1e-3) << "term " << j << ", s^2 = " << s2;
    EXPECT_LT(result.strehl, 0.995) << "term " << j;
  }
}

TEST(Psf, SumIsTheLightThroughThePupilOverThePeak) {
  // The transform keeps sum |x|^2 / n^2, which is 12853 / 65536 for a pupil of modulus 1.
  for (const Coefficients& c : {Coefficients{}, Lopsided(), Only(4, 1.7)}) {
    const Result result = Computed(c);
    const double sum = std::accumulate(result.copy.begin(), result.copy.end(), 0.0);
    EXPECT_NEAR(sum * result.strehl * 0.038463531294838, 12853.0 / 65536.0, kRounding);
  }
}

TEST(Psf, IsCentredOnItsPeakWhereverThatWas) {
  const Result result = Computed(Lopsided());
  EXPECT_NEAR(result.engine.psfPlane(128, 128), 1.0, std::numeric_limits<double>::epsilon());
  for (int r = 0; r < 256; ++r) {
    for (int c = 0; c < 256; ++c) {
      if (r == 128 && c == 128) continue;
      ASSERT_LT(result.engine.psfPlane(r, c), 1.0);
    }
  }
  EXPECT_GT(result.strehl, static_cast<double>(StrehlOnAxis(result.engine)) + 0.01);
}

TEST(Psf, TiltByWholeSamplesChangesNothing) {
  const Result straight = Computed(Lopsided());
  OpticsEngine tilted(Lopsided().data(), 3.0, 256, 1, 1, 1);
  for (int r = 0; r < 256; ++r) {
    for (int c = 0; c < 256; ++c) {
      // 23 samples down and 9 to the left: as many waves over the width of the grid.
      if (tilted.wavefrontPlane(r, c) != kWavefrontOutside) {
        tilted.wavefrontPlane(r, c) += kWave * (23.0 * (r - 128) - 9.0 * (c - 128)) / 256.0;
      }
    }
  }
  const Result result = Computed(std::move(tilted));
  EXPECT_NEAR(result.strehl, straight.strehl, kRounding);
  for (std::size_t i = 0; i < result.copy.size(); ++i) ASSERT_NEAR(result.copy[i], straight.copy[i], kRounding) << i;
}

// On a grid without kernels of its own, whose intensity can be made again from outside.
TEST(Psf, IsTheIntensityTimesTheReciprocalOfItsPeakToTheBit) {
  constexpr int n = 128;
  OpticsEngine engine(Lopsided().data(), 3.0, n, 1, 1, 1);
  std::vector<double> copy(n * n), re(n * n), im(n * n), intensity(n * n);
  double pitch = 0.0, strehl = 0.0;
  engine.ComputePsf(kWave, copy.data(), &pitch, &strehl, n);
  PupilFunction({engine.wavefrontPlane.data(), n}, kWave, {{re.data(), n}, {im.data(), n}});
  engine.Fft2(re.data(), im.data(), n, 0);
  engine.ShiftedPowerSpectrum(intensity.data(), re.data(), im.data());
  const Peak peak = FindPeak({intensity.data(), n});
  RecentrePlane({intensity.data(), n}, peak.row, peak.column);
  for (std::size_t i = 0; i < intensity.size(); ++i) {
    ASSERT_EQ(engine.psfPlane[i], (1.0 / peak.value) * intensity[i]) << i;
  }
  EXPECT_EQ(strehl, peak.value / 10297681.0);
}

TEST(Psf, OfAnEngineWithoutSamplesIsRefused) {
  OpticsEngine engine(0);
  double pitch = -8.0, strehl = -9.0;
  EXPECT_FALSE(engine.ComputePsf(kWave, nullptr, &pitch, &strehl, 0));
  EXPECT_EQ(strehl, -9.0);
}

TEST(Psf, CopyAndScalarsAreThoseOfTheEngine) {
  const Result result = Computed(Lopsided(), 4.3);
  EXPECT_TRUE(std::equal(result.copy.begin(), result.copy.end(), result.engine.psfPlane.begin()));
  EXPECT_EQ(result.strehl, result.engine.strehlRatio);
  EXPECT_EQ(result.engine.focalLength, 17.0);
  EXPECT_EQ(result.engine.psfWavelength, kWave);
}

TEST(Psf, MarksTheTransferFunctionStale) {
  OpticsEngine engine(Lopsided().data(), 3.0, 256, 1, 1, 1);
  engine.otfValid = 1;
  EXPECT_EQ(Computed(std::move(engine)).engine.otfValid, 0);
}

TEST(Psf, ReuseKeepsThePsfOfTheSameWavelengthAndWritesNothing) {
  Result result = Computed(Lopsided());
  std::vector<double> copy(65536, -7.0);
  double pitch = -8.0, strehl = -9.0;
  result.engine.otfValid = 1;
  EXPECT_TRUE(result.engine.ComputePsf(kWave, copy.data(), &pitch, &strehl, 256, 1));
  EXPECT_TRUE(std::all_of(copy.begin(), copy.end(), [](double v) { return v == -7.0; }));
  EXPECT_EQ(pitch, -8.0);
  EXPECT_EQ(strehl, -9.0);
  EXPECT_EQ(result.engine.otfValid, 1);
}

TEST(Psf, ReuseComputesAfreshForAnotherWavelengthAnotherValueAndAfterASynthesis) {
  Result result = Computed(Lopsided());
  std::vector<double> copy(65536, -7.0);
  double pitch = 0.0, strehl = 0.0;
  EXPECT_TRUE(result.engine.ComputePsf(std::nextafter(kWave, 1.0), copy.data(), &pitch, &strehl, 256, 1));
  EXPECT_EQ(result.engine.psfWavelength, std::nextafter(kWave, 1.0));
  EXPECT_NE(copy[0], -7.0);

  copy[0] = -7.0;
  EXPECT_TRUE(result.engine.ComputePsf(std::nextafter(kWave, 1.0), copy.data(), &pitch, &strehl, 256, 2));
  EXPECT_NE(copy[0], -7.0);

  copy[0] = -7.0;
  result.engine.synthesizeWavefront(Only(4, 0.2).data(), 3.0, 1, 1, 1);
  EXPECT_TRUE(result.engine.ComputePsf(std::nextafter(kWave, 1.0), copy.data(), &pitch, &strehl, 256, 1));
  EXPECT_NE(copy[0], -7.0);
}

TEST(Psf, WithoutReuseComputesAfreshForTheSameWavelength) {
  Result result = Computed(Lopsided());
  result.engine.psfPlane(10, 20) = 5.0;
  double pitch = 0.0, strehl = 0.0;
  EXPECT_TRUE(result.engine.ComputePsf(kWave, result.copy.data(), &pitch, &strehl, 256));
  EXPECT_NE(result.engine.psfPlane(10, 20), 5.0);
}

TEST(Psf, OfTooLargeASizeIsRefusedUntouched) {
  Result result = Computed(Lopsided());
  result.engine.focalLength = 16.0;
  result.engine.otfValid = 1;
  double pitch = -8.0, strehl = -9.0;
  EXPECT_FALSE(result.engine.ComputePsf(2 * kWave, result.copy.data(), &pitch, &strehl, 257));
  EXPECT_EQ(result.engine.focalLength, 16.0);
  EXPECT_EQ(result.engine.otfValid, 1);
  EXPECT_EQ(result.engine.psfWavelength, kWave);
  EXPECT_EQ(pitch, -8.0);
  EXPECT_EQ(strehl, -9.0);
}

TEST(Psf, OfASmallerSizeIsComputedWhole) {
  Result result = Computed(Lopsided());
  const std::vector<double> whole = result.copy;
  std::fill(result.copy.begin(), result.copy.end(), -7.0);
  EXPECT_TRUE(result.engine.ComputePsf(kWave, result.copy.data(), &result.pitch, &result.strehl, 100));
  EXPECT_EQ(result.copy, whole);
}

TEST(Psf, OfAnEmptyPupilIsZeroNotNan) {
  for (const int n : {256, 128}) {
    OpticsEngine engine(Lopsided().data(), 3.0, n, 1, 1, 1);
    std::fill(engine.wavefrontPlane.begin(), engine.wavefrontPlane.end(), kWavefrontOutside);
    const Result result = Computed(std::move(engine));
    EXPECT_TRUE(std::all_of(result.copy.begin(), result.copy.end(), [](double v) { return v == 0.0; }));
    EXPECT_EQ(result.strehl, 0.0);
    EXPECT_EQ(result.engine.strehlRatio, 0.0);
  }
}

using PsfOfAnOddSample = test::EveryKernel;

// A lopsided eye with one sample of its wavefront replaced.
OpticsEngine WithSample(double value, int n) {
  OpticsEngine engine(Lopsided().data(), 3.0, n, 1, 1, 1);
  engine.wavefrontPlane(n / 2, n / 2 + 3) = value;
  return engine;
}

TEST_P(PsfOfAnOddSample, WhereItIsNotANumberOrPlusInfinityIsThatOfASampleOutside) {
  for (const int n : {256, 128}) {
    const Result outside = Computed(WithSample(kWavefrontOutside, n));
    ASSERT_GT(outside.strehl, 0.0);
    ASSERT_NE(outside.strehl, Computed(Lopsided(), 3.0, n).strehl);
    for (const double value :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e300}) {
      const Result result = Computed(WithSample(value, n));
      EXPECT_EQ(result.copy, outside.copy) << value << " on " << n;
      EXPECT_EQ(result.strehl, outside.strehl) << value << " on " << n;
      EXPECT_EQ(WithSample(value, n).ComputeStrehl(kWave), outside.strehl) << value << " on " << n;
    }
  }
}

TEST_P(PsfOfAnOddSample, WhereItIsMinusInfinityIsZero) {
  for (const int n : {256, 128}) {
    const Result result = Computed(WithSample(-std::numeric_limits<double>::infinity(), n));
    EXPECT_TRUE(std::all_of(result.copy.begin(), result.copy.end(), [](double v) { return v == 0.0; })) << n;
    EXPECT_EQ(result.strehl, 0.0) << n;
  }
}

ORVANEL_ON_EVERY_KERNEL(PsfOfAnOddSample);

TEST(Psf, OnSmallerGridsHasAnotherReferenceOrNone) {
  // On the 128 grid the peak of a perfect eye is (3209 / 16384)^2, and the reference 3209^2.
  EXPECT_NEAR(Computed(Coefficients{}, 3.0, 128).strehl * 16384.0 * 16384.0, 1.0, kRounding);
  EXPECT_EQ(Computed(Coefficients{}, 3.0, 64).strehl, -1.0);
  EXPECT_EQ(Computed(Coefficients{}, 3.0, 64).engine.strehlRatio, -1.0);
  EXPECT_NEAR(Computed(Lopsided(), 3.0, 64).engine.psfPlane(32, 32), 1.0, std::numeric_limits<double>::epsilon());
}

TEST(Psf, HalfWidthUsesWholeQuartersOfThePupil) {
  // (65 - 1) / 4 = 16 and (33 - 1) / 4 = 8; (7 - 1) / 4 is cut to 1 on a grid of 12, which transforms nothing.
  EXPECT_DOUBLE_EQ(Computed(Coefficients{}, 3.0, 128).engine.psfHalfWidth, 16 * 17.0 * kWave / 3.0);
  EXPECT_DOUBLE_EQ(Computed(Coefficients{}, 3.0, 64).engine.psfHalfWidth, 8 * 17.0 * kWave / 3.0);
  testing::internal::CaptureStderr();
  EXPECT_DOUBLE_EQ(Computed(Coefficients{}, 3.0, 12).engine.psfHalfWidth, 1 * 17.0 * kWave / 3.0);
  testing::internal::GetCapturedStderr();
}

TEST(RecentreLine, OfAnEngineTakesTheGridsLength) {
  OpticsEngine engine(4);
  std::array<double, 4> line = {1.5, 2.5, 3.5, 4.5};
  engine.RecentreLine(line.data(), 3);
  EXPECT_EQ(line[2], 4.5);
  EXPECT_EQ(line[3], 1.5);
}

}  // namespace
}  // namespace orvanel
