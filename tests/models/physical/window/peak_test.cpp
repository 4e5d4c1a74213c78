// The peak against closed forms and a dense search.
#include "models/physical/window/peak.h"

#include <gtest/gtest.h>

#include <algorithm>
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

// Directions are then in wavelength / diameter of the first.
std::vector<Beam> BeamsOf(const std::vector<Pupil>& pupils) {
  std::vector<Beam> beams;
  for (const Pupil& pupil : pupils) beams.push_back({pupil, 0, 1.0, pupil.wavelengthUm / pupils[0].wavelengthUm});
  return beams;
}

Peak PeakOf(const Pupil& pupil) {
  Workspace workspace(*ActiveKernels());
  const std::vector<double> factors = {1.0};
  return *HighestOf(BeamsOf({pupil}), factors, workspace);
}

TEST(Peak, OfAPerfectPupilIsOneOnTheAxis) {
  const Peak peak = PeakOf(PupilOf({}));
  EXPECT_NEAR(peak.value, 1.0, 1e-13);
  EXPECT_NEAR(peak.x, 0.0, 1e-6);
  EXPECT_NEAR(peak.y, 0.0, 1e-6);
}

TEST(Peak, OfATiltIsAtItsSlope) {
  const double c1 = -0.27, c2 = 0.4;
  const Peak peak = PeakOf(PupilOf({0, c1, c2}));
  EXPECT_NEAR(peak.value, 1.0, kBound);
  EXPECT_NEAR(peak.x, 4 * c2 / 0.55, 1e-6);
  EXPECT_NEAR(peak.y, 4 * c1 / 0.55, 1e-6);
}

// A quarter of a dioptre over 4 mm has its maximum on a ring.
TEST(Peak, OnARingIsAsHighAsAnyPlaceOfTheRing) {
  const Pupil pupil = PupilOf({0, 0, 0, 0, 0.25 * 4 / (4 * std::sqrt(3.0))}, 2.0, 0.55);
  const Peak peak = PeakOf(pupil);
  const double radius = std::hypot(peak.x, peak.y);
  EXPECT_GT(radius, 0.1);
  ChordQuadrature quadrature(ActiveChords());
  const NodeCounts counts = ChordQuadrature::CountsFor(pupil, {0, 0, 1, 3, 3});
  EXPECT_GT(peak.value, std::norm(quadrature.Field(pupil, 0, 0, counts).u));
  for (const double angle : {0.3, 1.9, 4.4}) {
    const double x = radius * std::cos(angle), y = radius * std::sin(angle);
    EXPECT_NEAR(std::norm(quadrature.Field(pupil, x, y, counts).u), peak.value, kBound);
  }
}

// The sum of factor |U|^2 on a fine grid in the window of all slopes.
double HighestSample(const std::vector<Beam>& beams, const std::vector<double>& factors, double spacing) {
  SlopeRange all{0, 0, 0, 0};
  for (const Beam& beam : beams) {
    const SlopeRange slopes = SlopesOf(beam.pupil);
    all.lowX = std::min(all.lowX, slopes.lowX * beam.unitArcmin - 2);
    all.highX = std::max(all.highX, slopes.highX * beam.unitArcmin + 2);
    all.lowY = std::min(all.lowY, slopes.lowY * beam.unitArcmin - 2);
    all.highY = std::max(all.highY, slopes.highY * beam.unitArcmin + 2);
  }
  const int columns = static_cast<int>((all.highX - all.lowX) / spacing) + 1;
  const int rows = static_cast<int>((all.highY - all.lowY) / spacing) + 1;
  std::vector<double> samples(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
  ChordQuadrature quadrature(ActiveChords());
  for (std::size_t i = 0; i < beams.size(); ++i) {
    const double unit = beams[i].unitArcmin;
    const DirectionGrid grid{(all.lowX + all.highX) / 2 / unit, (all.lowY + all.highY) / 2 / unit, spacing / unit,
                             columns, rows};
    quadrature.Intensity(beams[i].pupil, grid, ChordQuadrature::CountsFor(beams[i].pupil, grid),
                         {samples.data(), columns, false, false, factors[i], true});
  }
  return *std::max_element(samples.begin(), samples.end());
}

// The best of samples a seventh apart is at most 1 + cos(2 pi d) halves below the peak (Bernstein's inequality), d the
// largest distance from a sample.
void ExpectNoHigherPlace(const std::vector<Beam>& beams, const std::vector<double>& factors) {
  Workspace workspace(*ActiveKernels());
  const Outcome<Peak> peak = HighestOf(beams, factors, workspace);
  ChordQuadrature& quadrature = workspace.quadrature;
  ASSERT_TRUE(peak);
  const double spacing = 1.0 / 7.0, best = HighestSample(beams, factors, spacing);
  EXPECT_LE(best, peak->value + kBound);
  EXPECT_GE(best, peak->value * (1 + std::cos(2 * kPi * spacing / std::sqrt(2.0))) / 2);
  double value = 0.0;
  for (std::size_t i = 0; i < beams.size(); ++i) {
    const double x = peak->x / beams[i].unitArcmin, y = peak->y / beams[i].unitArcmin;
    const NodeCounts counts = ChordQuadrature::CountsFor(beams[i].pupil, {x, y, 1, 5, 5});
    value += factors[i] * std::norm(quadrature.Field(beams[i].pupil, x, y, counts).u);
  }
  EXPECT_NEAR(value, peak->value, kBound);
}

// Of an even blur, where thousands of samples promise the same.
void ExpectFewClimbs(double defocusD, double radiusMm) {
  const std::vector<double> modes = {0, 0, 0, 0, defocusD * radiusMm * radiusMm / (4 * std::sqrt(3.0))};
  const std::vector<Beam> beams = BeamsOf({PupilOf(modes, radiusMm)});
  const std::vector<double> factors = {1.0};
  Workspace workspace(*ActiveKernels());
  int climbed = 0;
  const Outcome<Peak> peak = HighestOf(beams, factors, workspace, &climbed);
  ASSERT_TRUE(peak);
  EXPECT_GE(climbed, 1);
  EXPECT_LE(climbed, 8);
  // In a window in which light folds, as the metrics of image quality have one.
  LightWindow window = *WindowOf(beams, factors, 256);
  SampleLight(beams, factors, window, workspace);
  const Peak folded = HighestIn(window, beams, factors, workspace, &climbed);
  EXPECT_NEAR(folded.value, peak->value, kBound);
  EXPECT_LE(climbed, 8);
  ExpectNoHigherPlace(beams, factors);
}

// 3 D over 6 mm, whose axis is a little brighter than the rings around it.
TEST(Peak, OfABlurWithABrightAxisIsFoundByFewClimbs) { ExpectFewClimbs(3.0, 3.0); }

// 6 D over 3 mm, which has a dark axis, and its maximum on a ring.
TEST(Peak, OfABlurWithABrightRingIsFoundByFewClimbs) { ExpectFewClimbs(6.0, 1.5); }

std::vector<double> RandomModes(std::mt19937& random) {
  std::normal_distribution<double> normal;
  std::vector<double> modes(28);
  for (std::size_t j = 3; j < modes.size(); ++j) modes[j] = normal(random) * (j < 6 ? 0.2 : j < 15 ? 0.08 : 0.02);
  return modes;
}

TEST(Peak, HasNoHigherPlaceInADenseSearch) {
  std::mt19937 random(5);
  for (int eye = 0; eye < 12; ++eye) {
    SCOPED_TRACE(eye);
    ExpectNoHigherPlace(BeamsOf({PupilOf(RandomModes(random))}), {1.0});
  }
}

TEST(Peak, OfThreeColoursHasNoHigherPlaceInADenseSearch) {
  std::mt19937 random(6);
  for (int i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    const Eye eye = EyeOf(RandomModes(random), 6.0, 555);
    const std::vector<Pupil> pupils = {PupilInLight(eye, 555), PupilInLight(eye, 500), PupilInLight(eye, 620)};
    ExpectNoHigherPlace(BeamsOf(pupils), {0.5, 0.2, 0.3});
  }
}

TEST(Peak, OfASteepWavefrontIsRefused) {
  Workspace workspace(*ActiveKernels());
  for (const double c4 : {1e3, 1e300, std::nan("")}) {
    const std::vector<double> factors = {1.0};
    const Outcome<Peak> peak = HighestOf(BeamsOf({PupilOf({0, 0, 0, 0, c4})}), factors, workspace);
    ASSERT_FALSE(peak) << c4;
    EXPECT_EQ(peak.refusal().problem, Problem::kTooSteep);
  }
}

}  // namespace
}  // namespace orvanel::physical
