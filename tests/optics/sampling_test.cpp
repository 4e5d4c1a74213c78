// Tests the spacing of samples against values computed by hand, the order of evaluation, and the results of the engine.
#include "orvanel/sampling.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

#include "base/elementary.h"
#include "orvanel/optics_engine.h"

namespace orvanel {
namespace {

TEST(Sampling, OfAThreeMillimetrePupilIsAsWorkedOut) {
  EXPECT_EQ(PupilSamples(256), 129);
  EXPECT_NEAR(PsfHalfWidth(129, kWavelength, 3.0), 0.10654421333, 1e-11);
  EXPECT_NEAR(FrequencyStep(256, 0.10654421333), 1.3994789739, 2e-10);
  EXPECT_NEAR(FrequencyRange(256, 1.3994789739), 178.43356918, 2e-8);
}

TEST(Sampling, IsEvaluatedInItsOrderToTheBit) {
  const double h = 0.0731928473;
  EXPECT_EQ(FrequencyStep(256, h, 17.0),
            2.0 * ((256 * 0.25) / h) / (ArcTangent(1.0 / 17.0) * 57.29577951308239) / 255.0);
  EXPECT_EQ(PsfHalfWidth(129, 0.00061, 5.3, 16.7), 32.0 * 16.7 * 0.00061 / 5.3);
}

TEST(Sampling, IsThatOfTheEnginesResults) {
  const std::array<double, kCoefficients> flat{};
  for (const int n : {64, 128, 256}) {
    OpticsEngine engine(flat.data(), 4.3, n, 1, 1, 1);
    std::vector<double> mtf(static_cast<std::size_t>(n * n));
    double step = 0.0;
    engine.ComputeMtf(0.00063, mtf.data(), &step, nullptr, nullptr, nullptr, n);
    EXPECT_EQ(engine.pupilSamples, PupilSamples(n));
    EXPECT_EQ(engine.psfHalfWidth, PsfHalfWidth(PupilSamples(n), 0.00063, 4.3));
    EXPECT_EQ(step, FrequencyStep(n, engine.psfHalfWidth));
  }
}

// ---- How well a wavefront is sampled

// Waves of the wavelength 1 at each sample of a plane; samples that are not set are outside the pupil.
std::vector<double> Blank(int n) { return std::vector<double>(static_cast<std::size_t>(n * n), kWavefrontOutside); }

// A straight way, independent of the one on trial.
double ShareByDefinition(const std::vector<double>& plane, int n, double limit) {
  double count = 0.0, steep = 0.0;
  const auto at = [&](int r, int c) { return plane[static_cast<std::size_t>(r * n + c)]; };
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) {
      if (at(r, c) > kLargestInside) continue;
      ++count;
      const bool right = c + 1 < n && at(r, c + 1) <= kLargestInside && std::fabs(at(r, c + 1) - at(r, c)) > limit;
      const bool down = r + 1 < n && at(r + 1, c) <= kLargestInside && std::fabs(at(r + 1, c) - at(r, c)) > limit;
      if (right || down) ++steep;
    }
  }
  return count > 0.0 ? steep / count : 0.0;
}

TEST(PhaseSampling, CountsSamplesThatDifferByMoreThanHalfAWaveFromTheNext) {
  const std::array<double, kCoefficients> zero{};
  for (const int n : {64, 256}) {
    for (int seed = 1; seed <= 20; ++seed) {
      std::array<double, kCoefficients> c = zero;
      for (std::size_t j = 3; j < c.size(); ++j) c[j] = 2e-4 * seed * std::sin(7.3 * static_cast<double>(j) * seed);
      OpticsEngine engine(c.data(), 5.0, n, 1, 1, 1);
      const std::vector<double> plane(engine.wavefrontPlane.begin(), engine.wavefrontPlane.end());
      const double share = UndersampledShare(plane.data(), n, engine.pupilSamples, kWavelength);
      EXPECT_EQ(share, ShareByDefinition(plane, n, kWavelength / 2.0)) << n << ' ' << seed;
      EXPECT_TRUE(seed < 20 || share > 0.2) << share;
    }
  }
}

TEST(PhaseSampling, ExactlyHalfAWaveIsSampled) {
  std::vector<double> plane = Blank(8);
  for (int c = 2; c <= 6; ++c) plane[static_cast<std::size_t>(4 * 8 + c)] = 0.5 * c;
  EXPECT_EQ(UndersampledShare(plane.data(), 8, 5, 1.0), 0.0);
  EXPECT_EQ(LargestStep(plane.data(), 8, 5), 0.5);
  plane[4 * 8 + 6] += 0x1p-40;
  EXPECT_EQ(UndersampledShare(plane.data(), 8, 5, 1.0), 0.2);  // one of five
  EXPECT_EQ(LargestStep(plane.data(), 8, 5), 0.5 + 0x1p-40);
}

TEST(PhaseSampling, OfNoPupilIsNothing) {
  const std::vector<double> plane = Blank(16);
  EXPECT_EQ(UndersampledShare(plane.data(), 16, 9, 1.0), 0.0);
  EXPECT_EQ(LargestStep(plane.data(), 16, 9), 0.0);
}

// The Strehl ratio of c4 (2 rho^2 - 1) on the axis is sinc^2(2 c4 / wavelength), which has its maxima near odd
// multiples of a quarter wave of c4 and is there the largest of the plane. The samples of the disc stand for the disc
// to one part in a thousand of its amplitude.
constexpr double kDiscAmplitude = 1e-3;

double AmplitudeOfDefocus(double c4) {
  std::array<double, kCoefficients> c{};
  c[4] = c4;
  OpticsEngine engine(c.data(), 6.0, 256, 1, 1, 1);
  return std::sqrt(engine.ComputeStrehl(kWavelength));
}

double ShareOfDefocus(double c4) {
  std::array<double, kCoefficients> c{};
  c[4] = c4;
  const OpticsEngine engine(c.data(), 6.0, 256, 1, 1, 1);
  return UndersampledShare(engine.wavefrontPlane.data(), 256, 129, kWavelength);
}

TEST(PhaseSampling, WhereItIsGoodDefocusHasItsClosedForm) {
  constexpr double kPi = 3.14159265358979;
  for (int k = 1; k < 16; ++k) {
    const double waves = k + 0.5;  // 2 c4
    EXPECT_LE(ShareOfDefocus(waves / 2.0 * kWavelength), kLargestUndersampledShare) << k;
    EXPECT_NEAR(AmplitudeOfDefocus(waves / 2.0 * kWavelength), 1.0 / (kPi * waves), kDiscAmplitude) << k;
  }
}

TEST(PhaseSampling, OfThreeAndSixDioptresAtSixMillimetresIsBadAsIsTheirStrehlRatio) {
  // The amplitudes are those of a transform with four times as many samples along a line.
  struct Case {
    double dioptres, amplitude;
  };
  for (const Case& its : {Case{3.0, 0.0095}, Case{6.0, 0.0047}}) {
    const double c4 = its.dioptres * 9.0 / 4.0 * 1e-3;  // a quarter of the power times the squared radius, 3 mm
    EXPECT_GT(ShareOfDefocus(c4), 30.0 * kLargestUndersampledShare);
    EXPECT_GT(AmplitudeOfDefocus(c4), 2.0 * its.amplitude);
  }
}

}  // namespace
}  // namespace orvanel
