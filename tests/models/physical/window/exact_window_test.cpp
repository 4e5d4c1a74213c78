// An exact window against the quadrature, at its samples and between them.
#include "models/physical/window/exact_window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <random>
#include <vector>

#include "models/physical/window/light_between_samples.h"
#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

double LightAt(double x, double y, const std::vector<Beam>& beams, const std::vector<double>& factors,
               ChordQuadrature& quadrature) {
  double sum = 0.0;
  for (std::size_t i = 0; i < beams.size(); ++i) {
    const double unit = beams[i].unitArcmin;
    const NodeCounts counts = ChordQuadrature::CountsFor(beams[i].pupil, {x / unit, y / unit, 1.0, 1, 1});
    sum += factors[i] * std::norm(quadrature.Field(beams[i].pupil, x / unit, y / unit, counts).u);
  }
  return sum;
}

const std::vector<double> kModes = {0, 0.4, -0.3, 0.2, 0.6, -0.3, 0.1, 0.15, -0.1, 0.05, 0.02, 0.03, 0.2};

TEST(ExactWindow, SamplesAreThoseOfTheQuadratureInAllQuarters) {
  const std::vector<Beam> beams = *BeamsOf(EyeOf(kModes, 4.0, 555), {{500, 1.0}, {600, 1.0}});
  const std::vector<double> factors = {0.3, 0.7};
  ChordQuadrature quadrature(ActiveChords());
  const auto exact = ExactWindowOf(beams, factors, quadrature);
  ASSERT_TRUE(exact);
  const LightWindow& window = exact->window;
  const int half = window.side / 2;
  for (const auto& [row, column] : {std::pair{0, 0}, {7, 11}, {half - 1, 5}, {-3, 9}, {-half, -half}, {13, -8}}) {
    const double x = window.centreX - column * window.spacing, y = window.centreY + row * window.spacing;
    EXPECT_NEAR(window.At(row, column), LightAt(x, y, beams, factors, quadrature), 1e-10) << row << ' ' << column;
  }
}

TEST(ExactWindow, LosesItsErrorAtMostBetweenSamples) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> uniform(-0.5, 0.5);
  const std::vector<double> factors = {1.0};
  ChordQuadrature quadrature(ActiveChords());
  for (const auto& modes : {kModes, {0, 0, 0, 0, 1.9}, {0.0}}) {
    const std::vector<Beam> beams = *BeamsOf(EyeOf(modes, 3.0), Monochromatic(550));
    const auto exact = ExactWindowOf(beams, factors, quadrature);
    ASSERT_TRUE(exact);
    const LightWindow& window = exact->window;
    const double highest = *std::max_element(exact->samples.begin(), exact->samples.end());
    const double width = SlopesOf(beams, factors).width;
    EXPECT_LT(exact->errorBetween, 1e-6);
    for (int i = 0; i < 100; ++i) {
      const double x = window.centreX + width * uniform(random), y = window.centreY + width * uniform(random);
      EXPECT_NEAR(LightBetweenFineSamples(window, x, y).value, LightAt(x, y, beams, factors, quadrature),
                  exact->errorBetween * highest);
    }
  }
}

TEST(ExactWindow, OfTooManyNodesIsNone) {
  const std::vector<Beam> beams = *BeamsOf(EyeOf({0, 0, 0, 0, 400.0}), Monochromatic(550));
  const std::vector<double> factors = {1.0};
  ChordQuadrature quadrature(ActiveChords());
  EXPECT_FALSE(ExactWindowOf(beams, factors, quadrature));
}

}  // namespace
}  // namespace orvanel::physical
