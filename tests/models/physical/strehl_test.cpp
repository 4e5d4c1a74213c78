// Strehl ratios against closed forms and a dense search.
#include "models/physical/strehl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <vector>

#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kBound = 1e-9;

TEST(Strehl, OfAPerfectPupilIsOneOnTheAxisAndAtThePeak) {
  ChordQuadrature quadrature(ActiveChords());
  const Strehl strehl = StrehlOf(PupilOf({}), quadrature);
  EXPECT_NEAR(strehl.axis, 1.0, 1e-13);
  EXPECT_NEAR(strehl.peak, 1.0, 1e-13);
  EXPECT_NEAR(strehl.peakX, 0.0, 1e-6);
  EXPECT_NEAR(strehl.peakY, 0.0, 1e-6);
}

TEST(Strehl, OfATiltIsOneAtThePlaceOfItsPeakAndThatOfTheAiryPatternOnTheAxis) {
  const double c1 = -0.27, c2 = 0.4;
  ChordQuadrature quadrature(ActiveChords());
  const Strehl strehl = StrehlOf(PupilOf({0, c1, c2}), quadrature);
  EXPECT_NEAR(strehl.peak, 1.0, kBound);
  EXPECT_NEAR(strehl.peakX, 4 * c2 / 0.55, 1e-6);
  EXPECT_NEAR(strehl.peakY, 4 * c1 / 0.55, 1e-6);
  const double x = kPi * std::hypot(4 * c1 / 0.55, 4 * c2 / 0.55);
  EXPECT_NEAR(strehl.axis, std::pow(2 * std::cyl_bessel_j(1.0, x) / x, 2), kBound);
}

TEST(Strehl, OfDefocusWithStilesCrawfordIsRelativeToTheAttenuatedPupil) {
  const double rho = 0.05, c4 = 0.06, g = rho * std::log(10.0) / 2 * 9.0;
  Pupil pupil = PupilOf({0, 0, 0, 0, c4});
  pupil.stilesCrawford.rho = rho;
  const std::complex<double> z(-g, 2 * kPi / 0.55 * 2 * std::sqrt(3.0) * c4);
  const double expected = std::norm((std::exp(z) - 1.0) / z) / std::pow((1 - std::exp(-g)) / g, 2);
  ChordQuadrature quadrature(ActiveChords());
  EXPECT_NEAR(StrehlOf(pupil, quadrature).axis, expected, kBound);
}

// Samples a seventh apart in the window of all slopes; the best of them is within a per cent of the peak or so below
// it.
TEST(Strehl, HasNoHigherPlaceInADenseSearch) {
  std::mt19937 random(5);
  std::normal_distribution<double> normal;
  ChordQuadrature quadrature(ActiveChords());
  for (int eye = 0; eye < 12; ++eye) {
    std::vector<double> modes(28);
    for (std::size_t j = 3; j < modes.size(); ++j) modes[j] = normal(random) * (j < 6 ? 0.2 : j < 15 ? 0.08 : 0.02);
    const Pupil pupil = PupilOf(modes);
    const Strehl strehl = StrehlOf(pupil, quadrature);
    const SlopeRange slopes = SlopesOf(pupil);
    const double spacing = 1.0 / 7.0;
    const int columns = static_cast<int>((slopes.highX - slopes.lowX + 4) / spacing);
    const int rows = static_cast<int>((slopes.highY - slopes.lowY + 4) / spacing);
    const DirectionGrid grid{(slopes.lowX + slopes.highX) / 2, (slopes.lowY + slopes.highY) / 2, spacing, columns,
                             rows};
    std::vector<double> samples(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
    quadrature.Intensity(pupil, grid, ChordQuadrature::CountsFor(pupil, grid), {samples.data(), columns});
    const double best = *std::max_element(samples.begin(), samples.end());
    EXPECT_LE(best, strehl.peak + kBound) << eye;
    // Bernstein's inequality for a tenth of wavelength / diameter.
    EXPECT_GE(best, strehl.peak * (1 + std::cos(2 * kPi * spacing / std::sqrt(2.0))) / 2) << eye;
    const std::complex<double> u =
        quadrature.Field(pupil, strehl.peakX, strehl.peakY, ChordQuadrature::CountsFor(pupil, grid)).u;
    EXPECT_NEAR(std::norm(u), strehl.peak, kBound) << eye;
  }
}

}  // namespace
}  // namespace orvanel::physical
