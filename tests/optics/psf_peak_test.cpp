// Tests the peak of the PSF against closed forms and sums over the pupil in long double.
#include "optics/psf_peak.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <complex>
#include <numbers>
#include <utility>
#include <vector>

#include "optics/psf.h"
#include "orvanel/optics_engine.h"

namespace orvanel {
namespace {

using Real = long double;
using Complex = std::complex<Real>;
using Coefficients = std::array<double, kCoefficients>;

constexpr Real kTwoPi = 2 * std::numbers::pi_v<Real>;
constexpr int kSide = 256;

// The place is that of a local interpolation, some hundredths of a sample off; the value there is that of the samples
// to 2.4e-8 of a perfect peak, since they do not tell the frequencies +128 and -128 apart. A top is flat, so that the
// peak loses no more than the curvature makes of the distance. Measured, here and by docs/accuracy.md.
constexpr double kPlaceError = 0.03;  // samples
constexpr double kPeakError = 1e-4;   // relative

// The PSF of the wavefront that the engine holds.
struct Psf {
  std::vector<double> plane = std::vector<double>(kSide * kSide);
  double strehl = 0.0;
};

Psf PsfOf(OpticsEngine& engine) {
  Psf psf;
  double pitch = 0.0;
  EXPECT_TRUE(engine.ComputePsf(kWavelength, psf.plane.data(), &pitch, &psf.strehl, kSide));
  return psf;
}

// A perfect eye whose image is displaced by so many samples.
Psf Displaced(double rows, double columns) {
  OpticsEngine engine(Coefficients{}.data(), 3.0, kSide, 1, 1, 1);
  for (int r = 0; r < kSide; ++r) {
    for (int c = 0; c < kSide; ++c) {
      double& w = engine.wavefrontPlane[static_cast<std::size_t>(r * kSide + c)];
      if (w < 999.0) w -= kWavelength * (rows * (r - 128) + columns * (c - 128)) / kSide;
    }
  }
  return PsfOf(engine);
}

// The PSF as a sum over the pupil, without transform, relative to a perfect pupil's.
class ExactPsf {
 public:
  explicit ExactPsf(const OpticsEngine& engine) {
    for (int r = 0; r < kSide; ++r) {
      for (int c = 0; c < kSide; ++c) {
        const double w = engine.wavefrontPlane[static_cast<std::size_t>(r * kSide + c)];
        if (w < 999.0) samples_.push_back({r - 128, c - 128, std::polar<Real>(1.0L, kTwoPi * w / kWavelength)});
      }
    }
  }

  // (row, column) from the axis.
  Real At(Real row, Real column) const {
    std::array<Complex, 129> down, across;
    for (int i = 0; i < 129; ++i) {
      const auto place = static_cast<std::size_t>(i);
      down[place] = std::polar<Real>(1.0L, kTwoPi * (i - 64) * row / kSide);
      across[place] = std::polar<Real>(1.0L, kTwoPi * (i - 64) * column / kSide);
    }
    std::array<Complex, 129> sums{};
    for (const Sample& s : samples_) {
      sums[static_cast<std::size_t>(s.row + 64)] += s.field * across[static_cast<std::size_t>(s.column + 64)];
    }
    Complex field = 0.0L;
    for (std::size_t i = 0; i < sums.size(); ++i) field += sums[i] * down[i];
    return std::norm(field / static_cast<Real>(samples_.size()));
  }

  // The top of the lobe at a place, by steps that are halved until they are of no account.
  Real Top(Real& row, Real& column) const {
    Real best = At(row, column);
    for (Real step = 0.25L; step > 1e-6L;) {
      bool better = false;
      for (const auto& [dr, dc] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) {
        const Real value = At(row + step * dr, column + step * dc);
        if (value <= best) continue;
        best = value;
        row += step * dr;
        column += step * dc;
        better = true;
        break;
      }
      if (!better) step /= 2;
    }
    return best;
  }

 private:
  struct Sample {
    int row, column;
    Complex field;
  };
  std::vector<Sample> samples_;
};

// Eyes without symmetry; the peaks of all but the first lie well between the samples.
std::vector<Coefficients> LopsidedEyes() {
  std::vector<Coefficients> eyes(5);
  for (std::size_t e = 0; e < eyes.size(); ++e) {
    constexpr double kWaves[] = {0.1, 0.35, 0.6, 0.9, 1.4};
    for (std::size_t j = 3; j < kCoefficients; ++j) {
      const auto i = static_cast<double>(j);
      eyes[e][j] = kWaves[e] * kWavelength / (i / 4.0) * std::sin(1.7 * i + 0.9 * static_cast<double>(e));
    }
  }
  return eyes;
}

// The brightest sample as a place from the axis, by the transform whose origin is the axis.
std::pair<int, int> BrightestFromAxis(OpticsEngine& engine) {
  std::vector<double> re(kSide * kSide), im(kSide * kSide);
  PupilFunction({engine.wavefrontPlane.data(), kSide}, kWavelength, {{re.data(), kSide}, {im.data(), kSide}});
  EXPECT_TRUE(engine.Fft2(re.data(), im.data(), kSide, 0));
  int place = 0;
  double brightest = 0.0;
  for (int i = 0; i < kSide * kSide; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const double power = re[at] * re[at] + im[at] * im[at];
    if (power <= brightest) continue;
    brightest = power;
    place = i;
  }
  return {place / kSide, place % kSide};
}

TEST(PsfPeak, OfADisplacedPerfectImageIsThatOfTheImageInPlace) {
  for (const auto& [rows, columns] : {std::pair{0.0, 0.0}, {0.5, 0.5}, {0.25, -0.4}, {-0.49, 0.1}, {3.3, -7.7}}) {
    const Psf psf = Displaced(rows, columns);
    const PsfPeak peak = PeakBetweenSamples(psf.plane.data());
    EXPECT_NEAR(psf.strehl * peak.value, 1.0, kPeakError) << rows << " " << columns;
    EXPECT_NEAR(std::abs(peak.row), std::abs(rows - std::round(rows)), kPlaceError) << rows;
    EXPECT_NEAR(std::abs(peak.column), std::abs(columns - std::round(columns)), kPlaceError) << columns;
  }
}

TEST(PsfPeak, APerfectPeakInTheMiddleOfFourSamplesShowsWhatAiryPredicts) {
  // Samples are half a wavelength over the diameter apart, so that the middle is sqrt(1/2) / 2 of that from each.
  const double x = std::numbers::pi * std::sqrt(0.125);
  const double airy = std::pow(2.0 * std::cyl_bessel_j(1, x) / x, 2.0);
  EXPECT_NEAR(airy, 0.728, 5e-4);
  constexpr double kFlatPsfSampling = 5.7e-4;  // the staircase of the pupil's edge
  EXPECT_NEAR(Displaced(0.5, 0.5).strehl, airy, kFlatPsfSampling);
}

TEST(PsfPeak, IsThatOfTheSumOverThePupil) {
  for (const Coefficients& eye : LopsidedEyes()) {
    OpticsEngine engine(eye.data(), 3.0, kSide, 1, 1, 1);
    const Psf psf = PsfOf(engine);
    const PsfPeak peak = PeakBetweenSamples(psf.plane.data());
    const auto [brightestRow, brightestColumn] = BrightestFromAxis(engine);
    Real row = brightestRow + static_cast<Real>(peak.row), column = brightestColumn + static_cast<Real>(peak.column);
    const ExactPsf exact(engine);
    const auto top = static_cast<double>(exact.Top(row, column));
    EXPECT_NEAR(psf.strehl * peak.value, top, top * kPeakError);
    EXPECT_NEAR(static_cast<double>(row - brightestRow), peak.row, kPlaceError);
    EXPECT_NEAR(static_cast<double>(column - brightestColumn), peak.column, kPlaceError);
  }
}

// A lobe of 0.9 on the sample in the centre, and one of 1 in the middle of four samples, 40 rows below and 30 columns
// to the left.
std::vector<double> TwoLobes() {
  const Psf here = Displaced(0.0, 0.0), there = Displaced(0.5, 0.5);
  std::vector<double> plane(kSide * kSide);
  for (int r = 0; r < kSide; ++r) {
    for (int c = 0; c < kSide; ++c) {
      const auto from = static_cast<std::size_t>((r - 40 + kSide) % kSide * kSide + (c + 30) % kSide);
      const auto to = static_cast<std::size_t>(r * kSide + c);
      plane[to] = here.plane[to] + there.strehl * there.plane[from] / 0.9;
    }
  }
  return plane;
}

TEST(PsfPeak, MayBelongToAnotherLobeThanTheBrightestSample) {
  const std::vector<double> plane = TwoLobes();
  const PsfPeak peak = PeakBetweenSamples(plane.data());
  constexpr double kTail = 1e-3;  // of one lobe at the other: it falls with the third power of the distance
  EXPECT_NEAR(peak.value, 1.0 / 0.9, kTail);
  EXPECT_NEAR(std::abs(peak.row - 40.0), 0.5, 0.01);
  EXPECT_NEAR(std::abs(peak.column + 30.0), 0.5, 0.01);
}

TEST(PsfPeak, IsAsFarFromTheBrightestSampleAcrossAnEdge) {
  const std::vector<double> plane = TwoLobes();
  const PsfPeak expected = PeakBetweenSamples(plane.data());
  for (const auto& [row, column] : {std::pair{250, 10}, {7, 251}}) {
    std::vector<double> moved(kSide * kSide);
    for (int r = 0; r < kSide; ++r) {
      for (int c = 0; c < kSide; ++c) {
        const int to = (r + row + kSide / 2) % kSide * kSide + (c + column + kSide / 2) % kSide;
        moved[static_cast<std::size_t>(to)] = plane[static_cast<std::size_t>(r * kSide + c)];
      }
    }
    const PsfPeak peak = PeakOf({moved.data(), kSide, row, column});
    constexpr double kRounding = 1e-9;
    EXPECT_NEAR(peak.value, expected.value, kRounding);
    EXPECT_NEAR(peak.row, expected.row, kRounding) << row;
    EXPECT_NEAR(peak.column, expected.column, kRounding) << column;
  }
}

TEST(PsfPeak, OfAnEngineIsThatOfItsPlane) {
  for (const Coefficients& eye : LopsidedEyes()) {
    OpticsEngine engine(eye.data(), 3.0, kSide, 1, 1, 1);
    const PsfPeak ofPlane = PeakBetweenSamples(PsfOf(engine).plane.data());
    const PsfPeak ofEngine = engine.FindPsfPeak();
    constexpr double kRounding = 1e-9;
    EXPECT_NEAR(ofEngine.value, ofPlane.value, kRounding);
    EXPECT_NEAR(ofEngine.row, ofPlane.row, kRounding);
    EXPECT_NEAR(ofEngine.column, ofPlane.column, kRounding);
  }
}

TEST(PsfPeak, OfADarkPlaneAndOnOtherGridsIsTheSampleItself) {
  const std::vector<double> dark(kSide * kSide);
  OpticsEngine small(LopsidedEyes()[4].data(), 3.0, 64, 1, 1, 1);
  for (const PsfPeak& peak : {PeakBetweenSamples(dark.data()), OpticsEngine().FindPsfPeak(), small.FindPsfPeak()}) {
    EXPECT_EQ(peak.value, 1.0);
    EXPECT_EQ(peak.row, 0.0);
    EXPECT_EQ(peak.column, 0.0);
  }
}

}  // namespace
}  // namespace orvanel
