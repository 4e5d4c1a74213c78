// Gauss-Legendre nodes on chords at Gauss-Chebyshev heights, and separable exponentials.
#include "models/physical/quadrature/chord_quadrature.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "base/elementary.h"
#include "models/physical/plane_index.h"
#include "models/physical/quadrature/gauss_rules.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;

std::size_t Size(long long n) { return static_cast<std::size_t>(n); }

// The larger one; not a number if either is not.
double Larger(double a, double b) { return a >= b || a != a ? a : b; }

// Largest frequencies of the integrand along a chord, and over the chords, by the arc.
struct Bandwidth {
  double along = 0.0;
  double across = 0.0;
};

Bandwidth BandwidthOf(const Pupil& pupil, const DirectionGrid& grid) {
  constexpr int kSteps = 20;  // over half a turn
  const Chords chords = ChordsOf(pupil.outline);
  const double k = 2.0 * kPi / pupil.wavelengthUm;
  const double halfX = kPi * grid.spacing * (grid.columns - 1) / 2.0;
  const double halfY = kPi * grid.spacing * (grid.rows - 1) / 2.0;
  Bandwidth largest;
  for (int i = 0; i <= kSteps; ++i) {
    const SineCosine t = SineAndCosine(kPi * (static_cast<double>(i) / kSteps - 0.5));
    const LineJet line = JetAlongLine(pupil.wavefrontUm, chords.HeightAt(t.sine));
    for (int j = 0; j <= kSteps; ++j) {
      const SineCosine s = SineAndCosine(kPi * (static_cast<double>(j) / kSteps - 0.5));
      const double x = chords.MiddleAt(t.sine) + chords.halfWidth * t.cosine * s.sine;
      const Jet w = line.At(x);
      const double phaseX = std::fabs(k * w.dx - kPi * grid.centreX);
      const double alongRate = chords.halfWidth * t.cosine * s.cosine;
      largest.along = Larger(largest.along, (phaseX + halfX) * alongRate);
      const double xRate = chords.shear * chords.halfHeight * t.cosine - chords.halfWidth * t.sine * s.sine;
      const double yRate = chords.halfHeight * t.cosine;
      const double across =
          std::fabs((k * w.dx - kPi * grid.centreX) * xRate + (k * w.dy - kPi * grid.centreY) * yRate) +
          std::fabs(halfX * xRate) + std::fabs(halfY * yRate);
      largest.across = Larger(largest.across, across);
    }
  }
  return largest;
}

// Of columns or rows on both sides of the middle; one in the middle is a pair by itself.
int Pairs(int count) { return (count + 1) / 2; }

// A coordinate of the upper or lower half: 1/2, 3/2, ... or 0, 1, ...
double FirstPlace(int count) { return count % 2 == 0 ? 0.5 : 0.0; }

}  // namespace

NodeCounts ChordQuadrature::CountsFor(const Pupil& pupil, const DirectionGrid& grid) {
  const Bandwidth bandwidth = BandwidthOf(pupil, grid);
  Amplitudes amplitudes = AmplitudesOf(pupil);
  // The tilt of the wavefront less that of the grid's middle, and half the grid.
  const double k = 4.0 * kPi / pupil.wavelengthUm;  // of an orthonormal tilt
  const double x = k * pupil.modesUm[2] - kPi * grid.centreX, y = k * pupil.modesUm[1] - kPi * grid.centreY;
  amplitudes[1] = std::sqrt(x * x + y * y) + kPi * grid.spacing / 2.0 *
                                                 std::sqrt(1.0 * (grid.columns - 1) * (grid.columns - 1) +
                                                           1.0 * (grid.rows - 1) * (grid.rows - 1));
  const Damping damping = DampingOf(pupil);
  return {CountFor(DegreeOf(bandwidth.across, amplitudes, damping) + 2.0, 8),
          CountFor(DegreeOf(bandwidth.along, amplitudes, damping), 2 * kChordBlock)};
}

const ChordQuadrature::Rule& ChordQuadrature::RuleOf(NodeCounts counts) {
  constexpr std::size_t kKept = 64;  // more than the lines of white light
  for (const Rule& rule : rules_) {
    if (rule.counts == counts) return rule;
  }
  if (rules_.size() == kKept) rules_.pop_front();
  Rule rule;
  rule.counts = counts;
  GaussRule across = GaussChebyshev2(counts.chords, rule.halfChords);
  rule.heights = std::move(across.nodes);
  rule.chordWeights = std::move(across.weights);
  for (double& weight : rule.chordWeights) weight /= kPi;
  GaussRule along = GaussLegendre(counts.nodes);
  rule.nodes = std::move(along.nodes);
  rule.weights = std::move(along.weights);
  const std::size_t padded = Size(WholeBlocks(counts.nodes / 2));
  rule.nodes.resize(padded, 0.0);
  rule.weights.resize(padded, 0.0);
  rules_.push_back(std::move(rule));
  return rules_.back();
}

void ChordQuadrature::MakeRowWaves(const Rule& rule, const Pupil& pupil, const DirectionGrid& grid) {
  const Chords chords = ChordsOf(pupil.outline);
  const int rowPairs = Pairs(grid.rows);
  const bool evenRows = grid.rows % 2 == 0;
  if (rowWaves_.counts == rule.counts && rowWaves_.halfHeight == chords.halfHeight &&
      rowWaves_.spacing == grid.spacing && rowWaves_.evenRows == evenRows && rowWaves_.rowPairs >= rowPairs) {
    return;
  }
  const double step = kPi * grid.spacing * chords.halfHeight;
  rowWaves_.counts = {};  // so that nothing half made is taken for whole
  rowWaves_.waves.resize(rule.pairs() * Size(2LL * rowPairs));
  double* to = rowWaves_.waves.data();
  for (const double height : rule.heights) {
    for (int r = 0; r < rowPairs; ++r, to += 2) {
      const SineCosine wave = SineAndCosine((r + FirstPlace(grid.rows)) * step * height);
      to[0] = wave.cosine;
      to[1] = wave.sine;
    }
  }
  rowWaves_.halfHeight = chords.halfHeight;
  rowWaves_.spacing = grid.spacing;
  rowWaves_.evenRows = evenRows;
  rowWaves_.rowPairs = rowPairs;
  rowWaves_.counts = rule.counts;
}

ChordField ChordQuadrature::FieldOnChord(const Rule& rule, const Pupil& pupil, const DirectionGrid& grid,
                                         std::size_t pair, double side, double* field) {
  const Chords chords = ChordsOf(pupil.outline);
  const double k = 2.0 * kPi / pupil.wavelengthUm;
  const Attenuation attenuation = AttenuationOf(pupil);
  const double v = side * rule.heights[pair];
  const double y = chords.HeightAt(v), middle = chords.MiddleAt(v);
  LinePolynomial phase = Shifted(AlongLine(pupil.wavefrontUm, y), middle);
  for (double& c : phase) c *= k;
  // The direction of the grid's centre is taken from the slopes.
  phase[0] -= kPi * (grid.centreX * middle + grid.centreY * y);
  phase[1] -= kPi * grid.centreX;
  const std::array<double, 3> logAmplitude = attenuation.AlongLine(middle, y);
  ChordField chord{};
  chord.nodes = rule.nodes.data();
  chord.weights = rule.weights.data();
  chord.count = rule.padded();
  chord.halfLength = chords.halfWidth * rule.halfChords[pair];
  chord.weight = rule.chordWeights[pair];
  chord.phase = phase.data();
  chord.attenuation = attenuation.perSquare == 0.0 ? nullptr : logAmplitude.data();
  kernels_->fieldOnChord(chord, field);
  chord.phase = chord.attenuation = nullptr;  // which end here
  return chord;
}

// Turns the sums of a column over an upper and a lower chord by -angle and +angle, for chords whose middles are off the
// axis. Stores their sum, which the rows multiply by the cosine, and their difference, which they multiply by the sine.
// Blocks that are written from right to left are stored in that order.
void ChordQuadrature::SumColumns(const Rule& rule, const Pupil& pupil, const DirectionGrid& grid, bool mirrorX,
                                 std::size_t pair) {
  const Chords chords = ChordsOf(pupil.outline);
  const int blocks = WholeBlocks(Pairs(grid.columns)) / kChordBlock, padded = rule.padded();
  // Computed for each pair of chords: as fast as to read what was kept from memory.
  columnWaves_.resize(Size(2LL * kChordBlock * blocks * padded));
  const double angle = kPi * grid.spacing * chords.halfWidth * rule.halfChords[pair];
  kernels_->columnWaves(rule.nodes.data(), padded, {angle, FirstPlace(grid.columns), blocks}, columnWaves_.data());
  const double shear = kPi * grid.spacing * chords.shear * chords.halfHeight * rule.heights[pair];
  for (int block = 0; block < blocks; ++block) {
    std::array<double, 8 * kChordBlock> part;
    kernels_->columnSums(columnWaves_.data() + 2LL * kChordBlock * padded * block, padded, upper_.data(), lower_.data(),
                         part.data());
    for (const bool negative : {false, true}) {
      double* const to = sums_.data() + (Size(2LL * block + negative) * rule.pairs() + pair) * 4 * kChordBlock;
      // exp(-i angle) at positive coordinates, exp(+i angle) at negative ones.
      const double sign = negative ? -1.0 : 1.0;
      for (int c = 0; c < kChordBlock; ++c) {
        const auto at = [&part, c](int k) { return part[Size(k * kChordBlock + c)]; };
        std::complex<double> up(at(0) + sign * at(3), at(1) - sign * at(2));
        std::complex<double> low(at(4) + sign * at(7), at(5) - sign * at(6));
        if (shear != 0.0) {
          const SineCosine turn = SineAndCosine(sign * shear * (block * kChordBlock + c + FirstPlace(grid.columns)));
          up = {up.real() * turn.cosine + up.imag() * turn.sine, up.imag() * turn.cosine - up.real() * turn.sine};
          low = {low.real() * turn.cosine - low.imag() * turn.sine, low.imag() * turn.cosine + low.real() * turn.sine};
        }
        const int lane = negative != mirrorX ? kChordBlock - 1 - c : c;
        to[lane] = up.real() + low.real();
        to[kChordBlock + lane] = up.imag() + low.imag();
        to[2 * kChordBlock + lane] = up.real() - low.real();
        to[3 * kChordBlock + lane] = up.imag() - low.imag();
      }
    }
  }
}

// The samples of a block of columns on one side of the grid's middle.
void ChordQuadrature::StoreBlock(const Rule& rule, const DirectionGrid& grid, const GridOutput& output, int block,
                                 bool negative) {
  const int rowPairs = Pairs(grid.rows), columnPairs = Pairs(grid.columns);
  const bool fromTheRight = negative != output.mirrorX;
  // The first column that the block holds, and the parts of it that are inside the grid.
  const int nearest = block * kChordBlock;
  const int first = fromTheRight ? (grid.columns - 1) / 2 - nearest - kChordBlock + 1 : grid.columns / 2 + nearest;
  const int skipped = negative && grid.columns % 2 == 1 && block == 0 ? 1 : 0;  // the middle, which the other side has
  const int wanted = std::min(kChordBlock, columnPairs - nearest);
  const bool whole = skipped == 0 && wanted == kChordBlock;

  // Row 0 is the highest.
  const std::ptrdiff_t up = output.mirrorY ? output.pitch : -output.pitch;
  double* const top = output.data + (output.mirrorY ? (grid.rows - 1LL) * output.pitch : 0LL);
  double* const plus = top - up * ((grid.rows - 1) / 2);
  double* const minus = top - up * (grid.rows / 2);
  RowSums job{};
  job.sums = sums_.data() + Size(2LL * block + negative) * rule.pairs() * 4 * kChordBlock;
  job.waves = rowWaves_.waves.data();
  job.wavesPitch = 2LL * rowWaves_.rowPairs;
  job.pairs = static_cast<int>(rule.pairs());
  job.rowPairs = rowPairs;
  job.factor = output.factor;
  if (whole) {
    job.add = output.add;
    job.plus = plus + first;
    job.plusPitch = up;
    job.minus = minus + first;
    job.minusPitch = -up;
    kernels_->rowsFromSums(job);
    return;
  }
  block_.resize(Size(2LL * kChordBlock * rowPairs));
  job.plus = block_.data();
  job.minus = block_.data() + Size(1LL * kChordBlock * rowPairs);
  job.plusPitch = job.minusPitch = kChordBlock;
  kernels_->rowsFromSums(job);
  for (int r = 0; r < rowPairs; ++r) {
    double* const toPlus = plus + up * r;
    double* const toMinus = minus - up * r;
    for (int c = skipped; c < wanted; ++c) {
      const int lane = fromTheRight ? kChordBlock - 1 - c : c;
      const double p = job.plus[r * kChordBlock + lane], m = job.minus[r * kChordBlock + lane];
      toPlus[first + lane] = output.add ? toPlus[first + lane] + p : p;
      if (toMinus != toPlus) toMinus[first + lane] = output.add ? toMinus[first + lane] + m : m;
    }
  }
}

void ChordQuadrature::Intensity(const Pupil& pupil, const DirectionGrid& grid, NodeCounts counts,
                                const GridOutput& output) {
  const Rule& rule = RuleOf(counts);
  MakeRowWaves(rule, pupil, grid);
  const int blocks = WholeBlocks(Pairs(grid.columns)) / kChordBlock;
  sums_.resize(Size(2LL * blocks * 4 * kChordBlock) * rule.pairs());
  upper_.resize(4 * rule.nodes.size());
  lower_.resize(4 * rule.nodes.size());
  for (std::size_t pair = 0; pair < rule.pairs(); ++pair) {
    FieldOnChord(rule, pupil, grid, pair, 1.0, upper_.data());
    FieldOnChord(rule, pupil, grid, pair, -1.0, lower_.data());
    SumColumns(rule, pupil, grid, output.mirrorX, pair);
  }
  for (int block = 0; block < blocks; ++block) {
    for (const bool negative : {false, true}) StoreBlock(rule, grid, output, block, negative);
  }
}

FieldJet ChordQuadrature::Field(const Pupil& pupil, double x, double y, NodeCounts counts) {
  const Rule& rule = RuleOf(counts);
  const Chords chords = ChordsOf(pupil.outline);
  const DirectionGrid grid{x, y, 0.0, 1, 1};
  upper_.resize(4 * rule.nodes.size());
  // Moments of the turned field by powers of the place (a, b) in the pupil.
  std::complex<double> m00, m10, m01, m20, m11, m02;
  for (std::size_t pair = 0; pair < rule.pairs(); ++pair) {
    for (const double side : {1.0, -1.0}) {
      const ChordField chord = FieldOnChord(rule, pupil, grid, pair, side, upper_.data());
      std::array<double, 6 * kChordBlock> moments;
      kernels_->chordMoments(chord, upper_.data(), moments.data());
      const auto sum = [&moments](int k) { return SumOfLanes(moments.data() + k * kChordBlock); };
      const double b = chords.HeightAt(side * rule.heights[pair]), middle = chords.MiddleAt(side * rule.heights[pair]);
      const std::complex<double> s0(sum(0), sum(1)), s1(sum(2), sum(3)), s2(sum(4), sum(5));
      const std::complex<double> first = s1 + middle * s0;
      m00 += s0;
      m10 += first;
      m20 += s2 + 2.0 * middle * s1 + middle * middle * s0;
      m01 += b * s0;
      m11 += b * first;
      m02 += b * b * s0;
    }
  }
  const auto turned = [](std::complex<double> m) { return std::complex<double>(kPi * m.imag(), -kPi * m.real()); };
  return {m00, turned(m10), turned(m01), -kPi * kPi * m20, -kPi * kPi * m11, -kPi * kPi * m02};
}

// Of each chord by powers of the distance from its middle, then by powers of the place.
FieldMoments ChordQuadrature::Moments(const Pupil& pupil, double x, double y, NodeCounts counts) {
  // More, for the powers.
  counts = {std::min(counts.chords + kChordBlock, kMaxNodes), std::min(counts.nodes + 2 * kChordBlock, kMaxNodes)};
  const Rule& rule = RuleOf(counts);
  const Chords chords = ChordsOf(pupil.outline);
  const DirectionGrid grid{x, y, 0.0, 1, 1};
  upper_.resize(4 * rule.nodes.size());
  const std::size_t padded = rule.nodes.size();
  FieldMoments moments{};
  for (std::size_t pair = 0; pair < rule.pairs(); ++pair) {
    for (const double side : {1.0, -1.0}) {
      const ChordField chord = FieldOnChord(rule, pupil, grid, pair, side, upper_.data());
      std::array<std::array<double, kPowers * kChordBlock>, 4> sums;  // even re, im, odd re, im
      for (std::size_t k = 0; k < sums.size(); ++k) {
        kernels_->powerSums(rule.nodes.data(), upper_.data() + k * padded, chord.count, sums[k].data());
      }
      std::array<std::complex<double>, kPowers> along;
      double scale = 1.0;
      for (std::size_t a = 0; a < along.size(); ++a, scale *= chord.halfLength) {
        const std::size_t odd = a % 2 * 2, at = a * kChordBlock;
        along[a] =
            scale * std::complex<double>(SumOfLanes(sums[odd].data() + at), SumOfLanes(sums[odd + 1].data() + at));
      }
      const double height = chords.HeightAt(side * rule.heights[pair]);
      const double middle = chords.MiddleAt(side * rule.heights[pair]);
      // (middle + u)^a from u^a: Horner's triangle.
      if (middle != 0.0) {
        for (std::size_t step = 1; step < along.size(); ++step) {
          for (std::size_t a = along.size() - 1; a >= step; --a) along[a] += middle * along[a - 1];
        }
      }
      double power = 1.0;
      for (int b = 0; b < kPowers; ++b, power *= height) {
        for (int a = 0; a + b < kPowers; ++a) moments.At(a, b) += power * along[Size(a)];
      }
    }
  }
  return moments;
}

}  // namespace orvanel::physical
