// Sums over light and frequencies against closed forms, and derivatives against differences.
#include "metrics/quality/light_lattice.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "models/physical/otf/otf_overlap.h"
#include "models/physical/quadrature/gauss_rules.h"
#include "tests/models/physical/examples.h"

namespace orvanel::metrics {
namespace {

constexpr double kPi = std::numbers::pi;

double ExactOtf(double v) { return v < 1.0 ? 2.0 / kPi * (std::acos(v) - v * std::sqrt(1.0 - v * v)) : 0.0; }

// An eye, its perfect pupil, and its light on a lattice.
struct Sampled {
  explicit Sampled(const physical::Eye& eye, int side = 256, const Weighting& weighting = {})
      : beams(*BeamsOf(eye, {{550.0, 1.0}})),
        perfect(PerfectLightOf(beams, workspace.quadrature)),
        lattice(perfect, side, weighting, workspace) {
    const physical::SlopeWindow slopes = physical::SlopesOf(beams, perfect.factors);
    window.centreX = slopes.centreX;
    window.centreY = slopes.centreY;
    window.side = side;
    window.spacing = physical::kWindowSpacing * slopes.unit;
    SampleLight(beams, perfect.factors, window, workspace);
  }

  physical::Workspace workspace{*ActiveKernels()};
  std::vector<physical::Beam> beams;
  PerfectLight perfect;
  LightLattice lattice;
  physical::LightWindow window;
};

physical::Eye AnEye() {
  return physical::EyeOf({0, 0.1, -0.2, 0.06, 0.1, -0.04, 0.03, 0.06, -0.05, 0.02, 0.01, 0.02, 0.05, -0.01});
}

TEST(LightLattice, WeighsPerfectLightLikeTheIntegralOverFrequencies) {
  for (const double diameter : {3.0, 6.0}) {
    Sampled sampled(physical::EyeOf({}, diameter));
    const double unit = sampled.perfect.unit;
    const physical::GaussRule rule = physical::GaussLegendre(64);
    double exact = 0.0;
    for (std::size_t i = 0; i < rule.nodes.size(); ++i) {
      for (const double side : {-1.0, 1.0}) {
        const double f = 0.5 * (1.0 + side * rule.nodes[i]);
        exact += rule.weights[i] * 0.5 * 2.0 * kPi * f * ContrastSensitivity().At(60.0 * f) * ExactOtf(f * unit);
      }
    }
    const auto low = sampled.lattice.LowOf(sampled.window, sampled.workspace);
    EXPECT_NEAR(sampled.lattice.Neural(low, {}).value / exact, 1.0, 1e-5) << diameter;
  }
}

TEST(LightLattice, WeighsAnEyeLikeTheOverlapIntegral) {
  Sampled sampled(AnEye());
  const physical::OtfOverlap overlap(sampled.beams[0].pupil, sampled.workspace.chords);
  const Place place{0.4, -0.7};
  const physical::GaussRule rule = physical::GaussLegendre(24);
  constexpr int kDirections = 32;
  double exact = 0.0;
  for (std::size_t i = 0; i < rule.nodes.size(); ++i) {
    for (const double side : {-1.0, 1.0}) {
      const double f = 0.5 * (1.0 + side * rule.nodes[i]);
      const double weight = rule.weights[i] * kPi * f * ContrastSensitivity().At(60.0 * f) / kDirections;
      for (int a = 0; a < kDirections; ++a) {
        const double fx = f * std::cos(kPi * a / kDirections), fy = f * std::sin(kPi * a / kDirections);
        const double turn = 2.0 * kPi * (fx * place.x + fy * place.y);
        const auto otf = overlap.At(fx * sampled.perfect.unit, fy * sampled.perfect.unit);
        exact += weight * (otf.real() * std::cos(turn) - otf.imag() * std::sin(turn));
      }
    }
  }
  const auto low = sampled.lattice.LowOf(sampled.window, sampled.workspace);
  EXPECT_NEAR(sampled.lattice.Neural(low, place).value / exact, 1.0, 1e-4);
}

TEST(LightLattice, NeuralImageHasTheSlopesAndCurvaturesOfItsDifferences) {
  Sampled sampled(AnEye());
  const auto low = sampled.lattice.LowOf(sampled.window, sampled.workspace);
  const Place at{0.31, -0.22};
  constexpr double h = 1e-4;
  const auto neural = [&](double x, double y) { return sampled.lattice.Neural(low, {at.x + x, at.y + y}); };
  const physical::Paraboloid here = neural(0.0, 0.0);
  EXPECT_NEAR(here.x, (neural(h, 0).value - neural(-h, 0).value) / (2 * h), 1e-5);
  EXPECT_NEAR(here.y, (neural(0, h).value - neural(0, -h).value) / (2 * h), 1e-5);
  EXPECT_NEAR(here.xx, (neural(h, 0).x - neural(-h, 0).x) / (2 * h), 1e-4);
  EXPECT_NEAR(here.xy, (neural(h, 0).y - neural(-h, 0).y) / (2 * h), 1e-4);
  EXPECT_NEAR(here.yy, (neural(0, h).y - neural(0, -h).y) / (2 * h), 1e-4);
}

TEST(LightLattice, LargestNeuralPlaceHasNoSlopeAndIsAboveAGrid) {
  Sampled sampled(AnEye());
  const auto low = sampled.lattice.LowOf(sampled.window, sampled.workspace);
  const physical::Peak best = sampled.lattice.LargestNeural(sampled.window, low, sampled.workspace);
  for (double x = -6.0; x <= 6.0; x += 0.25) {
    for (double y = -6.0; y <= 6.0; y += 0.25) {
      ASSERT_LE(sampled.lattice.Neural(low, {x, y}).value, best.value + 1e-9);
    }
  }
  const physical::Paraboloid there = sampled.lattice.Neural(low, {best.x, best.y});
  EXPECT_NEAR(there.x, 0.0, 1e-4);
  EXPECT_NEAR(there.y, 0.0, 1e-4);
  EXPECT_TRUE(best.isolated);
}

// Large pupils need every second sample only; with a table up to 120 c/deg they need all.
TEST(LightLattice, EverySecondSampleGivesTheSameAsAll) {
  int wrong = 0;
  Weighting wide;
  wide.contrast = *ContrastSensitivity::Of({{0.0, 1.0}, {30.0, 3.0}, {60.0, 0.0}, {120.0, 0.0}}, wrong);
  Weighting narrow;
  narrow.contrast = *ContrastSensitivity::Of({{0.0, 1.0}, {30.0, 3.0}, {60.0, 0.0}}, wrong);
  Sampled all(AnEye(), 256, wide), some(AnEye(), 256, narrow);
  const double a = all.lattice.Neural(all.lattice.LowOf(all.window, all.workspace), {0.2, 0.1}).value;
  const double b = some.lattice.Neural(some.lattice.LowOf(some.window, some.workspace), {0.2, 0.1}).value;
  EXPECT_NEAR(a, b, 1e-4 * b);
}

TEST(LightLattice, MeansOfAPerfectPupilAreItsClosedForm) {
  Sampled sampled(physical::EyeOf({}));
  const auto means = sampled.lattice.MeansOf(sampled.window, {}, sampled.workspace);
  for (std::size_t j = 0; j < means.mtf.size(); ++j) {
    const double exact = ExactOtf(static_cast<double>(j) * means.step * sampled.perfect.unit);
    ASSERT_NEAR(means.mtf[j], exact, 1e-9);
    ASSERT_NEAR(means.otf[j], exact, 1e-9);
  }
}

TEST(LightLattice, MeansOfAnEyeAreThoseOfTheOverlapIntegral) {
  Sampled sampled(AnEye());
  const Place place{-0.3, 0.5};
  const auto means = sampled.lattice.MeansOf(sampled.window, place, sampled.workspace);
  const physical::OtfOverlap overlap(sampled.beams[0].pupil, sampled.workspace.chords);
  for (const std::size_t j : {3u, 20u, 55u, 95u}) {
    const double f = static_cast<double>(j) * means.step;
    constexpr int kDirections = 96;
    double mtf = 0.0, mean = 0.0;
    for (int a = 0; a < kDirections; ++a) {
      const double fx = f * std::cos(kPi * a / kDirections), fy = f * std::sin(kPi * a / kDirections);
      const double turn = 2.0 * kPi * (fx * place.x + fy * place.y);
      const auto otf = overlap.At(fx * sampled.perfect.unit, fy * sampled.perfect.unit);
      mtf += std::abs(otf) / kDirections;
      mean += (otf.real() * std::cos(turn) - otf.imag() * std::sin(turn)) / kDirections;
    }
    EXPECT_NEAR(means.mtf[j], mtf, 1e-4) << j;
    EXPECT_NEAR(means.otf[j], mean, 1e-4) << j;
  }
}

TEST(LightLattice, CirclesOfAPerfectPupil) {
  Sampled sampled(physical::EyeOf({}));
  sampled.lattice.TransformAll(sampled.window, sampled.workspace);
  const auto circles = sampled.lattice.CirclesAbout(sampled.window, {}, sampled.workspace);
  const double unit = sampled.perfect.unit;
  // Larger circles have more of the light that the next periods send back.
  for (const double radius : {0.3, 1.219670, 2.0, 5.0, 20.0}) {
    const double x = kPi * radius, j0 = std::cyl_bessel_j(0, x), j1 = std::cyl_bessel_j(1, x);
    EXPECT_NEAR(circles.Within(radius * unit), 1.0 - j0 * j0 - j1 * j1, radius < 10.0 ? 1e-5 : 1e-4) << radius;
  }
  EXPECT_NEAR(2.0 * circles.RadiusOf(0.5, 0.5 * unit, 10.0 * unit), 1.069664 * unit, 1e-4 * unit);
  EXPECT_TRUE(std::isnan(circles.RadiusOf(0.9, 0.5 * unit, 1.0 * unit)));
}

TEST(LightLattice, VolumesOfAPerfectPupil) {
  Sampled sampled(physical::EyeOf({}));
  sampled.lattice.TransformAll(sampled.window, sampled.workspace);
  const auto volumes = sampled.lattice.VolumesOf(sampled.workspace);
  // The volume under the OTF is the peak's density.
  EXPECT_NEAR(volumes.modulus / sampled.perfect.peak, 1.0, 1e-5);
}

}  // namespace
}  // namespace orvanel::metrics
