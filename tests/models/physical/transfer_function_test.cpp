// OTFs in cycles per degree against closed forms, and the fast method against the reference.
#include "models/physical/transfer_function.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <vector>

#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kFast = 1e-4, kReference = 1e-7;

double CutOff(double diameterMm, double wavelengthUm) { return 1000 * diameterMm / wavelengthUm * kPi / 180; }
double DiffractionLimit(double v) { return v >= 1 ? 0 : 2 / kPi * (std::acos(v) - v * std::sqrt(1 - v * v)); }

Eye AnEye() { return EyeOf({0, 0.05, -0.1, 0.06, 0.1, -0.04, 0.03, 0.06, -0.05, 0.02, 0, 0, 0.05}, 5.0, 560); }

std::vector<std::complex<double>> Exact(const Eye& eye, const Light& light, const std::vector<Frequency>& frequencies,
                                        View view = View::kPatient) {
  return *TransferFunctionAt(eye, light, frequencies, view, Workspace(*ActiveKernels()));
}

TEST(TransferFunction, OfAPerfectEyeIsTheDiffractionLimitInCyclesPerDegree) {
  EXPECT_NEAR(CutOff(3.0, 0.55), 95.2, 0.05);
  for (const double f : {0.0, 7.0, 40.0, 90.0, 95.0, 96.0, 500.0}) {
    EXPECT_NEAR(std::abs(Exact(EyeOf({}, 3.0), Monochromatic(550), {{0.6 * f, -0.8 * f}})[0]),
                DiffractionLimit(f / CutOff(3.0, 0.55)), kReference)
        << f;
  }
}

// Light that goes to (x, y) arcmin turns the OTF by exp(-2 pi i (fx x + fy y) / 60).
TEST(TransferFunction, OfAPrismTurnsTheWayOfItsView) {
  const double c1 = 0.11, c2 = 0.23, arcminPerUm = 2 / 3.0 * 10.8 / kPi;
  const Frequency f{13.0, 7.0};
  for (const View view : {View::kPatient, View::kRetina}) {
    const double x = -c2 * arcminPerUm, y = (view == View::kPatient ? 1 : -1) * c1 * arcminPerUm;
    const std::complex<double> expected = DiffractionLimit(std::hypot(f.x, f.y) / CutOff(6.0, 0.55)) *
                                          std::polar(1.0, -2 * kPi * (f.x * x + f.y * y) / 60);
    EXPECT_NEAR(std::abs(Exact(EyeOf({0, c1, c2}), Monochromatic(550), {f}, view)[0] - expected), 0.0, kReference);
  }
}

// The transform of a PSF about a peak that is far from its window's rim.
TEST(TransferFunction, IsTheTransformOfThePointSpread) {
  const Light light = {{520, 1.0}, {600, 0.6}};
  Workspace workspace(*ActiveKernels());
  constexpr int kSide = 601;
  const double spacing = 0.1;  // arcmin
  for (const View view : {View::kPatient, View::kRetina}) {
    const PointSpread psf =
        *PointSpreadOf(AnEye(), light, {0, 0, spacing, kSide, kSide, view}, PsfUnit::kPerArcmin2, workspace);
    for (const Frequency& f : {Frequency{10.0, 4.0}, Frequency{-6.0, 25.0}}) {
      std::complex<double> sum = 0.0;
      for (int r = 0; r < kSide; ++r) {
        for (int c = 0; c < kSide; ++c) {
          const double x = (c - kSide / 2) * spacing, y = (kSide / 2 - r) * spacing;
          sum += psf.samples[static_cast<std::size_t>(r * kSide + c)] * spacing * spacing *
                 std::polar(1.0, -2 * kPi * (f.x * x + f.y * y) / 60);
        }
      }
      // The window of 60' cuts the tails of the PSF.
      EXPECT_NEAR(std::abs(sum - Exact(AnEye(), light, {f}, view)[0]), 0.0, 2e-3);
    }
  }
}

TEST(TransferFunction, OnAGridIsWithinTheBoundOfTheReference) {
  const Light colours = {{480, 0.4}, {560, 1.0}, {650, 0.3}};
  Eye eye = AnEye();
  eye.outline = {0.95, 0.8, 0.4, 0.02, -0.01};
  eye.stilesCrawford = {0.05, 0.3, 0.2};
  Workspace workspace(*ActiveKernels());
  for (const FrequencyGrid& grid : {FrequencyGrid{2.0, 41, View::kPatient}, FrequencyGrid{3.3, 32, View::kRetina},
                                    FrequencyGrid{11.0, 64, View::kPatient}}) {
    const TransferFunction otf = *TransferFunctionOf(eye, colours, grid, workspace);
    std::vector<Frequency> frequencies;
    std::vector<std::size_t> places;
    for (int r = 0; r < grid.side; r += 7) {
      for (int c = 1; c < grid.side; c += 6) {
        frequencies.push_back({(c - grid.side / 2) * grid.step, (grid.side / 2 - r) * grid.step});
        places.push_back(static_cast<std::size_t>(r * grid.side + c));
      }
    }
    const std::vector<std::complex<double>> exact = Exact(eye, colours, frequencies, grid.view);
    for (std::size_t i = 0; i < places.size(); ++i) {
      const std::complex<double> fast(otf.re[places[i]], otf.im[places[i]]);
      EXPECT_NEAR(std::abs(fast - exact[i]), 0.0, kFast) << frequencies[i].x << ' ' << frequencies[i].y;
    }
    const auto zero = static_cast<std::size_t>(grid.side / 2 * grid.side + grid.side / 2);
    EXPECT_NEAR(otf.re[zero], 1.0, 1e-12);
  }
}

TEST(TransferFunction, InWhiteLightIsTheMeanOfItsColours) {
  const std::vector<Frequency> f = {{12.0, -5.0}};
  std::complex<double> sum = 0.0;
  double total = 0.0;
  for (const SpectralLine& line : WhiteLight()) {
    sum += line.weight * Exact(AnEye(), Monochromatic(line.wavelengthNm), f)[0];
    total += line.weight;
  }
  EXPECT_NEAR(std::abs(Exact(AnEye(), WhiteLight(), f)[0] - sum / total), 0.0, 1e-12);
}

// ---- Means over angle

std::vector<AngularMeans> Means(const Eye& eye, const std::vector<double>& frequencies) {
  return *MeansOverAngle(eye, Monochromatic(560), frequencies, Workspace(*ActiveKernels()));
}

TEST(TransferFunction, MeansOfASymmetricEyeAreItsSection) {
  const Eye eye = EyeOf({0, 0, 0, 0, 0.2, 0, 0, 0, 0, 0, 0, 0, 0.1}, 4.0);
  const std::vector<double> frequencies = {0.0, 9.0, 33.0};
  const std::vector<AngularMeans> means = Means(eye, frequencies);
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    const std::complex<double> section = Exact(eye, Monochromatic(560), {{frequencies[i], 0.0}})[0];
    EXPECT_NEAR(means[i].otf, section.real(), kReference);
    EXPECT_NEAR(means[i].mtf, std::abs(section), kReference);
  }
}

// A tilt's OTF has the mean J0 of its turn, and the modulus of the diffraction limit.
TEST(TransferFunction, MeansOfATiltAreABesselFunction) {
  const double c2 = 0.3, shift = c2 * 2 / 3.0 * 10.8 / kPi, f = 20.0;
  const AngularMeans means = Means(EyeOf({0, 0, c2}), {f})[0];
  const double limit = DiffractionLimit(f / CutOff(6.0, 0.56));
  EXPECT_NEAR(means.mtf, limit, 1e-6);
  EXPECT_NEAR(means.otf, limit * std::cyl_bessel_j(0.0, 2 * kPi * f * shift / 60), 1e-5);
}

TEST(TransferFunction, MeansOfAnAsymmetricEyeAreThoseOfManyDirections) {
  const double f = 25.0;
  std::vector<Frequency> around;
  constexpr int kDirections = 1500;
  for (int i = 0; i < kDirections; ++i) {
    around.push_back({f * std::cos(2 * kPi * i / kDirections), f * std::sin(2 * kPi * i / kDirections)});
  }
  AngularMeans expected;
  for (const std::complex<double>& otf : Exact(AnEye(), Monochromatic(560), around)) {
    expected.mtf += std::abs(otf) / kDirections;
    expected.otf += otf.real() / kDirections;
  }
  const AngularMeans means = Means(AnEye(), {f})[0];
  EXPECT_NEAR(means.mtf, expected.mtf, 1e-5);
  EXPECT_NEAR(means.otf, expected.otf, 1e-5);
}

// ---- What is refused

TEST(TransferFunction, RefusesWhatHasNone) {
  Workspace workspace(*ActiveKernels());
  const auto refusalOf = [&](const Eye& eye, const FrequencyGrid& grid) {
    return TransferFunctionOf(eye, Monochromatic(560), grid, workspace).refusal();
  };
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(refusalOf(AnEye(), {0.0, 8}).problem, Problem::kFrequency);
  EXPECT_EQ(refusalOf(AnEye(), {nan, 8}).problem, Problem::kFrequency);
  EXPECT_EQ(refusalOf(AnEye(), {1.0, 0}).problem, Problem::kGridSize);
  EXPECT_EQ(refusalOf(AnEye(), {1.0, 4097}).problem, Problem::kGridSize);
  // 155 c/deg each way in 8192 steps.
  const Refusal fine = refusalOf(AnEye(), {0.03, 8});
  EXPECT_EQ(fine.problem, Problem::kFrequency);
  EXPECT_NEAR(fine.low, 2 * CutOff(5.0, 0.56) / 8192, 1e-12);
  EXPECT_EQ(refusalOf(EyeOf({}, 0.1), {1.0, 8}).problem, Problem::kPupilDiameter);
  EXPECT_EQ(refusalOf(EyeOf({0, 0, 0, 0, 60}), {1.0, 8}).problem, Problem::kTooSteep);

  const std::vector<Frequency> bad = {{1.0, 2.0}, {nan, 0.0}}, good = {{1.0, 2.0}};
  const auto at = [&](const Eye& eye, const std::vector<Frequency>& f) {
    return TransferFunctionAt(eye, Monochromatic(560), f, View::kPatient, workspace).refusal();
  };
  EXPECT_EQ(at(AnEye(), bad).problem, Problem::kFrequency);
  EXPECT_EQ(at(AnEye(), bad).index, 1);
  EXPECT_EQ(at(EyeOf({0, 0, 0, 0, 1e6}), good).problem, Problem::kTooManyNodes);
  const std::vector<double> infinite = {std::numeric_limits<double>::infinity()}, ten = {10.0};
  EXPECT_EQ(MeansOverAngle(AnEye(), Monochromatic(560), infinite, workspace).refusal().problem, Problem::kFrequency);
  EXPECT_EQ(MeansOverAngle(EyeOf({0, 0, 0, 0, 1e6}), Monochromatic(560), ten, workspace).refusal().problem,
            Problem::kTooManyNodes);
}

}  // namespace
}  // namespace orvanel::physical
