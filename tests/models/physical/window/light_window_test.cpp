// Samples of the window against the quadrature, and hills.
#include "models/physical/window/light_window.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>

#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

Eye AnEye() { return EyeOf({0, 0.3, -0.2, 0.16, 0.1, -0.24, 0.03, 0.16, -0.05}); }

TEST(LightWindow, SamplesAreTheLightAtTheirDirections) {
  Workspace workspace(*ActiveKernels());
  const std::vector<Beam> beams = *BeamsOf(AnEye(), Monochromatic(550));
  const std::vector<double> factors = {2.0};
  LightWindow window = *WindowOf(beams, factors, 256);
  SampleLight(beams, factors, window, workspace);
  const double unit = beams[0].unitArcmin;
  for (const auto& [row, column] : {std::pair{0, 0}, {7, 250}, {249, 3}, {5, 9}}) {
    const double x = (window.centreX - window.Folded(column) * window.spacing) / unit;
    const double y = (window.centreY + window.Folded(row) * window.spacing) / unit;
    const NodeCounts counts = ChordQuadrature::CountsFor(beams[0].pupil, {x, y, 1.0, 1, 1});
    const double exact = 2.0 * std::norm(workspace.quadrature.Field(beams[0].pupil, x, y, counts).u);
    EXPECT_NEAR(window.At(row, column), exact, 1e-4) << row << ' ' << column;
  }
}

TEST(LightWindow, HoldsTheSlopesOfTheLight) {
  const std::vector<Beam> beams = *BeamsOf(EyeOf({0, 0, 2.0, 0, 0.5}), Monochromatic(550));
  const SlopeWindow slopes = SlopesOf(beams, std::vector<double>{1.0});
  // Tilt 2 x 2.2918', defocus 4 root(3) 0.5 um at the rim.
  EXPECT_NEAR(slopes.centreX, 2.0 * 2.2918, 1e-3);
  EXPECT_NEAR(slopes.centreY, 0.0, 1e-9);
  EXPECT_NEAR(slopes.width, 2.0 * (4.0 * std::sqrt(3.0) * 0.5 / 3.0 * 3.437747 + 1.5 * slopes.unit), 1e-2);
}

TEST(LightWindow, HillsAreWhereAFunctionPeaks) {
  constexpr int kSide = 64;
  std::vector<double> samples(kSide * kSide);
  LightWindow window{1.0, -2.0, 0.5, kSide, samples.data()};
  const double peakX = 3.1, peakY = -4.7;
  for (int r = 0; r < kSide; ++r) {
    for (int c = 0; c < kSide; ++c) {
      const double x = 1.0 - window.Folded(c) * 0.5 - peakX, y = -2.0 + window.Folded(r) * 0.5 - peakY;
      samples[static_cast<std::size_t>(r * kSide + c)] = std::exp(-(x * x + y * y) / 4.0);
    }
  }
  const std::vector<Hill> hills = HillsIn(window, 0.5);
  ASSERT_EQ(hills.size(), 1u);
  EXPECT_NEAR(hills[0].x, peakX, 0.01);
  EXPECT_NEAR(hills[0].y, peakY, 0.01);
  EXPECT_NEAR(hills[0].value, 1.0, 0.01);
}

}  // namespace
}  // namespace orvanel::physical
