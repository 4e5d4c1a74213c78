// Point spread functions in scale and orientation, and Strehl ratios in light of several wavelengths.
#include "models/physical/point_spread.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kBound = 1e-9;
const double kArcmin = 10.8 / kPi;  // in a milliradian

PointSpread Computed(const Eye& eye, const Light& light, const RetinalGrid& grid, PsfUnit unit = PsfUnit::kStrehl) {
  Workspace workspace(*ActiveKernels());
  const Outcome<PointSpread> psf = PointSpreadOf(eye, light, grid, unit, workspace);
  EXPECT_TRUE(psf);
  return psf ? *psf : PointSpread{};
}

StrehlRatios Ratios(const Eye& eye, const Light& light, View view = View::kPatient) {
  Workspace workspace(*ActiveKernels());
  return *StrehlRatiosOf(eye, light, view, workspace);
}

double Airy(double x) { return x == 0.0 ? 1.0 : std::pow(2 * std::cyl_bessel_j(1.0, x) / x, 2); }

double XOf(const RetinalGrid& grid, int c) { return grid.centreX + (c - (grid.columns - 1) / 2.0) * grid.spacing; }
double YOf(const RetinalGrid& grid, int r) { return grid.centreY + ((grid.rows - 1) / 2.0 - r) * grid.spacing; }

struct Moments {
  double x = 0, y = 0, xx = 0, xy = 0, yy = 0, third = 0;  // third: the mean of the cubed distance along (ux, uy)
};
Moments MomentsOf(const PointSpread& psf, double ux, double uy) {
  Moments m;
  double total = 0;
  const RetinalGrid& grid = psf.grid;
  const auto each = [&](auto add) {
    for (int r = 0; r < grid.rows; ++r) {
      for (int c = 0; c < grid.columns; ++c) {
        add(psf.samples[static_cast<std::size_t>(r * grid.columns + c)], XOf(grid, c), YOf(grid, r));
      }
    }
  };
  each([&](double v, double x, double y) { total += v, m.x += v * x, m.y += v * y; });
  m.x /= total;
  m.y /= total;
  each([&](double v, double x, double y) {
    x -= m.x;
    y -= m.y;
    m.xx += v * x * x / total;
    m.xy += v * x * y / total;
    m.yy += v * y * y / total;
    m.third += v * std::pow(ux * x + uy * y, 3) / total;
  });
  return m;
}

// ---- Scale

TEST(PointSpread, OfAPerfectEyeIsTheAiryPatternInArcmin) {
  const RetinalGrid grid{1.3, -0.7, 0.21, 23, 14};
  const PointSpread psf = Computed(EyeOf({}, 4.4), Monochromatic(620), grid);
  for (int r = 0; r < grid.rows; ++r) {
    for (int c = 0; c < grid.columns; ++c) {
      const double milliradians = std::hypot(XOf(grid, c), YOf(grid, r)) / kArcmin;
      EXPECT_NEAR(psf.samples[static_cast<std::size_t>(r * grid.columns + c)], Airy(kPi * 4.4 / 0.62 * milliradians),
                  1e-10);
    }
  }
}

// The light within the radius R of an Airy pattern is 1 - J0^2 - J1^2 at pi D R / lambda.
TEST(PointSpread, AsADensityHoldsTheLightOfTheAiryRings) {
  const RetinalGrid grid{0, 0, 0.02, 401, 401};
  const PointSpread psf = Computed(EyeOf({}, 5.0), Monochromatic(550), grid, PsfUnit::kPerArcmin2);
  double light = 0;
  for (int r = 0; r < grid.rows; ++r) {
    for (int c = 0; c < grid.columns; ++c) {
      if (std::hypot(XOf(grid, c), YOf(grid, r)) > 3.0) continue;
      light += psf.samples[static_cast<std::size_t>(r * grid.columns + c)] * 0.02 * 0.02;
    }
  }
  const double v = kPi * 5.0 / 0.55 * 3.0 / kArcmin;
  // Samples near the circle are in or out: an area of 0.02 arcmin^2 with a density below 1e-3.
  EXPECT_NEAR(light, 1 - std::pow(std::cyl_bessel_j(0.0, v), 2) - std::pow(std::cyl_bessel_j(1.0, v), 2), 2e-5);
}

TEST(PointSpread, OfAPrismIsWhereItsRaysGo) {
  // 1 um of Z(1,1) over 6 mm: 2.2918' to the left in both views; of Z(1,-1): up for the person, down on the retina.
  for (const View view : {View::kPatient, View::kRetina}) {
    const double up = view == View::kPatient ? 1.0 : -1.0;
    const StrehlRatios horizontal = Ratios(EyeOf({0, 0, 1.0}), Monochromatic(550), view);
    EXPECT_NEAR(horizontal.peakX, -2.2918, 5e-5);
    EXPECT_NEAR(horizontal.peakY, 0.0, 1e-6);
    const StrehlRatios vertical = Ratios(EyeOf({0, 1.0}), Monochromatic(550), view);
    EXPECT_NEAR(vertical.peakX, 0.0, 1e-6);
    EXPECT_NEAR(vertical.peakY, up * 2.2918, 5e-5);
    const PointSpread psf =
        Computed(EyeOf({0, 0.6, 1.0}), Monochromatic(550), {-2.2918, up * 0.6 * 2.2918, 1e-4, 1, 1, view});
    EXPECT_NEAR(psf.samples[0], 1.0, 1e-6);
  }
}

// Coma's tail lies where the rays of the rim go: at (-Wx, +Wy) for the person, at (-Wx, -Wy) on the retina.
TEST(PointSpread, OfComaHasItsTailOnTheSideOfItsRays) {
  for (const View view : {View::kPatient, View::kRetina}) {
    const Eye eye = EyeOf({0, 0, 0, 0, 0, 0, 0, 0.22, 0.13});
    const Polynomial w = PupilInLight(eye, 550).wavefrontUm;
    Moments rays;
    const double sideY = view == View::kPatient ? 1.0 : -1.0;
    const auto each = [&](auto add) {
      for (int i = 0; i < 40; ++i) {
        for (int k = 0; k < 64; ++k) {
          const double rho = std::sqrt((i + 0.5) / 40), t = 2 * kPi * k / 64;
          const Jet slope = At(w, rho * std::cos(t), rho * std::sin(t));
          add(-slope.dx / 2560, sideY * slope.dy / 2560);
        }
      }
    };
    each([&](double x, double y) { rays.x += x, rays.y += y; });
    const double ux = -0.13, uy = sideY * 0.22;
    each([&](double x, double y) { rays.third += std::pow(ux * (2560 * x - rays.x) + uy * (2560 * y - rays.y), 3); });
    const PointSpread psf = Computed(eye, Monochromatic(550), {0, 0, 0.1, 161, 161, view});
    EXPECT_GT(rays.third, 0.0);
    EXPECT_GT(MomentsOf(psf, ux, uy).third, 0.0);
    EXPECT_LT(std::fabs(MomentsOf(psf, -uy, ux).third), 0.01 * MomentsOf(psf, ux, uy).third);
  }
}

// A minus cylinder at axis 30 leaves lines between 1 and 7 o'clock clearest to the person: the image of a point is a
// line of that direction, 60 degrees. The eye has no refractive error along 30 degrees and is short-sighted across.
TEST(PointSpread, OfAMinusCylinderAtThirtyIsALineBetweenOneAndSevenOClock) {
  const double c = -1.0, axis = kPi / 6, r2 = 9.0;
  const double sphere = c / 2, j0 = -c / 2 * std::cos(2 * axis), j45 = -c / 2 * std::sin(2 * axis);
  std::vector<double> modes(6);
  modes[4] = -sphere * r2 / (4 * std::sqrt(3.0));
  modes[5] = -j0 * r2 / (2 * std::sqrt(6.0));
  modes[3] = -j45 * r2 / (2 * std::sqrt(6.0));
  // Such an eye's wavefront is curved across the axis alone: y' measured along 120 degrees.
  const Polynomial w = WavefrontPolynomial(modes);
  const double x = 0.4 * std::cos(axis), y = 0.4 * std::sin(axis);
  EXPECT_NEAR(At(w, x, y).dx, 0.0, 1e-12);
  EXPECT_NEAR(At(w, x, y).dy, 0.0, 1e-12);
  for (const View view : {View::kPatient, View::kRetina}) {
    const Moments m = MomentsOf(Computed(EyeOf(modes), Monochromatic(550), {0, 0, 0.2, 121, 121, view}), 1, 0);
    const double direction = std::atan2(2 * m.xy, m.xx - m.yy) / 2 * 180 / kPi;
    EXPECT_NEAR(direction, view == View::kPatient ? 60 : -60, 0.5);
  }
}

TEST(PointSpread, OfTheRetinaIsThePatientsUpsideDown) {
  const Eye eye = EyeOf({0, 0.2, -0.3, 0.1, 0.3, -0.2, 0.1, 0.2});
  RetinalGrid grid{0.4, 0.9, 0.3, 11, 8};
  const PointSpread patient = Computed(eye, Monochromatic(550), grid);
  grid.view = View::kRetina;
  grid.centreY = -0.9;
  const PointSpread retina = Computed(eye, Monochromatic(550), grid);
  for (std::size_t r = 0; r < 8; ++r) {
    for (std::size_t c = 0; c < 11; ++c)
      EXPECT_NEAR(patient.samples[r * 11 + c], retina.samples[(7 - r) * 11 + c], 1e-13);
  }
}

// ---- Origins

TEST(PointSpread, AtItsPeakBeginsWithThePeak) {
  const Eye eye = EyeOf({0, 0.2, -0.3, 0.05, 0.08, -0.06, 0.03, 0.1});
  for (const View view : {View::kPatient, View::kRetina}) {
    const StrehlRatios ratios = Ratios(eye, Monochromatic(550), view);
    const PointSpread psf = Computed(eye, Monochromatic(550), {0, 0, 0.1, 1, 1, view, Origin::kPeak});
    EXPECT_NEAR(psf.samples[0], ratios.peak, kBound);
    EXPECT_EQ(psf.originX, ratios.peakX);
    EXPECT_EQ(psf.originY, ratios.peakY);
  }
}

TEST(PointSpread, AtItsCentroidIsShiftedByTheMeanSlope) {
  const Eye eye = EyeOf({0, 0.2, -0.3, 0.05, 0.08, -0.06, 0.03, 0.1, -0.07});
  const PointSpread psf = Computed(eye, Monochromatic(550), {0.3, -0.1, 0.1, 3, 2, View::kPatient, Origin::kCentroid});
  EXPECT_NEAR(psf.originX, -kArcmin / 3 * (2 * -0.3 + std::sqrt(8.0) * -0.07), 1e-12);
  EXPECT_NEAR(psf.originY, kArcmin / 3 * (2 * 0.2 + std::sqrt(8.0) * 0.1), 1e-12);
  const PointSpread same = Computed(eye, Monochromatic(550), {psf.originX + 0.3, psf.originY - 0.1, 0.1, 3, 2});
  for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(psf.samples[i], same.samples[i], 1e-12);
}

// ---- Light

// Defocus on the axis is (sin x / x)^2 with x half the phase at the rim, and every wavelength has its own.
double OnTheAxis(double wavelengthNm, double referenceNm, double c4, double diameterMm) {
  const double difference = 0.63346 / (referenceNm * 1e-3 - 0.21410) - 0.63346 / (wavelengthNm * 1e-3 - 0.21410);
  const double dioptres = -4 * std::sqrt(3.0) * c4 / std::pow(diameterMm / 2, 2) + difference;
  const double x = kPi / (wavelengthNm * 1e-3) * dioptres * std::pow(diameterMm / 2, 2) / 2;
  return x == 0 ? 1 : std::pow(std::sin(x) / x, 2);
}

TEST(PointSpread, InWhiteLightAddsUpTheDefocusOfAllWavelengths) {
  const double c4 = 0.07, diameter = 3.0;
  const Light white = WhiteLight();
  double density = 0, perfect = 0, total = 0;
  for (const SpectralLine& line : white) {
    const double peak = kPi / 4 * std::pow(diameter / (line.wavelengthNm * 1e-3) / kArcmin, 2);
    density += line.weight * peak * OnTheAxis(line.wavelengthNm, 570, c4, diameter);
    perfect += line.weight * peak;
    total += line.weight;
  }
  const Eye eye = EyeOf({0, 0, 0, 0, c4}, diameter, 570);
  const RetinalGrid axis{0, 0, 1, 1, 1};
  EXPECT_NEAR(Computed(eye, white, axis).samples[0], density / perfect, kBound);
  EXPECT_NEAR(Computed(eye, white, axis, PsfUnit::kPerArcmin2).samples[0], density / total, kBound);
  EXPECT_NEAR(Ratios(eye, white).axis, density / perfect, kBound);
}

TEST(PointSpread, InMonochromaticLightElsewhereIsOutOfFocus) {
  const Eye eye = EyeOf({0, 0, 0, 0, 0.05}, 4.0, 850);
  EXPECT_NEAR(Ratios(eye, Monochromatic(555)).axis, OnTheAxis(555, 850, 0.05, 4.0), kBound);
}

TEST(PointSpread, OfOneColourIsTheMixtureOfIt) {
  const Eye eye = EyeOf({0, 0.1, 0.2, 0.05, 0.1}, 5.0, 550);
  const RetinalGrid grid{0.1, 0.2, 0.4, 9, 6};
  const PointSpread once = Computed(eye, Monochromatic(600), grid),
                    twice = Computed(eye, {{600, 0.3}, {600, 2.1}}, grid);
  for (std::size_t i = 0; i < once.samples.size(); ++i) EXPECT_NEAR(once.samples[i], twice.samples[i], 1e-14);
}

TEST(PointSpread, WithStilesCrawfordIsRelativeToThePerfectPupilWithIt) {
  const double rho = 0.05, c4 = 0.06, g = rho * std::log(10.0) / 2 * 9.0;
  Eye eye = EyeOf({0, 0, 0, 0, c4});
  eye.stilesCrawford.rho = rho;
  const std::complex<double> z(-g, 2 * kPi / 0.55 * 2 * std::sqrt(3.0) * c4);
  const double expected = std::norm((std::exp(z) - 1.0) / z) / std::pow((1 - std::exp(-g)) / g, 2);
  EXPECT_NEAR(Ratios(eye, Monochromatic(550)).axis, expected, kBound);
  EXPECT_NEAR(Computed(eye, Monochromatic(550), {0, 0, 1, 1, 1}).samples[0], expected, kBound);
}

// ---- What is refused

TEST(PointSpread, RefusesWhatIsNoGrid) {
  Workspace workspace(*ActiveKernels());
  const auto problemOf = [&](const RetinalGrid& grid) {
    const Outcome<PointSpread> psf = PointSpreadOf(EyeOf({}), Monochromatic(550), grid, PsfUnit::kStrehl, workspace);
    EXPECT_FALSE(psf);
    return psf.refusal().problem;
  };
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  for (const double spacing : {0.0, -0.1, nan, 61.0}) {
    EXPECT_EQ(problemOf({0, 0, spacing, 4, 4}), Problem::kGridSpacing);
  }
  EXPECT_EQ(problemOf({0, 0, 0.1, 0, 4}), Problem::kGridSize);
  EXPECT_EQ(problemOf({0, 0, 0.1, 4, 4097}), Problem::kGridSize);
  EXPECT_EQ(problemOf({nan, 0, 0.1, 4, 4}), Problem::kGridCentre);
  EXPECT_EQ(problemOf({0, 601, 0.1, 4, 4}), Problem::kGridCentre);
  EXPECT_EQ(problemOf({0, 0, 10, 4096, 4096}), Problem::kTooManyNodes);
}

TEST(PointSpread, RefusesWhatItsEyeOrItsLightIs) {
  Workspace workspace(*ActiveKernels());
  RetinalGrid grid{0, 0, 0.1, 4, 4};
  const auto ofPsf = [&](const Eye& eye, const Light& light) {
    return PointSpreadOf(eye, light, grid, PsfUnit::kStrehl, workspace).refusal();
  };
  const auto ofStrehl = [&](const Eye& eye, const Light& light) {
    return StrehlRatiosOf(eye, light, View::kPatient, workspace).refusal();
  };
  EXPECT_EQ(ofPsf(EyeOf({}, 0.0), Monochromatic(550)).problem, Problem::kPupilDiameter);
  EXPECT_EQ(ofStrehl(EyeOf({}, 0.0), Monochromatic(550)).problem, Problem::kPupilDiameter);
  EXPECT_EQ(ofPsf(EyeOf({}), WhiteLight()).problem, Problem::kNoReferenceWavelength);
  EXPECT_EQ(ofStrehl(EyeOf({}), WhiteLight()).problem, Problem::kNoReferenceWavelength);
  const Eye steep = EyeOf({0, 0, 0, 0, 2000}, 6.0, 550);
  const Light orange = {{500, 0.0}, {600, 1.0}};
  for (const Refusal& refusal : {ofPsf(steep, orange), ofStrehl(steep, orange)}) {
    EXPECT_EQ(refusal.problem, Problem::kTooManyNodes);
    EXPECT_EQ(refusal.index, 1);
    EXPECT_EQ(refusal.high, kMaxNodes);
  }
  grid.origin = Origin::kPeak;
  EXPECT_EQ(ofPsf(steep, orange).problem, Problem::kTooSteep);
  EXPECT_EQ(ofPsf(steep, orange).index, 1);
}

}  // namespace
}  // namespace orvanel::physical
