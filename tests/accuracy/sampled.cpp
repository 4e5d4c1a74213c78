// Computes the results of the library for an eye.
#include "tests/accuracy/sampled.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <numbers>

#include "optics/psf.h"
#include "tests/accuracy/closed_forms.h"

namespace orvanel::accuracy {

namespace {

using reference::Area;

constexpr Real kPi = std::numbers::pi_v<Real>;
constexpr Real kPerfectPeak = static_cast<Real>(kDisc) * kDisc / (65536.0L * 65536.0L);

}  // namespace

const std::vector<Direction>& Directions() {
  static const std::vector<Direction> directions = {{"row", 0, 1}, {"column", 1, 0}, {"diagonal", 1, 1}};
  return directions;
}

Real Frequency(const Direction& direction, int i) {
  return static_cast<Real>(i) * std::hypot(static_cast<Real>(direction.row), static_cast<Real>(direction.column)) /
         kCutOff;
}

std::vector<int> Steps(const Direction& direction, Real from, Real to) {
  std::vector<int> steps;
  for (int i = 0; i < kCutOff; ++i) {
    if (Frequency(direction, i) >= from && Frequency(direction, i) < to) steps.push_back(i);
  }
  return steps;
}

std::vector<double> SingleMode(int n, int m, Real rms) {
  std::vector<Real> waves(kCoefficients);
  waves[static_cast<std::size_t>(IndexOf({n, m}))] = rms * NormalisationFactor({n, m});
  return InMillimetres(waves);
}

std::vector<double> InMillimetres(const std::vector<Real>& waves) {
  std::vector<double> millimetres;
  for (const Real w : waves) millimetres.push_back(static_cast<double>(w * kWavelength));
  return millimetres;
}

std::vector<Real> InWaves(const std::vector<double>& millimetres) {
  std::vector<Real> waves;
  for (const Real mm : millimetres) waves.push_back(mm / kWavelength);
  return waves;
}

Simulation::Simulation(const std::vector<double>& coefficients, double diameter)
    : engine_(coefficients.data(), diameter, kSide, 1, 1, 1), mtf_(Area(kSide)), limit_(kCutOff) {
  engine_.ComputeMtf(kWavelength, mtf_.data(), &step_, nullptr, nullptr, limit_.data(), kSide);
}

Real Simulation::Mtf(int row, int column) const { return mtf_[reference::At(128 + row, 128 + column, kSide)]; }

Real AxisStrehlOfEngine(const std::vector<double>& coefficients) {
  OpticsEngine engine(coefficients.data(), kAnyPupil, kSide, 1, 1, 1);
  std::vector<double> re(Area(kSide)), im(Area(kSide));
  PupilFunction({engine.wavefrontPlane.data(), kSide}, kWavelength, {{re.data(), kSide}, {im.data(), kSide}});
  engine.Fft2(re.data(), im.data(), kSide, 0);
  return (static_cast<Real>(re[0]) * re[0] + static_cast<Real>(im[0]) * im[0]) / kPerfectPeak;
}

Real PeakStrehlOfEngine(const std::vector<double>& coefficients) {
  return OpticsEngine(coefficients.data(), kAnyPupil, kSide, 1, 1, 1).ComputeStrehl(kWavelength);
}

Real AxisStrehlOnGrid(const std::vector<double>& coefficients, int side) {
  const OpticsEngine engine(coefficients.data(), kAnyPupil, side, 1, 1, 1);
  std::complex<Real> sum = 0;
  Real samples = 0;
  for (const Real w : engine.wavefrontPlane) {
    if (w == kWavefrontOutside) continue;
    sum += std::polar(1.0L, 2 * kPi * w / kWavelength);
    ++samples;
  }
  return std::norm(sum / samples);
}

BandLimitedPsf::BandLimitedPsf(OpticsEngine& engine) {
  engine.EnsureOtf();
  std::map<int, Real> rings;
  for (int r = 0; r < kSide; ++r) {
    for (int c = 0; c < kSide; ++c) {
      // The PSF's centre lies half a plane from the transform's origin.
      const Real sign = (r + c) % 2 == 0 ? 1 : -1;
      const std::size_t i = reference::At(r, c, kSide);
      const int row = (r + 128) % kSide - 128, column = (c + 128) % kSide - 128;
      if (row * row + column * column > kCutOff * kCutOff) continue;
      otf_.push_back({row, column, sign * engine.otfRealPlane[i], sign * engine.otfImagPlane[i]});
      rings[row * row + column * column] += sign * engine.otfRealPlane[i];
    }
  }
  for (const auto& [square, sum] : rings) rings_.push_back({std::sqrt(static_cast<Real>(square)) / kSide, sum});
}

Real BandLimitedPsf::At(Real row, Real column) const {
  Real sum = 0;
  for (const Frequency& f : otf_) {
    const Real phase = 2 * kPi * (static_cast<Real>(f.row) * row + static_cast<Real>(f.column) * column) / kSide;
    sum += f.re * std::cos(phase) + f.im * std::sin(phase);
  }
  return sum;
}

Real BandLimitedPsf::MeanAt(Real radius) const {
  Real sum = 0;
  for (const auto& [frequency, weight] : rings_) sum += weight * BesselJ(0, 2 * kPi * frequency * radius);
  return sum;
}

Real BandLimitedPsf::EncircledEnergy(Real radius) const {
  Real sum = 0;
  for (const auto& [frequency, weight] : rings_) {
    sum += weight *
           (frequency == 0 ? kPi * radius * radius : radius / frequency * BesselJ(1, 2 * kPi * frequency * radius));
  }
  return sum / (rings_.front().second * kSide * kSide);
}

Real BandLimitedPsf::DarkRing(Real low, Real high) const {
  const auto falls = [this](Real radius) {
    Real slope = 0;
    for (const auto& [frequency, weight] : rings_) {
      slope -= weight * frequency * BesselJ(1, 2 * kPi * frequency * radius);
    }
    return slope < 0;
  };
  for (int step = 0; step < 40; ++step) {
    const Real middle = (low + high) / 2;
    (falls(middle) ? low : high) = middle;
  }
  return (low + high) / 2;
}

Real BandLimitedPsf::HighestNearCentre() const {
  Real row = 0, column = 0, highest = At(0, 0);
  for (Real step = 0.25L; step > 1e-4L;) {
    const Real before = highest;
    const std::pair<Real, Real> neighbours[] = {
        {row - step, column}, {row + step, column}, {row, column - step}, {row, column + step}};
    for (const auto& [r, c] : neighbours) {
      const Real value = At(r, c);
      if (value > highest) highest = value, row = r, column = c;
    }
    if (highest == before) step /= 2;
  }
  return highest;
}

SampledPupil::SampledPupil(const GridPlane& wavefront) {
  for (const Real w : wavefront) {
    samples_.push_back(w == kWavefrontOutside ? 0 : std::polar(1.0L, 2 * kPi * w / kWavelength));
  }
}

std::complex<Real> SampledPupil::Overlap(int rows, int columns) const {
  std::complex<Real> sum = 0;
  for (int r = 128 - kRadius; r <= 128 + kRadius; ++r) {
    for (int c = 128 - kRadius; c <= 128 + kRadius; ++c) {
      if (std::max(std::abs(r + rows - 128), std::abs(c + columns - 128)) > kRadius) continue;
      sum += samples_[reference::At(r + rows, c + columns, kSide)] * std::conj(samples_[reference::At(r, c, kSide)]);
    }
  }
  return sum / static_cast<Real>(kDisc);
}

}  // namespace orvanel::accuracy
