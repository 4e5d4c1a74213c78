// Light in circles: Airy's rings in closed form, Gaussian pupils, and the point spread function added up.
#include "models/physical/spread/encircled_light.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "models/physical/quadrature/gauss_rules.h"
#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kBound = 2e-4;

// Wavelength / diameter in arcmin.
double UnitOf(double nm, double mm) { return nm * 1e-3 / mm * 10.8 / kPi; }

// Rayleigh (1881): 1 - J0^2 - J1^2 at pi R; at the dark rings J1 = 0.
TEST(EncircledLight, OfAirysRings) {
  const double unit = UnitOf(550, 6);
  Workspace workspace(*ActiveKernels());
  const EncircledLight light =
      *EncircledLight::About(EyeOf({}), Monochromatic(550), 0, 0, View::kPatient, 30 * unit, workspace);
  EXPECT_NEAR(light.Within(1.219670 * unit), 0.837785, kBound);
  EXPECT_NEAR(light.Within(2.233131 * unit), 0.909934, kBound);
  EXPECT_NEAR(light.Within(3.238315 * unit), 0.937683, kBound);
  for (const double r : {0.4, 1.7, 8.3, 29.0}) {
    const double v = kPi * r;
    EXPECT_NEAR(light.Within(r * unit), 1 - std::pow(std::cyl_bessel_j(0, v), 2) - std::pow(std::cyl_bessel_j(1, v), 2),
                kBound)
        << r;
  }
  EXPECT_NEAR(light.DiameterOf(0.5), 1.069664 * unit, 2 * kBound * unit);
  EXPECT_EQ(light.Within(0), 0.0);
  EXPECT_TRUE(std::isnan(light.DiameterOf(0.9999)));
}

// Airy's density 1/(pi^3 q^3) of the periods around, whose inverse cubes add up to 9.03 / period^3, is corrected
// to less than a tenth.
TEST(EncircledLight, LeavesOutTheLightOfThePeriodsAround) {
  const double unit = UnitOf(550, 6);
  Workspace workspace(*ActiveKernels());
  for (const double r : {30.0, 60.0}) {
    const EncircledLight light =
        *EncircledLight::About(EyeOf({}), Monochromatic(550), 0, 0, View::kPatient, r * unit, workspace);
    const double v = kPi * r, period = 4 * r + 40;
    const double expected = 1 - std::pow(std::cyl_bessel_j(0, v), 2) - std::pow(std::cyl_bessel_j(1, v), 2);
    EXPECT_NEAR(light.Within(r * unit), expected, 0.1 * 9.03 * std::pow(r / kPi, 2) / std::pow(period, 3)) << r;
  }
}

// The rim of this pupil has 1e-5 of the intensity in its middle, 3e-3 of the amplitude; the PSF is nearly a Gaussian.
TEST(EncircledLight, OfAGaussianPupilIsGaussian) {
  Eye eye = EyeOf({}, 12.0);
  eye.stilesCrawford.rho = 5.0 / 36;
  Workspace workspace(*ActiveKernels());
  const EncircledLight light = *EncircledLight::About(eye, Monochromatic(550), 0, 0, View::kPatient, 3.0, workspace);
  // Intensity exp(-2 d^2/w^2) in mm gives exp(-2 (pi w a / wavelength)^2), a in rad.
  const double w = std::sqrt(2 / (5.0 / 36 * std::numbers::ln10)), unit = UnitOf(550, 1);
  for (const double radius : {0.05, 0.1, 0.2, 0.4}) {
    const double a = kPi * w * radius / unit;
    EXPECT_NEAR(light.Within(radius), 1 - std::exp(-2 * a * a), 3e-3) << radius;
  }
}

// The PSF by quadrature on chords, added up by Gauss-Legendre rings and the trapezoidal rule along them.
TEST(EncircledLight, IsTheSumOfThePointSpread) {
  Eye eye = EyeOf({0, 0.3, -0.2, 0.1, 0.25, -0.12, 0.05, 0.11, -0.06}, 5.0, 550);
  eye.outline = {0.9, 0.75, 0.4, 0.02, -0.03};
  eye.stilesCrawford = {0.05, 0.3, -0.2};
  const Light light = {{520, 0.4}, {580, 0.6}};
  const double x = 0.4, y = -0.7;
  Workspace workspace(*ActiveKernels());
  for (const View view : {View::kPatient, View::kRetina}) {
    const EncircledLight encircled = *EncircledLight::About(eye, light, x, y, view, 6.0, workspace);
    for (const double radius : {0.7, 3.0}) {
      const GaussRule rule = GaussLegendre(32);
      double sum = 0.0;
      for (int i = -16; i < 16; ++i) {
        const auto at = static_cast<std::size_t>(i < 0 ? -1 - i : i);
        const double q = radius / 2 * (1 + (i < 0 ? -1 : 1) * rule.nodes[at]);
        constexpr int kPlaces = 64;
        double ring = 0.0;
        for (int k = 0; k < kPlaces; ++k) {
          const double angle = 2 * kPi * k / kPlaces;
          const RetinalGrid grid{x + q * std::cos(angle), y + q * std::sin(angle), 1.0, 1, 1, view};
          ring += PointSpreadOf(eye, light, grid, PsfUnit::kPerArcmin2, workspace)->samples[0] / kPlaces;
        }
        sum += radius / 2 * rule.weights[at] * 2 * kPi * q * ring;
      }
      EXPECT_NEAR(encircled.Within(radius), sum, kBound) << radius;
      EXPECT_NEAR(encircled.Within(encircled.DiameterOf(sum) / 2), sum, 1e-9);
    }
  }
}

TEST(EncircledLight, RefusesCirclesWithoutMiddleOrRadius) {
  Workspace workspace(*ActiveKernels());
  const auto problemOf = [&](double x, double radius) {
    return EncircledLight::About(EyeOf({}), Monochromatic(550), x, 0, View::kPatient, radius, workspace)
        .refusal()
        .problem;
  };
  EXPECT_EQ(problemOf(std::nan(""), 1.0), Problem::kPlace);
  EXPECT_EQ(problemOf(0.0, 0.0), Problem::kRadius);
  EXPECT_EQ(problemOf(0.0, 590.0), Problem::kFieldTooLarge);
}

}  // namespace
}  // namespace orvanel::physical
