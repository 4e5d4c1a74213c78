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
#include "orvanel/transforms.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;

struct alignas(64) Line {
  std::byte bytes[64];
};

// The planes of frequencies for which the engine has kernels.
constexpr int kKernelSide = 256;

std::size_t At(int row, int column, int side) {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(side) + static_cast<std::size_t>(column);
}

// Samples of one sub-lattice across the reference pupil.
int AcrossOf(const FrequencyLattice& frequencies) { return static_cast<int>(std::ceil(1.0 / frequencies.step - 1e-9)); }

// The square lattice over the reference pupil, of `density` times `across` samples a side.
struct Lattice {
  FrequencyLattice frequencies;
  int across = 0;
  int density = 0;
  int side() const { return density * across; }
  double step() const { return 2.0 * frequencies.step / density; }  // in radii
  double Place(int i) const { return (i - (side() - 1) / 2.0) * step(); }
  bool IsOf(const FrequencyLattice& other, int itsDensity) const {
    return frequencies.side == other.side && frequencies.step == other.step && density == itsDensity;
  }
};

// The part of a row of cells that is inside, from left to right.
struct Inside {
  double left, right;  // equal if there is none
};

// The share of each cell's area inside the outline: exact along x, by the midpoint rule over fine rows along y.
std::vector<double> Mask(const Ellipse& outline, const Lattice& lattice) {
  constexpr int kFine = 64;
  const Chords chords = ChordsOf(outline);
  const int side = lattice.side();
  const double step = lattice.step();
  std::vector<double> mask(At(side, 0, side), 0.0);
  for (int r = 0; r < side; ++r) {
    // In cells: cell c is from c to c + 1.
    std::array<Inside, kFine> rows;
    double whole = 0.0, end = side;  // what is inside in all fine rows
    for (int fine = 0; fine < kFine; ++fine) {
      const double height = lattice.Place(r) + ((fine + 0.5) / kFine - 0.5) * step;
      const double v = (height - chords.centreY) / chords.halfHeight;
      const double half = v * v < 1.0 ? chords.halfWidth * std::sqrt(1.0 - v * v) : 0.0;
      const double middle = chords.MiddleAt(v) / step + side / 2.0;
      rows[static_cast<std::size_t>(fine)] = {std::max(0.0, middle - half / step),
                                              std::min(1.0 * side, middle + half / step)};
      whole = std::max(whole, middle - half / step);
      end = std::min(end, middle + half / step);
    }
    const int firstWhole = static_cast<int>(std::ceil(whole)), endOfWhole = static_cast<int>(std::floor(end));
    double* const cells = mask.data() + At(r, 0, side);
    for (int c = firstWhole; c < endOfWhole; ++c) cells[c] = 1.0;
    for (const Inside& row : rows) {
      for (int c = static_cast<int>(row.left); c < row.right; ++c) {
        if (c >= firstWhole && c < endOfWhole) {
          c = endOfWhole - 1;
          continue;
        }
        cells[c] += std::max(0.0, std::min(c + 1.0, row.right) - std::max(1.0 * c, row.left)) / kFine;
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
  std::vector<double> re, im, power;
  Pupil flat;  // what mask and correction are made for
  Lattice lattice;
  std::vector<double> mask;
  std::vector<double> correction;  // by frequency, zero frequency at (0, 0)

  // The backward transform of re and im, up to a factor.
  void Transform() {
    const int side = lattice.frequencies.side;
    if (side == kKernelSide) {
      kernels.transform(re.data(), im.data(), 1.0, tables, {plane.data(), lines.data()});
    } else {
      Zfft2dc(re.data(), im.data(), side, side, 1);
    }
  }
};

OtfLattice::OtfLattice(const Kernels& kernels) : memory_(std::make_unique<Memory>(kernels)) {}
OtfLattice::~OtfLattice() = default;

// Adds the power spectrum of the sub-lattice that starts at this row and column.
void OtfLattice::AddFields(const Pupil& pupil, int firstRow, int firstColumn) {
  Memory& m = *memory_;
  const int density = m.lattice.density, side = m.lattice.side(), planeSide = m.lattice.frequencies.side;
  std::fill(m.re.begin(), m.re.end(), 0.0);
  std::fill(m.im.begin(), m.im.end(), 0.0);
  const double k = 2.0 * kPi / pupil.wavelengthUm;
  const Attenuation attenuation = AttenuationOf(pupil);
  // A node of the right half, or of the middle, stands for its mirror image too.
  std::vector<double> nodes;
  std::vector<int> columns;
  for (int c = side / 2; c < side; ++c) {
    if (c % density != firstColumn && (side - 1 - c) % density != firstColumn) continue;
    nodes.push_back(m.lattice.Place(c));
    columns.push_back(c);
  }
  const std::size_t count = (nodes.size() + kChordBlock - 1) / kChordBlock * kChordBlock;
  nodes.resize(count, 0.0);
  const std::vector<double> weights(count, 0.5);
  std::vector<double> field(4 * count);
  for (int r = firstRow; r < side; r += density) {
    const double* const mask = m.mask.data() + At(r, 0, side);
    if (std::all_of(mask, mask + side, [](double share) { return share == 0.0; })) continue;
    const double y = -m.lattice.Place(r);  // rows go down
    LinePolynomial phase = AlongLine(pupil.wavefrontUm, y);
    for (double& c : phase) c *= k;
    const std::array<double, 3> logAmplitude = attenuation.AlongLine(0.0, y);
    ChordField chord{};
    chord.nodes = nodes.data();
    chord.weights = weights.data();
    chord.count = static_cast<int>(count);
    chord.halfLength = 1.0;
    chord.weight = 1.0;
    chord.phase = phase.data();
    chord.attenuation = attenuation.perSquare == 0.0 ? nullptr : logAmplitude.data();
    m.chords.fieldOnChord(chord, field.data());
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const int right = columns[i], left = side - 1 - right;
      for (const int c : {right, left}) {
        if (c % density != firstColumn) continue;
        const double sign = c == right ? 1.0 : -1.0;
        const std::size_t to = At(r / density, c / density, planeSide);
        m.re[to] = mask[c] * (field[i] + sign * field[2 * count + i]);
        m.im[to] = mask[c] * (field[count + i] + sign * field[3 * count + i]);
      }
    }
  }
  m.Transform();
  for (std::size_t i = 0; i < m.power.size(); ++i) m.power[i] += m.re[i] * m.re[i] + m.im[i] * m.im[i];
}

// The autocorrelation, with zero frequency at (0, 0), in re and im.
void OtfLattice::Autocorrelate(const Pupil& pupil) {
  Memory& m = *memory_;
  std::fill(m.power.begin(), m.power.end(), 0.0);
  for (int row = 0; row < m.lattice.density; ++row) {
    for (int column = 0; column < m.lattice.density; ++column) AddFields(pupil, row, column);
  }
  m.re = m.power;
  std::fill(m.im.begin(), m.im.end(), 0.0);
  m.Transform();
}

// What the lattice lacks of an overlap, it lacks at the rim, where it is the same with and without attenuation but for
// the transmission there.
void OtfLattice::SetFlat(const Pupil& flat) {
  Memory& m = *memory_;
  const Lattice lattice = m.lattice;
  m.flat = {};  // so that nothing half made is taken for whole
  const Ellipse& outline = flat.outline;
  const int planeSide = lattice.frequencies.side;
  const std::size_t samples = At(planeSide, 0, planeSide);
  m.re.resize(samples);
  m.im.resize(samples);
  m.power.resize(samples);
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
  std::vector<double> exact(samples), lacking(samples);
  for (int r = 0; r < planeSide; ++r) {
    for (int c = 0; c < planeSide; ++c) {
      const double fx = (c < planeSide / 2 ? c : c - planeSide) * lattice.frequencies.step;
      const double fy = (r < planeSide / 2 ? -r : planeSide - r) * lattice.frequencies.step;
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
  // In waves a radius, half of what directions are counted in.
  const double steepest = std::max({-slopes.lowX, slopes.highX, -slopes.lowY, slopes.highY}) / 2.0;
  constexpr double kWavesPerSample = 0.25, kFewest = 256.0, kMost = 2048.0, kRounding = 1e-9;
  const double needed = 2.0 * steepest / kWavesPerSample;
  if (!(needed <= std::max(1.0 / frequencies.step, kMost))) return false;
  const int density = static_cast<int>(std::ceil(std::max(kFewest, needed) * frequencies.step - kRounding));
  const Pupil flat = Flat(pupil);
  if (!(m.lattice.IsOf(frequencies, density) && flat.outline == m.flat.outline &&
        flat.stilesCrawford == m.flat.stilesCrawford && flat.radiusMm == m.flat.radiusMm)) {
    m.lattice = {frequencies, AcrossOf(frequencies), density};
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
