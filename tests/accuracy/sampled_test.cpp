// Tests how the comparisons read the results of the library.
#include "tests/accuracy/sampled.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <vector>

namespace orvanel::accuracy {
namespace {

using reference::Near;

// Doubles, summed over a plane of numbers that add up to 1 in size.
constexpr Real kSumOfDoubles = 1e-14L;

std::vector<double> LopsidedEye() {
  std::vector<double> c(kCoefficients);
  c[3] = 1.3e-4, c[4] = -2.1e-4, c[7] = 1.9e-4, c[9] = 0.8e-4, c[12] = 0.7e-4;
  return c;
}

TEST(Sampled, TheBandLimitedPsfPassesThroughTheSamples) {
  Simulation eye(LopsidedEye());
  const BandLimitedPsf psf(eye.engine());
  for (const auto& [row, column] : {std::pair{0, 0}, std::pair{3, -2}, std::pair{-11, 7}, std::pair{40, 90}}) {
    const double sample = eye.engine().psfPlane[reference::At(128 + row, 128 + column, kSide)];
    EXPECT_PRED3(Near, psf.At(row, column), sample, kSumOfDoubles) << row << ", " << column;
  }
}

TEST(Sampled, MeansAndEnergiesAreThoseOfThePsfBetweenItsSamples) {
  Simulation eye(LopsidedEye());
  const BandLimitedPsf psf(eye.engine());
  const int angles = 64;  // more than the PSF has frequencies on so small a circle
  const Real radius = 3.7L;
  Real mean = 0;
  for (int k = 0; k < angles; ++k) {
    const std::complex<Real> place = std::polar(radius, 2 * std::acos(-1.0L) * static_cast<Real>(k) / angles);
    mean += psf.At(place.imag(), place.real()) / angles;
  }
  EXPECT_PRED3(Near, psf.MeanAt(radius), mean, kSumOfDoubles);
  // The slope of the energy is the mean times the circumference over the sum; its error goes with the step's square.
  const Real step = 1e-3L,
             slope = (psf.EncircledEnergy(radius + step) - psf.EncircledEnergy(radius - step)) / (2 * step);
  const Real sum = reference::Sum(reference::ToReal(eye.engine().psfPlane));
  EXPECT_PRED3(Near, slope, 2 * std::acos(-1.0L) * radius * mean / sum, step * step);
}

TEST(Sampled, TheAxisIsThePeakWhereNothingIsMoved) {
  EXPECT_PRED3(Near, AxisStrehlOfEngine(SingleMode(4, 0, 0.1L)), PeakStrehlOfEngine(SingleMode(4, 0, 0.1L)),
               kSumOfDoubles);
  EXPECT_GT(PeakStrehlOfEngine(SingleMode(3, 1, 0.2L)), 1.1L * AxisStrehlOfEngine(SingleMode(3, 1, 0.2L)));
  EXPECT_PRED3(Near, AxisStrehlOnGrid(LopsidedEye(), 256), AxisStrehlOfEngine(LopsidedEye()), kSumOfDoubles);
}

TEST(Sampled, TheOverlapIsOneAtRestAndTurnsWithTheDirection) {
  const OpticsEngine engine(LopsidedEye().data(), kAnyPupil, kSide, 1, 1, 1);
  const SampledPupil pupil(engine.wavefrontPlane);
  EXPECT_LE(std::abs(pupil.Overlap(0, 0) - 1.0L), kSumOfDoubles);
  EXPECT_LE(std::abs(pupil.Overlap(17, -40) - std::conj(pupil.Overlap(-17, 40))), kSumOfDoubles);
  EXPECT_EQ(std::abs(pupil.Overlap(100, 100)), 0);
  EXPECT_GT(std::abs(pupil.Overlap(30, 0) - pupil.Overlap(0, 30)), 0.01L);
}

TEST(Sampled, StepsAndFrequenciesOfTheDiagonalAreLonger) {
  const Direction& diagonal = Directions()[2];
  EXPECT_PRED3(Near, Frequency(diagonal, 64), std::sqrt(0.5L), 1e-18L);
  EXPECT_EQ(Steps(diagonal, 0, 1).size(), 91U);
  EXPECT_EQ(Steps(Directions()[0], 0.25L, 0.5L).front(), 32);
  EXPECT_EQ(Steps(Directions()[0], 0.25L, 0.5L).back(), 63);
}

}  // namespace
}  // namespace orvanel::accuracy
