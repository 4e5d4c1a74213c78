// Autocorrelation of the pupil on a lattice, and its correction at the rim.
#include "models/physical/otf/otf_lattice.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <optional>
#include <vector>

#include "models/physical/kernels/dispatch.h"
#include "models/physical/otf/flat_overlap.h"
#include "models/physical/plane_index.h"
#include "models/physical/pupil/pupil_lattice.h"
#include "models/physical/transform/plane_transform.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;

// Samples of one sub-lattice across the reference pupil.
int AcrossOf(const FrequencyLattice& frequencies) { return static_cast<int>(std::ceil(1.0 / frequencies.step - 1e-9)); }

// The samples over the reference pupil and a margin: `density` for each step of the frequencies.
PupilLattice LatticeOf(const FrequencyLattice& frequencies, int density) {
  return {density * AcrossOf(frequencies) + 2 * kMaskReach, 2.0 * frequencies.step / density};
}

}  // namespace

struct OtfLattice::Memory {
  explicit Memory(const Kernels& kernels) : chords(ChordKernelsOf(kernels)), transforms(chords) {}

  const ChordKernels& chords;
  PlaneTransforms transforms;
  AlignedMemory re, im, power;
  AlignedMemory spectrum;  // half of that of the power: the autocorrelation
  // What outline and correction are made for.
  Pupil flat;
  FrequencyLattice frequencies;
  int density = 0;
  int side = 0;  // of the transforms
  std::optional<SampledOutline> outline;
  std::vector<double> correction;  // of each row and column of half the autocorrelation
};

OtfLattice::OtfLattice(const Kernels& kernels) : memory_(std::make_unique<Memory>(kernels)) {}
OtfLattice::~OtfLattice() = default;

// Half the autocorrelation, zero frequency at (0, 0).
void OtfLattice::Autocorrelate(const Pupil& pupil) {
  Memory& m = *memory_;
  const PlaneTransform& transform = m.transforms.Of(m.side);
  const SampledOutline& outline = *m.outline;
  for (int row = 0; row < m.density; ++row) {
    for (int column = 0; column < m.density; ++column) {
      outline.FieldOf(pupil, {row, column}, 0.0, 0.0, m.chords, m.re.data(), m.im.data());
      const FieldPlane field{m.re.data(), m.im.data(), outline.pitch(), outline.Rows(row), outline.pitch()};
      transform.PowerSpectrum(field, 1.0, row + column > 0, m.power.data(), m.transforms.memory);
    }
  }
  transform.HalfSpectrum(m.power.data(), m.side, m.side, m.side, m.spectrum.data(), m.transforms.memory);
}

// The error of a flat overlap comes from the places where two rims cross. With attenuation it is the same, times the
// transmission there.
void OtfLattice::SetFlat(const Pupil& flat) {
  Memory& m = *memory_;
  m.flat = {};  // so that nothing half made is taken for whole
  const Ellipse& ellipse = flat.outline;
  m.outline.emplace(ellipse, LatticeOf(m.frequencies, m.density), m.density);
  m.side = PlaneTransform::SideFor(std::max(m.outline->pitch(), 2 * AcrossOf(m.frequencies)));
  const PlaneTransform& transform = m.transforms.Of(m.side);
  const std::size_t field = At(m.outline->Rows(0), 0, m.outline->pitch());
  m.re.Reserve(field);
  m.im.Reserve(field);
  m.power.Reserve(At(m.side, 0, m.side));
  m.spectrum.Reserve(transform.SpectrumSize());
  Pupil bright = flat;
  bright.stilesCrawford = {};
  Autocorrelate(bright);
  const double step = m.outline->lattice().step;
  const double area = kPi * ellipse.semiAxisA * ellipse.semiAxisB / (step * step);
  const FlatOverlap perfect(ellipse);
  const double cells = m.outline->SumOfSquaredWeights();
  const double unit = cells / m.spectrum.data()[transform.At(0, 0)];  // of the transforms
  const int half = m.side / 2, columns = half + 1;
  const auto overlapAt = [&](int r, int q) {
    const double* const v = m.spectrum.data() + transform.At(r, q);
    return unit * std::sqrt(v[0] * v[0] + v[m.chords.width] * v[m.chords.width]);
  };
  const double rim = RimTransmission(flat);
  const auto correctionOf = [&](double exact, double lacking, double overlap) {
    // Where next to nothing overlaps, samples of the rim decide, and their ratio means nothing.
    const double least = 1e-4 * cells;
    return overlap > least ? 1.0 + rim * lacking / overlap : exact > 0.0 ? 1.0 : 0.0;
  };
  const bool attenuated = AttenuationOf(flat).perSquare != 0.0;
  m.correction.resize(At(m.side, 0, columns));
  std::vector<double> exact(attenuated ? m.correction.size() : 0), lacking(exact.size());
  for (int r = 0; r < m.side; ++r) {
    for (int q = 0; q <= half; ++q) {
      const double fx = q * m.frequencies.step;
      const double fy = (r < half ? -r : m.side - r) * m.frequencies.step;
      const std::size_t i = At(r, q, columns);
      const double overlap = overlapAt(r, q), whole = area * perfect.At(fx, fy);
      if (attenuated) {
        exact[i] = whole;
        lacking[i] = whole - overlap;
      } else {
        m.correction[i] = correctionOf(whole, whole - overlap, overlap);
      }
    }
  }
  if (attenuated) {
    Autocorrelate(flat);
    for (int r = 0; r < m.side; ++r) {
      for (int q = 0; q <= half; ++q) {
        const std::size_t i = At(r, q, columns);
        m.correction[i] = correctionOf(exact[i], lacking[i], overlapAt(r, q));
      }
    }
  }
  m.flat = flat;
}

bool OtfLattice::Compute(const Pupil& pupil, const FrequencyLattice& frequencies, double* re, double* im) {
  Memory& m = *memory_;
  const int side = frequencies.side;
  const auto width = static_cast<std::size_t>(m.chords.width);
  if (!(frequencies.step > 0.0 && side / 2 * frequencies.step >= 1.0)) return false;
  const SlopeRange slopes = SlopesOf(pupil);
  // In waves a radius; directions have twice the number.
  const double steepest = std::max({-slopes.lowX, slopes.highX, -slopes.lowY, slopes.highY}) / 2.0;
  constexpr double kWavesPerSample = 0.25, kMinAcross = 256.0, kMaxAcross = 2048.0, kRounding = 1e-9;
  const double needed = 2.0 * steepest / kWavesPerSample;
  if (!(needed <= std::max(1.0 / frequencies.step, kMaxAcross))) return false;
  const int density = static_cast<int>(std::ceil(std::max(kMinAcross, needed) * frequencies.step - kRounding));
  const Pupil flat = Flat(pupil);
  if (!(m.frequencies == frequencies && m.density == density && flat.outline == m.flat.outline &&
        flat.stilesCrawford == m.flat.stilesCrawford && flat.radiusMm == m.flat.radiusMm)) {
    m.frequencies = frequencies;
    m.density = density;
    SetFlat(flat);
  }
  Autocorrelate(pupil);
  const PlaneTransform& transform = m.transforms.Of(m.side);
  const double* const autocorrelation = m.spectrum.data();
  const double total = autocorrelation[transform.At(0, 0)] * m.correction[0];
  const int half = m.side / 2, middle = side / 2, columns = half + 1;
  if (half < middle) {
    // Frequencies beyond the transform.
    std::fill_n(re, At(side, 0, side), 0.0);
    std::fill_n(im, At(side, 0, side), 0.0);
  }
  const int farthest = std::min(half, middle);
  for (int down = -farthest; down <= farthest; ++down) {
    const int row = down < 0 ? down + m.side : down;
    for (int q = 0; q <= farthest; ++q) {
      const std::size_t from = transform.At(row, q);
      const double factor = m.correction[At(row, q, columns)] / total;
      const double a = autocorrelation[from] * factor, b = autocorrelation[from + width] * factor;
      if (down < middle && q < middle) {
        const std::size_t to = At(middle + down, middle + q, side);
        re[to] = a;
        im[to] = b;
      }
      if (down > -middle) {
        const std::size_t to = At(middle - down, middle - q, side);
        re[to] = a;
        im[to] = -b;
      }
    }
  }
  return true;
}

}  // namespace orvanel::physical
