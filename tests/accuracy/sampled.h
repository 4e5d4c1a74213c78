// Declares the results of the library for an eye, and direct sums over the same samples in long double.
#ifndef ORVANEL_TESTS_ACCURACY_SAMPLED_H
#define ORVANEL_TESTS_ACCURACY_SAMPLED_H

#include <orvanel/optics_engine.h>

#include <complex>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/planes.h"

namespace orvanel::accuracy {

using reference::Real;

constexpr int kSide = 256;         // samples of a plane
constexpr int kRadius = 64;        // of the pupil, samples
constexpr int kCutOff = 128;       // of the transfer function, samples
constexpr int kDisc = 12853;       // samples of the pupil
constexpr double kAnyPupil = 3.0;  // where a result does not depend on it

// Lines through the centre of the transfer function.
struct Direction {
  std::string name;
  int row, column;  // samples of one step
};
const std::vector<Direction>& Directions();

// Of step i along it, as a fraction of the cut-off.
Real Frequency(const Direction& direction, int i);

// The steps whose frequency is from `from` to below `to`, both at most 1.
std::vector<int> Steps(const Direction& direction, Real from, Real to);

// One mode of so many waves RMS; millimetres, as the library wants them.
std::vector<double> SingleMode(int n, int m, Real rms);

std::vector<double> InMillimetres(const std::vector<Real>& waves);
std::vector<Real> InWaves(const std::vector<double>& millimetres);

// An eye in the engine, with its PSF and MTF.
class Simulation {
 public:
  explicit Simulation(const std::vector<double>& coefficients, double diameter = kAnyPupil);

  Real Mtf(int row, int column) const;  // from zero frequency
  OpticsEngine& engine() { return engine_; }
  double frequencyStep() const { return step_; }
  double frequencyRange() const { return step_ * 127.5; }
  const std::vector<double>& diffractionLimit() const { return limit_; }

 private:
  OpticsEngine engine_;
  std::vector<double> mtf_, limit_;
  double step_ = 0.0;
};

// The intensity on the axis over that of a perfect pupil: sample (0, 0) of the engine's Fft2 of its pupil function,
// before anything is moved.
Real AxisStrehlOfEngine(const std::vector<double>& coefficients);

// The engine's Strehl ratio, that of the brightest sample.
Real PeakStrehlOfEngine(const std::vector<double>& coefficients);

// |mean of the pupil function|^2 over the samples of a pupil of any size, in long double from the engine's wavefront.
Real AxisStrehlOnGrid(const std::vector<double>& coefficients, int side);

// The engine's PSF between its samples: the one function that has its samples and no frequencies beyond its own.
// Radii are in samples.
class BandLimitedPsf {
 public:
  explicit BandLimitedPsf(OpticsEngine& engine);

  Real At(Real row, Real column) const;      // from the centre; 1 at the peak
  Real MeanAt(Real radius) const;            // over all angles
  Real EncircledEnergy(Real radius) const;   // of all of a period
  Real DarkRing(Real low, Real high) const;  // radius of the smallest mean between
  Real HighestNearCentre() const;            // within a sample of the centre to either side

 private:
  struct Frequency {
    int row, column;
    Real re, im;
  };
  std::vector<Frequency> otf_;
  std::vector<std::pair<Real, Real>> rings_;  // frequency, sum of the real parts at it
};

// The pupil function over the engine's samples of the wavefront, in long double.
class SampledPupil {
 public:
  explicit SampledPupil(const GridPlane& wavefront);

  // Its overlap with itself, moved by so many samples, over the samples of the disc.
  std::complex<Real> Overlap(int rows, int columns) const;

 private:
  std::vector<std::complex<Real>> samples_;
};

}  // namespace orvanel::accuracy

#endif  // ORVANEL_TESTS_ACCURACY_SAMPLED_H
