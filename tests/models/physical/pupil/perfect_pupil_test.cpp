// Pupils without aberration against closed forms.
#include "models/physical/pupil/perfect_pupil.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

TEST(PerfectPupil, WithoutAttenuationIsOne) {
  ChordQuadrature quadrature(ActiveChords());
  const PerfectPupil perfect = PerfectPupilOf(PupilOf({0, 0, 0, 0.3}), quadrature);
  EXPECT_EQ(perfect.peak, 1.0);
  EXPECT_EQ(perfect.light, 1.0);
}

// Means of exp(-g s) over s = rho^2: the amplitude has g = rho ln 10 r^2 / 2, the intensity twice that.
TEST(PerfectPupil, WithStilesCrawfordHasTheMeansOfAGaussian) {
  for (const double rho : {0.05, 0.12, 1.0}) {
    Pupil pupil = PupilOf({0, 0.2, 0.1, 0.3}, 2.7);
    pupil.stilesCrawford.rho = rho;
    const double g = rho * std::numbers::ln10 / 2 * 2.7 * 2.7;
    ChordQuadrature quadrature(ActiveChords());
    const PerfectPupil perfect = PerfectPupilOf(pupil, quadrature);
    EXPECT_NEAR(perfect.peak, std::pow((1 - std::exp(-g)) / g, 2), 1e-12);
    EXPECT_NEAR(perfect.light, (1 - std::exp(-2 * g)) / (2 * g), 1e-12);
  }
}

// (pi/4) (diameter / wavelength)^2 per rad^2, 3437.747 arcmin in a radian.
TEST(PerfectPupil, HasTheDensityOfDiffraction) {
  Beam beam;
  beam.pupil = PupilOf({});
  beam.unitArcmin = 0.55e-3 / 6.0 * 10800 / std::numbers::pi;
  const double perRadian2 = std::numbers::pi / 4 * std::pow(6.0 / 0.55e-3, 2);
  EXPECT_NEAR(DensityOf(beam, {}), perRadian2 / std::pow(10800 / std::numbers::pi, 2), 1e-12);
  beam.pupil.outline = {0.8, 0.5, 0.3, 0, 0};
  EXPECT_NEAR(DensityOf(beam, {1.0, 0.9}), 0.4 / 0.9 * perRadian2 / std::pow(10800 / std::numbers::pi, 2), 1e-12);
}

}  // namespace
}  // namespace orvanel::physical
