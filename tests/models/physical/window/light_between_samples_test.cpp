// Light between samples against the quadrature, and its derivatives against differences.
#include "models/physical/window/light_between_samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <random>
#include <vector>

#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

LightWindow WindowOfLight(const std::vector<Beam>& beams, Workspace& workspace) {
  const std::vector<double> factors = {1.0};
  LightWindow window = *WindowOf(beams, factors, 256);
  SampleLight(beams, factors, window, workspace);
  return window;
}

TEST(LightBetweenSamples, IsThatOfTheQuadrature) {
  Workspace workspace(*ActiveKernels());
  std::mt19937 random(3);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  for (const double blur : {0.0, 0.05, 0.3, 2.0}) {
    std::vector<double> modes(15);
    for (std::size_t j = 3; j < modes.size(); ++j) modes[j] = blur * uniform(random);
    const std::vector<Beam> beams = *BeamsOf(EyeOf(modes), Monochromatic(550));
    const LightWindow window = WindowOfLight(beams, workspace);
    const std::size_t all = static_cast<std::size_t>(window.side) * static_cast<std::size_t>(window.side);
    const double highest = *std::max_element(window.samples, window.samples + all);
    const double unit = beams[0].unitArcmin, half = std::min(0.3 * window.side * window.spacing, 15.0 * unit);
    for (int i = 0; i < 300; ++i) {
      const double x = window.centreX + half * uniform(random), y = window.centreY + half * uniform(random);
      const NodeCounts counts = ChordQuadrature::CountsFor(beams[0].pupil, {x / unit, y / unit, 1.0, 1, 1});
      const double exact = std::norm(workspace.quadrature.Field(beams[0].pupil, x / unit, y / unit, counts).u);
      constexpr double kOfTheHighest = 0.1, kOfInterpolation = 1e-4;
      const double bound = std::min(kOfTheHighest * highest, kOfInterpolation);
      ASSERT_NEAR(LightBetweenSamples(window, x, y).value, exact, bound) << blur;
    }
  }
}

TEST(LightBetweenSamples, SlopesAndCurvaturesAreTheDerivativesOfTheValue) {
  Workspace workspace(*ActiveKernels());
  const std::vector<Beam> beams =
      *BeamsOf(EyeOf({0, 0.3, -0.2, 0.16, 0.1, -0.24, 0.03, 0.16, -0.05}), Monochromatic(550));
  const LightWindow window = WindowOfLight(beams, workspace);
  constexpr double h = 1e-4, kNear = 1e-6;
  for (const auto& [x, y] : {std::pair{0.01, 0.02}, {1.3, -0.7}, {-2.1, 3.3}}) {
    const auto at = [&window](double right, double up) { return LightBetweenSamples(window, right, up); };
    const Paraboloid here = at(x, y), right = at(x + h, y), left = at(x - h, y), up = at(x, y + h), down = at(x, y - h);
    EXPECT_NEAR(here.x, (right.value - left.value) / (2.0 * h), kNear);
    EXPECT_NEAR(here.y, (up.value - down.value) / (2.0 * h), kNear);
    EXPECT_NEAR(here.xx, (right.x - left.x) / (2.0 * h), kNear);
    EXPECT_NEAR(here.xy, (up.x - down.x) / (2.0 * h), kNear);
    EXPECT_NEAR(here.yy, (up.y - down.y) / (2.0 * h), kNear);
  }
}

}  // namespace
}  // namespace orvanel::physical
