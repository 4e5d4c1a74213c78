// The centroid against closed forms, and against the point spread function.
#include "models/physical/window/centroid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

std::vector<Beam> BeamsIn(const Eye& eye, double wavelengthNm) { return *BeamsOf(eye, Monochromatic(wavelengthNm)); }

// Vertical coma sqrt 8 (3 rho^3 - 2 rho) sin t has the mean slope sqrt 8 c7 along y, a tilt 2 c1.
TEST(Centroid, IsTheMeanSlopeOfTiltAndComa) {
  const Centroid centroid = CentroidOf(BeamsIn(EyeOf({0, 0.3, -0.2, 0.1, 0.5, 0.2, 0.0, 0.15, -0.05}), 550));
  const double arcminPerUm = 10.8 / std::numbers::pi / 3.0;  // um per 3 mm
  EXPECT_NEAR(centroid.x, arcminPerUm * (2 * -0.2 + std::sqrt(8.0) * -0.05), 1e-12);
  EXPECT_NEAR(centroid.y, arcminPerUm * (2 * 0.3 + std::sqrt(8.0) * 0.15), 1e-12);
}

// Defocus seen through an off-centre Gaussian: the slope 4 sqrt 3 c4 x times the mean x of its light.
TEST(Centroid, IsWeightedByTheLight) {
  Eye eye = EyeOf({0, 0, 0, 0, 0.4});
  eye.stilesCrawford = {0.4, 0.7, 0.0};
  double light = 0.0, moment = 0.0;
  constexpr int kSteps = 1500;
  for (int i = 0; i < kSteps; ++i) {
    for (int j = 0; j < kSteps; ++j) {
      const double x = (2 * (i + 0.5) / kSteps - 1), y = (2 * (j + 0.5) / kSteps - 1);
      if (x * x + y * y > 1) continue;
      const double dx = 3 * x - 0.7, intensity = std::pow(10.0, -0.4 * (dx * dx + 9 * y * y));
      light += intensity;
      moment += intensity * x;
    }
  }
  const double expected = 4 * std::sqrt(3.0) * 0.4 * moment / light * 10.8 / std::numbers::pi / 3.0;
  const Centroid centroid = CentroidOf(BeamsIn(eye, 550));
  EXPECT_NEAR(centroid.x, expected, 1e-5 * expected);
  EXPECT_NEAR(centroid.y, 0.0, 1e-12);
}

TEST(Centroid, OfTheSteepestAttenuationIsThatOfItsCentre) {
  Eye eye = EyeOf({0, 0, 0, 0, 0.4}, 12.0);
  eye.stilesCrawford = {1.0, 0.9, 0.0};
  // The light is a Gaussian well inside the pupil.
  EXPECT_NEAR(CentroidOf(BeamsIn(eye, 550)).x, 4 * std::sqrt(3.0) * 0.4 * 0.9 / 6 * 10.8 / std::numbers::pi / 6, 1e-10);
}

// Colours are mixed by their shares.
TEST(Centroid, OfTwoColoursLiesBetweenTheirs) {
  Eye eye = EyeOf({}, 5.0, 550);
  eye.achromaticAxisXmm = 0.6;
  const std::vector<Beam> beams = *BeamsOf(eye, {{450, 1.0}, {650, 3.0}});
  const double blue = CentroidOf(BeamsIn(eye, 450)).x, red = CentroidOf(BeamsIn(eye, 650)).x;
  EXPECT_NEAR(CentroidOf(beams).x, 0.25 * blue + 0.75 * red, 1e-13);
  EXPECT_NEAR(red, ChromaticDifference(650, 550) * 0.6 * 10.8 / std::numbers::pi, 1e-12);
}

TEST(RaySpread, OfDefocusIsThatOfADisc) {
  // The slope 4 root(3) c4 r / radius, and <r^2> = 1/2. A tilt does not count.
  const double spread = 4 * std::sqrt(3.0) * 0.4 / 3.0 / std::numbers::sqrt2 * 10.8 / std::numbers::pi;
  EXPECT_NEAR(RaySpreadOf(BeamsIn(EyeOf({0, 0.3, -0.5, 0, 0.4}), 550)), spread, 1e-9);
}

TEST(RaySpread, OfTwoColoursHasTheirDistance) {
  Eye eye = EyeOf({}, 5.0, 550);
  eye.achromaticAxisXmm = 0.6;
  const double blue = RaySpreadOf(BeamsIn(eye, 450)), red = RaySpreadOf(BeamsIn(eye, 650));
  const double apart = (ChromaticDifference(650, 550) - ChromaticDifference(450, 550)) * 0.6 * 10.8 / std::numbers::pi;
  EXPECT_NEAR(RaySpreadOf(*BeamsOf(eye, {{450, 1.0}, {650, 1.0}})),
              std::sqrt((blue * blue + red * red) / 2 + apart * apart / 4), 1e-9);
}

}  // namespace
}  // namespace orvanel::physical
