// Autocorrelation of the pupil on a lattice, and its correction at the rim.
#include "models/physical/otf/otf_lattice.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

#include "base/elementary.h"
#include "models/physical/kernels/dispatch.h"
#include "models/physical/plane_transform.h"
#include "models/physical/pupil/pupil_lattice.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;

std::size_t At(int row, int column, int side) {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(side) + static_cast<std::size_t>(column);
}

// Samples of one sub-lattice across the reference pupil.
int AcrossOf(const FrequencyLattice& frequencies) { return static_cast<int>(std::ceil(1.0 / frequencies.step - 1e-9)); }

// The samples over the reference pupil: `density` for each step of the frequencies.
PupilLattice LatticeOf(const FrequencyLattice& frequencies, int density) {
  return {density * AcrossOf(frequencies), 2.0 * frequencies.step / density};
}

// The mean transmission at the rim: of the intensity.
double RimTransmission(const Ellipse& outline, const Attenuation& attenuation) {
  if (attenuation.perSquare == 0.0) return 1.0;
  constexpr int kPlaces = 64;
  const SineCosine turn = SineAndCosine(outline.angle);
  double sum = 0.0;
  for (int i = 0; i < kPlaces; ++i) {
    const SineCosine t = SineAndCosineOfTurn(i, kPlaces);
    const double a = outline.semiAxisA * t.cosine, b = outline.semiAxisB * t.sine;
    const double x = outline.centreX + a * turn.cosine - b * turn.sine - attenuation.x;
    const double y = outline.centreY + a * turn.sine + b * turn.cosine - attenuation.y;
    sum += Exponential(2.0 * attenuation.perSquare * (x * x + y * y));
  }
  return sum / kPlaces;
}

// The OTF of a flat pupil at v cut-offs.
double DiffractionLimit(double v) {
  return v < 1.0 ? 2.0 / kPi * (ArcCosine(v) - v * std::sqrt((1.0 - v) * (1.0 + v))) : 0.0;
}

}  // namespace

struct OtfLattice::Memory {
  explicit Memory(const Kernels& kernels) : chords(ChordKernelsOf(kernels)), transform(kernels) {}

  const ChordKernels& chords;
  PlaneTransform transform;
  std::vector<double> re, im, power;
  // What mask and correction are made for.
  Pupil flat;
  FrequencyLattice frequencies;
  int density = 0;
  PupilLattice lattice;
  std::vector<double> mask;
  std::vector<double> correction;  // by frequency, zero frequency at (0, 0)
};

OtfLattice::OtfLattice(const Kernels& kernels) : memory_(std::make_unique<Memory>(kernels)) {}
OtfLattice::~OtfLattice() = default;

// Adds the power spectrum of a sub-lattice.
void OtfLattice::AddFields(const Pupil& pupil, int firstRow, int firstColumn) {
  Memory& m = *memory_;
  const int side = m.frequencies.side;
  const SubLattice part{m.density, firstRow, firstColumn};
  FieldOnLattice(pupil, m.lattice, m.mask, part, 0.0, 0.0, m.chords, side, m.re.data(), m.im.data());
  m.transform(m.re.data(), m.im.data(), side);
  for (std::size_t i = 0; i < m.power.size(); ++i) m.power[i] += m.re[i] * m.re[i] + m.im[i] * m.im[i];
}

// The autocorrelation, with zero frequency at (0, 0), in re and im.
void OtfLattice::Autocorrelate(const Pupil& pupil) {
  Memory& m = *memory_;
  std::fill(m.power.begin(), m.power.end(), 0.0);
  for (int row = 0; row < m.density; ++row) {
    for (int column = 0; column < m.density; ++column) AddFields(pupil, row, column);
  }
  m.re = m.power;
  std::fill(m.im.begin(), m.im.end(), 0.0);
  m.transform(m.re.data(), m.im.data(), m.frequencies.side);
}

// The error of an overlap comes from the cells at the rim. With attenuation it is the same, times the transmission
// there.
void OtfLattice::SetFlat(const Pupil& flat) {
  Memory& m = *memory_;
  m.flat = {};  // so that nothing half made is taken for whole
  const Ellipse& outline = flat.outline;
  const int planeSide = m.frequencies.side;
  const std::size_t samples = At(planeSide, 0, planeSide);
  m.re.resize(samples);
  m.im.resize(samples);
  m.power.resize(samples);
  m.lattice = LatticeOf(m.frequencies, m.density);
  m.mask = MaskOf(outline, m.lattice);
  Pupil bright = flat;
  bright.stilesCrawford = {};
  Autocorrelate(bright);
  const double area = kPi * outline.semiAxisA * outline.semiAxisB / (m.lattice.step * m.lattice.step);
  const SineCosine turn = SineAndCosine(outline.angle);
  double cells = 0.0;
  for (const double share : m.mask) cells += share * share;
  const double unit = cells / m.re[0];  // of the transforms
  std::vector<double> exact(samples), lacking(samples);
  for (int r = 0; r < planeSide; ++r) {
    for (int c = 0; c < planeSide; ++c) {
      const double fx = (c < planeSide / 2 ? c : c - planeSide) * m.frequencies.step;
      const double fy = (r < planeSide / 2 ? -r : planeSide - r) * m.frequencies.step;
      const double along = (fx * turn.cosine + fy * turn.sine) / outline.semiAxisA;
      const double across = (fy * turn.cosine - fx * turn.sine) / outline.semiAxisB;
      const std::size_t i = At(r, c, planeSide);
      exact[i] = area * DiffractionLimit(std::sqrt(along * along + across * across));
      lacking[i] = exact[i] - unit * std::sqrt(m.re[i] * m.re[i] + m.im[i] * m.im[i]);
    }
  }
  const Attenuation attenuation = AttenuationOf(flat);
  const double rim = RimTransmission(outline, attenuation);
  if (attenuation.perSquare != 0.0) Autocorrelate(flat);
  m.correction.assign(samples, 0.0);
  for (std::size_t i = 0; i < samples; ++i) {
    const double overlap = unit * std::sqrt(m.re[i] * m.re[i] + m.im[i] * m.im[i]);
    // Where next to nothing overlaps, cells of the rim decide, and their ratio means nothing.
    const double least = 1e-4 * cells;
    m.correction[i] = overlap > least ? 1.0 + rim * lacking[i] / overlap : exact[i] > 0.0 ? 1.0 : 0.0;
  }
  m.flat = flat;
}

bool OtfLattice::Compute(const Pupil& pupil, const FrequencyLattice& frequencies, double* re, double* im) {
  Memory& m = *memory_;
  const int side = frequencies.side;
  if (!(frequencies.step > 0.0 && side / 2 * frequencies.step >= 1.0)) return false;
  const SlopeRange slopes = SlopesOf(pupil);
  // In waves a radius; directions have twice the number.
  const double steepest = std::max({-slopes.lowX, slopes.highX, -slopes.lowY, slopes.highY}) / 2.0;
  constexpr double kWavesPerSample = 0.25, kFewest = 256.0, kMost = 2048.0, kRounding = 1e-9;
  const double needed = 2.0 * steepest / kWavesPerSample;
  if (!(needed <= std::max(1.0 / frequencies.step, kMost))) return false;
  const int density = static_cast<int>(std::ceil(std::max(kFewest, needed) * frequencies.step - kRounding));
  const Pupil flat = Flat(pupil);
  if (!(m.frequencies == frequencies && m.density == density && flat.outline == m.flat.outline &&
        flat.stilesCrawford == m.flat.stilesCrawford && flat.radiusMm == m.flat.radiusMm)) {
    m.frequencies = frequencies;
    m.density = density;
    SetFlat(flat);
  }
  Autocorrelate(pupil);
  const double total = m.re[0] * m.correction[0];
  for (int r = 0; r < side; ++r) {
    for (int c = 0; c < side; ++c) {
      const std::size_t from = At((r + side / 2) % side, (c + side / 2) % side, side), to = At(r, c, side);
      const double factor = m.correction[from] / total;
      re[to] = m.re[from] * factor;
      im[to] = m.im[from] * factor;
    }
  }
  return true;
}

}  // namespace orvanel::physical
