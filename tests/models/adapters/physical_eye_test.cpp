// Canonical eyes in the physical model: fields, lenses and reference wavelengths against closed forms.
#include "models/adapters/physical_eye.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "eye/adjustments.h"
#include "eye/errors.h"
#include "models/physical/point_spread.h"
#include "optics/kernels/dispatch.h"
#include "tests/eye/eyes.h"

namespace orvanel::models {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kBound = 1e-9;  // of the physical model

Eye Flat(double pupilMm) { return PerfectEye(Millimetres(pupilMm)); }

Eye Wearing(const Eye& eye, double sphere, double cylinder, double axis, double vertexMm) {
  Adjustments wearing;
  wearing.lens = Lens{{Dioptres(sphere), Dioptres(cylinder), Degrees(axis)}, Millimetres(vertexMm)};
  return Adjusted(eye, wearing);
}

double StrehlOnAxis(const physical::Eye& eye, double wavelengthNm) {
  physical::Workspace workspace(*ActiveKernels());
  const auto ratios = physical::StrehlRatiosOf(eye, {{wavelengthNm, 1.0}}, physical::View::kPatient, workspace);
  EXPECT_TRUE(ratios);
  return ratios ? ratios->axis : NAN;
}

// (sin x / x)^2, where x is half the difference of phase between centre and edge: F r^2 / 2 in um, times pi / lambda.
double DefocusOnAxis(double dioptres, double pupilMm, double wavelengthNm) {
  const double x = kPi * dioptres * pupilMm * pupilMm / 8.0 / (wavelengthNm * 1e-3);
  return x == 0.0 ? 1.0 : std::pow(std::sin(x) / x, 2.0);
}

TEST(PhysicalEye, HasTheModesOfTheEyeUpToOrderTen) {
  Coefficients numbers(physical::kModes);
  for (std::size_t j = 0; j < numbers.size(); ++j) numbers[j] = 0.01 * static_cast<double>(j + 1);
  Eye eye = Flat(5.5);
  eye.coefficients = {kOsaConvention, numbers};
  eye.referenceWavelength = Nanometres(840.0);
  const physical::Eye physical = PhysicalEyeOf(eye);
  EXPECT_EQ(physical.diameterMm, 5.5);
  EXPECT_EQ(physical.referenceNm, 840.0);
  for (std::size_t j = 0; j < numbers.size(); ++j) EXPECT_EQ(physical.modesUm[j], numbers[j]) << j;
  eye.referenceWavelength.reset();
  EXPECT_EQ(PhysicalEyeOf(eye).referenceNm, 0.0);
}

TEST(PhysicalEye, IsInMicrometresWithYUpFromAnyConvention) {
  Eye eye = Flat(4.0);
  // Noll's number 4 is defocus, 7 vertical coma; the list is by OSA index.
  eye.coefficients = {{Unit::kWaves, Nanometres(500.0), Normalisation::kNone, IndexScheme::kNoll, YAxis::kDown},
                      {0, 0, 0, 0, 0.2, 0, 0, 0.3}};
  const physical::Eye physical = PhysicalEyeOf(eye);
  EXPECT_NEAR(physical.modesUm[4], 0.1 / std::sqrt(3.0), 1e-16);
  EXPECT_NEAR(physical.modesUm[7], -0.15 / std::sqrt(8.0), 1e-16);
  EXPECT_EQ(physical.referenceNm, 0.0);  // not that of the unit
}

TEST(PhysicalEye, AnOrderAboveTenIsRefusedUnlessItIsZero) {
  Eye eye = Flat(5.0);
  SetTerm(eye, OsaIndex({12, 0}), 0.0);
  EXPECT_NO_THROW(PhysicalEyeOf(eye));
  eye.coefficients = {kOsaConvention, {}};
  SetTerm(eye, OsaIndex({11, -11}), 0.25);
  try {
    PhysicalEyeOf(eye);
    FAIL();
  } catch (const OrderAboveHighest& error) {
    EXPECT_EQ(error.term, (ZernikeTerm{11, -11}));
    EXPECT_EQ(error.number, 0.25);
    EXPECT_EQ(error.highest, 10);
    EXPECT_NE(std::string(error.what()).find("the physical model accepts radial orders 0 to 10"), std::string::npos)
        << error.what();
  }
}

TEST(PhysicalEye, APrescriptionBesideTheCoefficientsIsAddedOnce) {
  Eye eye = AsymmetricEye();
  eye.prescription = PowerVector{Dioptres(-1.0), Dioptres(0.25), Dioptres(0.5)};
  const physical::Eye adjusted = PhysicalEyeOf(Adjusted(eye, {}));
  // M = -4 sqrt3 c4 / r^2 and J45 = -2 sqrt6 c3 / r^2.
  const double square = 2.25 * 2.25;
  EXPECT_NEAR(adjusted.modesUm[4] - 0.14, square / (4.0 * std::sqrt(3.0)), 1e-15);
  EXPECT_NEAR(adjusted.modesUm[3] + 0.09, -0.5 * square / (2.0 * std::sqrt(6.0)), 1e-15);
}

TEST(PhysicalEye, WithALensHasTheStrehlRatioOfDefocus) {
  for (const double pupil : {2.0, 4.0, 6.0}) {
    for (const double power : {-0.5, 0.125, 0.75}) {
      for (const double vertex : {0.0, 12.0}) {
        const double atCornea = power / (1.0 - vertex * 1e-3 * power);
        EXPECT_NEAR(StrehlOnAxis(PhysicalEyeOf(Wearing(Flat(pupil), power, 0.0, 180.0, vertex)), 555.0),
                    DefocusOnAxis(atCornea, pupil, 555.0), kBound)
            << pupil << " mm, " << power << " D at " << vertex << " mm";
      }
    }
  }
}

// The integral of exp(i k F r^2 / 2 t^2) J0(v t) 2 t over 0 to 1, by Simpson's rule.
double DefocusAt(double dioptres, double pupilMm, double wavelengthNm, double arcmin) {
  const double radius = pupilMm / 2.0, k = 2.0 * kPi / (wavelengthNm * 1e-3);
  const double phase = k * dioptres * radius * radius / 2.0;
  const double v = k * radius * 1e3 * arcmin / 60.0 * kPi / 180.0;
  constexpr int kSteps = 2000;
  double re = 0.0, im = 0.0;
  for (int i = 0; i <= kSteps; ++i) {
    const double t = static_cast<double>(i) / kSteps;
    const double weight = (i == 0 || i == kSteps ? 1.0 : i % 2 == 1 ? 4.0 : 2.0) / (3.0 * kSteps);
    const double amplitude = weight * std::cyl_bessel_j(0.0, v * t) * 2.0 * t;
    re += amplitude * std::cos(phase * t * t);
    im += amplitude * std::sin(phase * t * t);
  }
  return re * re + im * im;
}

physical::PointSpread SpreadOf(const physical::Eye& eye, double wavelengthNm) {
  const physical::RetinalGrid grid = {.spacing = 0.37, .columns = 15, .rows = 9};
  physical::Workspace workspace(*ActiveKernels());
  const auto psf = physical::PointSpreadOf(eye, {{wavelengthNm, 1.0}}, grid, physical::PsfUnit::kStrehl, workspace);
  EXPECT_TRUE(psf);
  return psf ? *psf : physical::PointSpread{};
}

template <class Expected>
void ExpectRound(const physical::PointSpread& psf, Expected expected) {
  const physical::RetinalGrid& grid = psf.grid;
  ASSERT_EQ(psf.samples.size(), 135U);
  for (int row = 0; row < grid.rows; ++row) {
    for (int column = 0; column < grid.columns; ++column) {
      const double distance = grid.spacing * std::hypot(column - 7, row - 4);
      EXPECT_NEAR(psf.samples[static_cast<std::size_t>(row * grid.columns + column)], expected(distance), kBound)
          << row << ' ' << column;
    }
  }
}

TEST(PhysicalEye, WithALensHasThePsfOfDefocus) {
  ExpectRound(SpreadOf(PhysicalEyeOf(Wearing(Flat(5.0), 0.5, 0.0, 180.0, 0.0)), 555.0),
              [](double arcmin) { return DefocusAt(0.5, 5.0, 555.0, arcmin); });
}

// Spectacles at 12 mm whose powers at the cornea, F / (1 - d F), are -3 D and -4.25 D.
TEST(PhysicalEye, BehindItsOwnSpectaclesHasTheAiryPattern) {
  const auto before = [](double power) { return power / (1.0 + 0.012 * power); };
  Eye eye = Flat(5.0);
  eye.prescription = ToPowerVector({Dioptres(-3.0), Dioptres(-1.25), Degrees(20.0)});
  const Eye corrected = Wearing(eye, before(-3.0), before(-4.25) - before(-3.0), 20.0, 12.0);
  ExpectRound(SpreadOf(PhysicalEyeOf(corrected), 555.0),
              [](double arcmin) { return DefocusAt(0.0, 5.0, 555.0, arcmin); });
}

// By Rx = -0.63346 / (lambda - 0.2141) an eye without error of refraction at 850 nm has -0.862 D at 555 nm.
TEST(PhysicalEye, AnEyeMeasuredInTheInfraredIsShortSightedInGreen) {
  const double difference = -0.63346 / (0.850 - 0.2141) + 0.63346 / (0.555 - 0.2141);
  EXPECT_NEAR(difference, 0.862, 5e-4);
  Eye eye = Flat(3.0);
  eye.referenceWavelength = Nanometres(850.0);
  EXPECT_NEAR(StrehlOnAxis(PhysicalEyeOf(eye), 850.0), 1.0, kBound);
  EXPECT_NEAR(StrehlOnAxis(PhysicalEyeOf(eye), 555.0), DefocusOnAxis(difference, 3.0, 555.0), kBound);
  EXPECT_NEAR(StrehlOnAxis(PhysicalEyeOf(Wearing(eye, -difference, 0.0, 180.0, 0.0)), 555.0), 1.0, kBound);
  eye.referenceWavelength.reset();
  EXPECT_NEAR(StrehlOnAxis(PhysicalEyeOf(eye), 555.0), 1.0, kBound);
}

}  // namespace
}  // namespace orvanel::models
