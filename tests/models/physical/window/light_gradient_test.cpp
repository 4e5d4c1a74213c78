// Gradients of sums over the light against differences of them.
#include "models/physical/window/light_gradient.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "models/physical/window/peak.h"
#include "tests/models/physical/examples.h"
#include "tests/support/every_kernel.h"
#include "tests/support/planes.h"

namespace orvanel::physical {
namespace {

Eye AnEye(std::size_t mode = 0, double more = 0.0) {
  Eye eye = EyeOf({0, 0.1, -0.2, 0.06, 0.1, -0.04, 0.03, 0.06, -0.05, 0.02, 0.01, 0.02, 0.05, -0.01}, 6.0, 550.0);
  eye.outline = {0.9, 0.8, 0.3, 0.05, -0.05};
  eye.modesUm[mode] += more;
  return eye;
}
std::vector<Beam> Beams(std::size_t mode = 0, double more = 0.0) {
  return *BeamsOf(AnEye(mode, more), {{530.0, 0.4}, {580.0, 0.6}});
}
const std::vector<double> kFactors = {0.7, 1.1};

// By differences of seven places.
template <class Function>
double DifferenceOf(const Function& function) {
  constexpr double kStep = 2e-4;
  return (0.75 * (function(kStep) - function(-kStep)) - 0.15 * (function(2 * kStep) - function(-2 * kStep)) +
          (function(3 * kStep) - function(-3 * kStep)) / 60.0) /
         kStep;
}

using LightGradientVariants = test::EveryKernel;

TEST_P(LightGradientVariants, OfSamplesIsTheirDerivative) {
  Workspace workspace(*GetParam());
  LightWindow window;
  window.side = 96;
  window.spacing = 0.35 * 0.3;
  window.centreX = 0.2;
  const std::vector<double> weights = reference::Noise(96 * 96, 5);
  const std::vector<Beam> beams = Beams();
  const Gradient gradient = SampleGradients(beams, kFactors, workspace).Of(window, weights.data());
  EXPECT_EQ(gradient[0], 0.0);
  for (const std::size_t mode : {1U, 2U, 4U, 9U, 21U, 40U, 65U}) {
    const double difference = DifferenceOf([&](double more) {
      SampleLight(Beams(mode, more), kFactors, window, workspace);
      double sum = 0.0;
      for (std::size_t i = 0; i < weights.size(); ++i) sum += weights[i] * window.samples[i];
      return sum;
    });
    EXPECT_NEAR(gradient[mode], difference, 1e-8 * std::fabs(difference) + 1e-8) << mode;
  }
}

TEST_P(LightGradientVariants, OfOneBeamAreTheSameFromAKeptField) {
  Workspace workspace(*GetParam());
  const std::vector<Beam> beams = *BeamsOf(AnEye(), {{550.0, 1.0}});
  LightWindow window;
  window.side = 96;
  window.spacing = 0.1;
  const std::vector<double> weights = reference::Noise(96 * 96, 5), others = reference::Noise(96 * 96, 6);
  SampleGradients gradients(beams, kFactors, workspace);
  const Gradient first = gradients.Of(window, weights.data());
  const Gradient second = gradients.Of(window, others.data());
  EXPECT_NE(first, second);
  EXPECT_EQ(gradients.Of(window, weights.data()), first);
  EXPECT_EQ(SampleGradients(beams, kFactors, workspace).Of(window, others.data()), second);
}

TEST_P(LightGradientVariants, OfTheDensityIsItsDerivative) {
  Workspace workspace(*GetParam());
  constexpr double kX = 0.3, kY = -0.2;
  const auto densityAt = [&](std::size_t mode, double more) {
    return GradientOfDensity(Beams(mode, more), kFactors, kX, kY, workspace.quadrature).density;
  };
  const DensityGradient at = GradientOfDensity(Beams(), kFactors, kX, kY, workspace.quadrature);
  for (const std::size_t mode : {1U, 2U, 4U, 9U, 21U, 40U, 65U}) {
    EXPECT_NEAR(at.value[mode], DifferenceOf([&](double more) { return densityAt(mode, more).value; }), 1e-8) << mode;
    EXPECT_NEAR(at.x[mode], DifferenceOf([&](double more) { return densityAt(mode, more).x; }), 1e-7) << mode;
    EXPECT_NEAR(at.y[mode], DifferenceOf([&](double more) { return densityAt(mode, more).y; }), 1e-7) << mode;
  }
}

TEST_P(LightGradientVariants, HasTheDensityOfTheField) {
  Workspace workspace(*GetParam());
  const std::vector<Beam> beams = Beams();
  const DensityGradient at = GradientOfDensity(beams, kFactors, 0.3, -0.2, workspace.quadrature);
  double value = 0.0, x = 0.0, xy = 0.0;
  for (std::size_t i = 0; i < beams.size(); ++i) {
    const double unit = beams[i].unitArcmin;
    const Paraboloid one = IntensityOf(workspace.quadrature.Field(beams[i].pupil, 0.3 / unit, -0.2 / unit, {96, 96}));
    value += kFactors[i] * one.value;
    x += kFactors[i] / unit * one.x;
    xy += kFactors[i] / (unit * unit) * one.xy;
  }
  EXPECT_NEAR(at.density.value, value, 1e-12);
  EXPECT_NEAR(at.density.x, x, 1e-11);
  EXPECT_NEAR(at.density.xy, xy, 1e-10);
}

TEST_P(LightGradientVariants, HasTheSameBits) {
  Workspace workspace(*GetParam()), plainest(*RunnableKernels().front());
  LightWindow window;
  window.side = 48;
  window.spacing = 0.1;
  const std::vector<double> weights = reference::Noise(48 * 48, 5);
  const std::vector<Beam> beams = Beams();
  EXPECT_EQ(SampleGradients(beams, kFactors, workspace).Of(window, weights.data()),
            SampleGradients(beams, kFactors, plainest).Of(window, weights.data()));
  EXPECT_EQ(GradientOfDensity(Beams(), kFactors, 0.3, -0.2, workspace.quadrature).y,
            GradientOfDensity(Beams(), kFactors, 0.3, -0.2, plainest.quadrature).y);
}

ORVANEL_ON_EVERY_KERNEL(LightGradientVariants);

}  // namespace
}  // namespace orvanel::physical
