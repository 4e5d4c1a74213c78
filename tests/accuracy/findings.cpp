// Computes the comparisons.
#include "tests/accuracy/findings.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "orvanel/line_spread.h"
#include "orvanel/psf_peak.h"

namespace orvanel::accuracy {

namespace {

// The frequency of step i as a vector.
std::array<Real, 2> FrequencyVector(const Direction& direction, int i) {
  return {static_cast<Real>(i * direction.column) / kCutOff, static_cast<Real>(i * direction.row) / kCutOff};
}

}  // namespace

Real Worse(Real a, Real b) { return std::abs(a) >= std::abs(b) ? a : b; }

Simulation FlatPupil() { return Simulation(std::vector<double>(kCoefficients)); }

Real DiffractionError(const Simulation& flat, const Direction& direction) {
  Real worst = 0;
  for (const int i : Steps(direction, 0, 1)) {
    worst = Worse(worst, flat.Mtf(i * direction.row, i * direction.column) - DiffractionMtf(Frequency(direction, i)));
  }
  return worst;
}

Real DiffractionErrorOfPlane(const Simulation& flat) {
  Real worst = 0;
  for (int r = -127; r <= 127; ++r) {
    for (int c = -127; c <= 127; ++c) {
      const Real frequency = std::hypot(static_cast<Real>(r), static_cast<Real>(c)) / kCutOff;
      worst = Worse(worst, flat.Mtf(r, c) - DiffractionMtf(frequency));
    }
  }
  return worst;
}

Real LargestBeyondCutOff(const Simulation& flat) {
  Real largest = 0;
  for (int r = -128; r <= 127; ++r) {
    for (int c = -128; c <= 127; ++c) {
      if (r * r + c * c > kCutOff * kCutOff) largest = std::max(largest, flat.Mtf(r, c));
    }
  }
  return largest;
}

Real DiffractionCurveError(const Simulation& flat) {
  Real worst = 0;
  for (int i = 0; i < kCutOff; ++i) {
    worst = Worse(
        worst, flat.diffractionLimit()[static_cast<std::size_t>(i)] - DiffractionMtf(static_cast<Real>(i) / kCutOff));
  }
  return worst;
}

Real AiryErrorOfPlane(Simulation& flat) {
  Real worst = 0;
  for (int r = -128; r <= 127; ++r) {
    for (int c = -128; c <= 127; ++c) {
      // Samples are half a wavelength over diameter apart.
      const Real radius = std::hypot(static_cast<Real>(r), static_cast<Real>(c)) / 2;
      worst = Worse(worst, flat.engine().psfPlane(r + 128, c + 128) - AiryIntensity(radius));
    }
  }
  return worst;
}

Real EffectiveRadius() { return std::sqrt(kDisc / std::numbers::pi_v<Real>) / kRadius; }

AiryRing FindAiryRing(const BandLimitedPsf& psf, int ring) {
  // Samples are half a wavelength over diameter apart.
  const Real closed = AiryDarkRing(ring);
  return {psf.DarkRing(2 * closed - 0.5L, 2 * closed + 0.5L) / 2, closed, psf.MeanAt(2 * closed),
          psf.EncircledEnergy(2 * closed), AiryEncircledEnergy(closed)};
}

ModeStrehl FindStrehl(Mode mode, Real rms) {
  const std::vector<double> c = SingleMode(mode.n, mode.m, rms);
  return {AxisStrehl(mode, rms), AxisStrehlOfEngine(c), PeakStrehlOfEngine(c)};
}

Real StrehlErrorOfMode(Mode mode) {
  Real worst = 0;
  for (int i = 1; i <= 20; ++i) {
    const Real rms = static_cast<Real>(i) / 100;
    worst = Worse(worst, AxisStrehlOfEngine(SingleMode(mode.n, mode.m, rms)) - AxisStrehl(mode, rms));
  }
  return worst;
}

Real SampledRms(Mode mode) {
  const OpticsEngine engine(SingleMode(mode.n, mode.m, 1).data(), kAnyPupil, kSide, 1, 1, 1);
  Real sum = 0, squares = 0;
  for (const Real w : engine.wavefrontPlane) {
    if (w == kWavefrontOutside) continue;
    sum += w / kWavelength;
    squares += w / kWavelength * w / kWavelength;
  }
  return std::sqrt(squares / kDisc - sum / kDisc * sum / kDisc);
}

Real PeakBetweenSamples(Mode mode, Real rms) {
  Simulation eye(SingleMode(mode.n, mode.m, rms));
  return BandLimitedPsf(eye.engine()).HighestNearCentre();
}

Real QuadratureError(Mode mode, Real rms) {
  const Polynomial wavefront(InWaves(SingleMode(mode.n, mode.m, rms)));
  Real worst = 0;
  for (Real frequency = 0; frequency < 1; frequency += 1 / 16.0L) {
    worst = std::max(worst, std::abs(TransferFunction(wavefront, frequency, 0, kNodes) -
                                     TransferFunction(wavefront, frequency, 0, kManyNodes)));
  }
  return worst;
}

Real MtfError(const Simulation& eye, const Polynomial& wavefront, Real from, Real to, int every, int nodes) {
  Real worst = 0;
  for (const Direction& direction : Directions()) {
    for (const int i : Steps(direction, from, to)) {
      if (i % every != 0) continue;
      const auto [fx, fy] = FrequencyVector(direction, i);
      const Real exact = std::abs(TransferFunction(wavefront, fx, fy, nodes));
      worst = Worse(worst, eye.Mtf(i * direction.row, i * direction.column) - exact);
    }
  }
  return worst;
}

Real MtfErrorBetweenSamples(Simulation& eye, const Polynomial& wavefront, int nodes) {
  const LineSpreads spreads = LineSpreadsOf(eye.engine().psfPlane.data());
  Real worst = 0;
  for (int i = 0; i < kCutOff; i += 3) {
    for (const Real part : {0.25L, 0.5L, 0.75L}) {
      const Real sample = static_cast<Real>(i) + part, frequency = sample / kCutOff;
      const auto error = [&](const LineSpread& spread, Real fx, Real fy) {
        return MtfBetweenSamples(spread, static_cast<double>(sample)) -
               std::abs(TransferFunction(wavefront, fx, fy, nodes));
      };
      worst = Worse(worst, error(spreads.horizontal, frequency, 0));
      worst = Worse(worst, error(spreads.vertical, 0, frequency));
    }
  }
  return worst;
}

Real PeakErrorBetweenSamples(Simulation& eye) {
  return orvanel::PeakBetweenSamples(eye.engine().psfPlane.data()).value /
             BandLimitedPsf(eye.engine()).HighestNearCentre() -
         1;
}

std::array<Real, kFineBands> MtfErrorsOfMode(Mode mode) {
  std::array<Real, kFineBands> worst{};
  for (const Real rms : kMtfRms) {
    const std::vector<double> c = SingleMode(mode.n, mode.m, rms);
    const Simulation eye(c);
    const Polynomial wavefront(InWaves(c));
    for (std::size_t band = 0; band < kFineBands; ++band) {
      const Real from = static_cast<Real>(band) / kFineBands, to = static_cast<Real>(band + 1) / kFineBands;
      worst[band] = Worse(worst[band], MtfError(eye, wavefront, from, to, 1, kNodes));
    }
  }
  return worst;
}

std::array<Real, kBands> Quarters(const std::array<Real, kFineBands>& fine) {
  std::array<Real, kBands> worst{};
  for (std::size_t band = 0; band < kFineBands; ++band) {
    Real& quarter = worst[band * kBands / kFineBands];
    quarter = Worse(quarter, fine[band]);
  }
  return worst;
}

Real SteepestSlope(const OpticsEngine& engine) {
  const auto& w = engine.wavefrontPlane;
  Real steepest = 0;
  for (std::size_t i = 0; i + kSide < w.size(); ++i) {
    for (const std::size_t neighbour : {i + 1, i + kSide}) {
      if (w[i] == kWavefrontOutside || w[neighbour] == kWavefrontOutside) continue;
      steepest = std::max(steepest, std::abs(static_cast<Real>(w[neighbour]) - w[i]) / kWavelength);
    }
  }
  return steepest;
}

Real MtfRounding(Simulation& eye) {
  const SampledPupil pupil(eye.engine().wavefrontPlane);
  Real worst = 0;
  for (const Direction& direction : Directions()) {
    for (const int i : Steps(direction, 0, 1)) {
      const int row = i * direction.row, column = i * direction.column;
      worst = Worse(worst, eye.Mtf(row, column) - std::abs(pupil.Overlap(row, column)));
    }
  }
  return worst;
}

Real PsfSumError(Simulation& eye) {
  const Real sum = reference::Sum(reference::ToReal(eye.engine().psfPlane));
  return sum * eye.engine().strehlRatio * kDisc / (kSide * kSide) - 1;
}

Real RescaleError(const PublishedEye& eye, double pupil) {
  const Real ratio = static_cast<Real>(pupil) / eye.pupil;
  const std::vector<double> inner = AtPupil(eye, pupil), whole = AtPupil(eye, eye.pupil);
  std::vector<Real> moved = RescaledCoefficients(InWaves(whole), ratio);
  std::fill(moved.begin() + 3, moved.end(), 0.0L);
  const Polynomial outer(InWaves(whole)), pistonAndTilt(moved);
  const OpticsEngine engine(inner.data(), pupil, kSide, 1, 1, 1);
  Real worst = 0;
  for (int r = 0; r < kSide; ++r) {
    for (int c = 0; c < kSide; ++c) {
      const Real w = engine.wavefrontPlane[reference::At(r, c, kSide)];
      if (w == kWavefrontOutside) continue;
      const Real x = static_cast<Real>(c - 128) / kRadius, y = static_cast<Real>(r - 128) / kRadius;
      worst = Worse(worst, w / kWavelength + pistonAndTilt(x, y) - outer(ratio * x, ratio * y));
    }
  }
  return worst;
}

}  // namespace orvanel::accuracy
