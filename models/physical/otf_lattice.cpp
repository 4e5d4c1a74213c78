// Autocorrelation of the pupil on a lattice, and its correction at the rim.
#include "models/physical/otf_lattice.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

#include "base/elementary.h"
#include "models/physical/chord_quadrature.h"
#include "models/physical/kernels/dispatch.h"
#include "optics/kernels/tables.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr int kSide = OtfLattice::kSide;
constexpr std::size_t kSamples = std::size_t{kSide} * kSide;
constexpr int kAcross = kSide / 2;  // samples of one sub-lattice across the reference pupil

struct alignas(64) Line {
  std::byte bytes[64];
};

std::size_t At(int row, int column, int side) {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(side) + static_cast<std::size_t>(column);
}

// The square lattice over the reference pupil, of `density` times kAcross samples a side.
struct Lattice {
  int density;
  int side() const { return density * kAcross; }
  double step() const { return 2.0 / side(); }  // in radii
  double Place(int i) const { return (i - (side() - 1) / 2.0) * step(); }
};

// The share of each cell's area inside the outline: exact along x, by the midpoint rule over fine rows along y.
std::vector<double> Mask(const Ellipse& outline, const Lattice& lattice) {
  constexpr int kFine = 64;
  const Chords chords = ChordsOf(outline);
  const int side = lattice.side();
  const double step = lattice.step();
  std::vector<double> mask(At(side, 0, side), 0.0);
  for (int r = 0; r < side; ++r) {
    for (int fine = 0; fine < kFine; ++fine) {
      const double height = lattice.Place(r) + ((fine + 0.5) / kFine - 0.5) * step;
      const double v = (height - chords.centreY) / chords.halfHeight;
      if (v * v >= 1.0) continue;
      const double half = chords.halfWidth * std::sqrt(1.0 - v * v), middle = chords.MiddleAt(v);
      for (int c = 0; c < side; ++c) {
        const double left = std::max(lattice.Place(c) - step / 2.0, middle - half);
        const double right = std::min(lattice.Place(c) + step / 2.0, middle + half);
        if (right > left) mask[At(r, c, side)] += (right - left) / (step * kFine);
      }
    }
  }
  return mask;
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
  explicit Memory(const Kernels& theKernels) : kernels(theKernels), chords(ChordKernelsOf(theKernels)) {}

  const Kernels& kernels;
  const ChordKernels& chords;
  const Tables& tables = TransformTables();
  std::vector<Line> plane = std::vector<Line>(kPlaneBytes / sizeof(Line));
  std::vector<Line> lines = std::vector<Line>(kLinesBytes / sizeof(Line));
  std::vector<Line> spectrum = std::vector<Line>(kSpectrumBytes / sizeof(Line));
  std::vector<double> re = std::vector<double>(kSamples), im = re, power = re;
  Pupil flat;  // what mask and correction are made for
  Lattice lattice{0};
  std::vector<double> mask;
  std::vector<double> correction;  // by frequency, zero frequency at (0, 0)
  Scratch scratch() { return {plane.data(), lines.data()}; }
};

OtfLattice::OtfLattice(const Kernels& kernels) : memory_(std::make_unique<Memory>(kernels)) {}
OtfLattice::~OtfLattice() = default;

// Adds the power spectrum of the sub-lattice that starts at this row and column.
void OtfLattice::AddFields(const Pupil& pupil, int firstRow, int firstColumn) {
  Memory& m = *memory_;
  const int density = m.lattice.density, side = m.lattice.side(), half = side / 2;
  std::fill(m.re.begin(), m.re.end(), 0.0);
  std::fill(m.im.begin(), m.im.end(), 0.0);
  const double k = 2.0 * kPi / pupil.wavelengthUm;
  const Attenuation attenuation = AttenuationOf(pupil);
  // A node of the right half stands for its mirror image too; of both, one belongs to the sub-lattice at most.
  std::vector<double> nodes, field;
  std::vector<int> columns;
  for (int c = half; c < side; ++c) {
    const int mirrored = side - 1 - c;
    if (c % density != firstColumn && mirrored % density != firstColumn) continue;
    nodes.push_back(m.lattice.Place(c));
    columns.push_back(c % density == firstColumn ? c : mirrored);
  }
  const std::size_t count = nodes.size();
  const std::vector<double> weights(count, 0.5);
  field.resize(4 * count);
  for (int r = firstRow; r < side; r += density) {
    const double* const mask = m.mask.data() + At(r, 0, side);
    if (std::all_of(mask, mask + side, [](double share) { return share == 0.0; })) continue;
    const double y = -m.lattice.Place(r);  // rows go down
    LinePolynomial phase = AlongLine(pupil.wavefrontUm, y);
    for (double& c : phase) c *= k;
    const std::array<double, 3> damping = attenuation.AlongLine(0.0, y);
    ChordField chord{};
    chord.nodes = nodes.data();
    chord.weights = weights.data();
    chord.count = static_cast<int>(count);
    chord.halfLength = 1.0;
    chord.weight = 1.0;
    chord.phase = phase.data();
    chord.attenuation = attenuation.perSquare == 0.0 ? nullptr : damping.data();
    m.chords.fieldOnChord(chord, field.data());
    for (std::size_t i = 0; i < count; ++i) {
      const int c = columns[i];
      const double sign = c >= half ? 1.0 : -1.0;
      const std::size_t to = At(r / density, c / density, kSide);
      m.re[to] = mask[c] * (field[i] + sign * field[2 * count + i]);
      m.im[to] = mask[c] * (field[count + i] + sign * field[3 * count + i]);
    }
  }
  m.kernels.transform(m.re.data(), m.im.data(), 1.0, m.tables, m.scratch());
  for (std::size_t i = 0; i < kSamples; ++i) m.power[i] += m.re[i] * m.re[i] + m.im[i] * m.im[i];
}

// The autocorrelation, with zero frequency at (0, 0), in re and im.
void OtfLattice::Autocorrelate(const Pupil& pupil) {
  Memory& m = *memory_;
  std::fill(m.power.begin(), m.power.end(), 0.0);
  for (int row = 0; row < m.lattice.density; ++row) {
    for (int column = 0; column < m.lattice.density; ++column) AddFields(pupil, row, column);
  }
  m.kernels.realTransform(m.power.data(), m.tables, m.scratch(), m.spectrum.data());
  m.kernels.unfold(m.spectrum.data(), m.re.data(), m.im.data());
}

// What the lattice lacks of an overlap, it lacks at the rim, where it is the same with and without attenuation but for
// the transmission there.
void OtfLattice::SetFlat(const Pupil& flat, int density) {
  Memory& m = *memory_;
  if (m.lattice.density == density && flat.outline == m.flat.outline && flat.stilesCrawford == m.flat.stilesCrawford &&
      flat.radiusMm == m.flat.radiusMm) {
    return;
  }
  m.lattice.density = 0;  // so that nothing half made is taken for whole
  const Ellipse& outline = flat.outline;
  const Lattice lattice{density};
  m.mask = Mask({outline.semiAxisA, outline.semiAxisB, -outline.angle, outline.centreX, -outline.centreY}, lattice);
  m.lattice = lattice;
  Pupil bright = flat;
  bright.stilesCrawford = {};
  Autocorrelate(bright);
  const double area = kPi * outline.semiAxisA * outline.semiAxisB / (lattice.step() * lattice.step());
  const SineCosine turn = SineAndCosine(outline.angle);
  double cells = 0.0;
  for (const double share : m.mask) cells += share * share;
  const double unit = cells / m.re[0];  // of the transforms
  std::vector<double> exact(kSamples), lacking(kSamples);
  for (int r = 0; r < kSide; ++r) {
    for (int c = 0; c < kSide; ++c) {
      const double fx = (c < kSide / 2 ? c : c - kSide) * 2.0 / kSide;
      const double fy = (r < kSide / 2 ? -r : kSide - r) * 2.0 / kSide;
      const double along = (fx * turn.cosine + fy * turn.sine) / outline.semiAxisA;
      const double across = (fy * turn.cosine - fx * turn.sine) / outline.semiAxisB;
      const std::size_t i = At(r, c, kSide);
      exact[i] = area * DiffractionLimit(std::sqrt(along * along + across * across));
      lacking[i] = exact[i] - unit * std::sqrt(m.re[i] * m.re[i] + m.im[i] * m.im[i]);
    }
  }
  const Attenuation attenuation = AttenuationOf(flat);
  const double rim = RimTransmission(outline, attenuation);
  if (attenuation.perSquare != 0.0) Autocorrelate(flat);
  m.correction.assign(kSamples, 0.0);
  for (std::size_t i = 0; i < kSamples; ++i) {
    const double overlap = unit * std::sqrt(m.re[i] * m.re[i] + m.im[i] * m.im[i]);
    // Where next to nothing overlaps, cells of the rim decide, and their ratio means nothing.
    const double least = 1e-4 * cells;
    m.correction[i] = overlap > least ? 1.0 + rim * lacking[i] / overlap : exact[i] > 0.0 ? 1.0 : 0.0;
  }
  m.flat = flat;
}

bool OtfLattice::Compute(const Pupil& pupil, double* re, double* im) {
  Memory& m = *memory_;
  const SlopeRange slopes = SlopesOf(pupil);
  // In waves a radius, half of what directions are counted in.
  const double steepest = std::max({-slopes.lowX, slopes.highX, -slopes.lowY, slopes.highY}) / 2.0;
  constexpr double kWavesPerSample = 0.25;
  constexpr int kMostDense = 16;
  int density = 2;
  while (density < kMostDense && !(steepest * Lattice{density}.step() <= kWavesPerSample)) density *= 2;
  if (!(steepest * Lattice{density}.step() <= kWavesPerSample)) return false;
  SetFlat(Flat(pupil), density);
  Autocorrelate(pupil);
  const double total = m.re[0] * m.correction[0];
  for (int r = 0; r < kSide; ++r) {
    for (int c = 0; c < kSide; ++c) {
      const std::size_t from = At((r + kSide / 2) % kSide, (c + kSide / 2) % kSide, kSide), to = At(r, c, kSide);
      const double factor = m.correction[from] / total;
      re[to] = m.re[from] * factor;
      im[to] = m.im[from] * factor;
    }
  }
  return true;
}

}  // namespace orvanel::physical
