// The Fourier integral of a pupil by quadrature on chords, at the places of a regular grid.
//
// Compute-bound: real times complex products, four for each node and column of half the grid, then four for each chord
// and sample of half the grid. The symmetries of nodes, chords and grid save three quarters of the products. Sums run
// over nodes and chords in ascending order in every lane, so that the bits do not depend on the width.
#ifndef ORVANEL_MODELS_PHYSICAL_KERNELS_CHORDS_H
#define ORVANEL_MODELS_PHYSICAL_KERNELS_CHORDS_H

#include "models/physical/kernels/kernels.h"
#include "optics/kernels/sine_cosine.h"

namespace orvanel::ORVANEL_VARIANT {
namespace {

using physical::ChordField;
using physical::kChordBlock;
using physical::kPowers;
using physical::RowField;
using physical::RowSums;
using physical::WaveGrid;

static_assert(kChordBlock % kWidth == 0);

// exp(x) for -700 <= x <= 700. Error: 2 units in the last place.
// Source: reduction by ln 2 in two pieces (Cody and Waite 1980) and the Taylor series to the 13th power.
ORVANEL_INLINE V Exponential(V x) {
  constexpr double round = 0x1.8p52;
  const V shifted = x * 0x1.71547652b82fep+0 + round;
  const V k = shifted - round;
  const V r = (x - k * 0x1.62e42fee00000p-1) - k * 0x1.a39ef35793c76p-33;
  V p = Splat(1.0 / 6227020800.0);
  constexpr double inverseFactorials[] = {1.0 / 479001600.0,
                                          1.0 / 39916800.0,
                                          1.0 / 3628800.0,
                                          1.0 / 362880.0,
                                          1.0 / 40320.0,
                                          1.0 / 5040.0,
                                          1.0 / 720.0,
                                          1.0 / 120.0,
                                          1.0 / 24.0,
                                          1.0 / 6.0,
                                          0.5};
  for (const double c : inverseFactorials) p = p * r + c;
  p = 1.0 + (r + r * r * p);
  // The last bits of the shifted sum are those of k, which goes to the exponent.
  return Bits(Bits(p) + (Bits(shifted) << 52));
}

// c[0] + c[2] z + c[4] z^2 + ..., of every second coefficient of a polynomial.
ORVANEL_INLINE V EverySecond(const double* c, int last, V z) {
  V sum = Splat(c[last]);
  for (int k = last - 2; k >= 0; k -= 2) sum = sum * z + c[k];
  return sum;
}

void FieldOnChord(const ChordField& chord, double* field) {
  double* const evenRe = field;
  double* const evenIm = field + chord.count;
  double* const oddRe = field + 2 * chord.count;
  double* const oddIm = field + 3 * chord.count;
  for (int i = 0; i < chord.count; i += kWidth) {
    const V u = Load(chord.nodes + i) * chord.halfLength;
    const V z = u * u;
    const V even = EverySecond(chord.phase, 10, z);
    const V odd = u * EverySecond(chord.phase + 1, 8, z);
    const SinCos right = SineAndCosine(even + odd);
    const SinCos left = SineAndCosine(even - odd);
    V rightSize = Load(chord.weights + i) * chord.weight;
    V leftSize = rightSize;
    if (chord.attenuation != nullptr) {
      const V symmetric = chord.attenuation[2] * z + chord.attenuation[0];
      const V asymmetric = chord.attenuation[1] * u;
      rightSize = rightSize * Exponential(symmetric + asymmetric);
      leftSize = leftSize * Exponential(symmetric - asymmetric);
    }
    const V a = rightSize * right.cosine;
    const V b = leftSize * left.cosine;
    const V c = rightSize * right.sine;
    const V d = leftSize * left.sine;
    Store(evenRe + i, a + b);
    Store(evenIm + i, c + d);
    Store(oddRe + i, a - b);
    Store(oddIm + i, c - d);
  }
}

void FieldOnRow(const RowField& row, double* re, double* im) {
  for (int i = 0; i < row.count; i += kWidth) {
    const V x = Load(row.places + i);
    const V z = x * x;
    const SinCos turn = SineAndCosine(EverySecond(row.phase, 10, z) + x * EverySecond(row.phase + 1, 8, z));
    V size = Load(row.weights + i);
    if (row.attenuation != nullptr) {
      size = size * Exponential((row.attenuation[2] * x + row.attenuation[1]) * x + row.attenuation[0]);
    }
    Store(re + i, size * turn.cosine);
    Store(im + i, size * turn.sine);
  }
}

void ChordMoments(const ChordField& chord, const double* field, double* moments) {
  const int count = chord.count;
  for (int v = 0; v < kChordBlock; v += kWidth) {
    V sum[6] = {};
    for (int i = v; i < count; i += kChordBlock) {
      const V u = Load(chord.nodes + i) * chord.halfLength;
      const V evenRe = Load(field + i);
      const V evenIm = Load(field + count + i);
      const V square = u * u;
      sum[0] += evenRe;
      sum[1] += evenIm;
      sum[2] += u * Load(field + 2 * count + i);
      sum[3] += u * Load(field + 3 * count + i);
      sum[4] += square * evenRe;
      sum[5] += square * evenIm;
    }
    ORVANEL_UNROLL for (int k = 0; k < 6; ++k) Store(moments + k * kChordBlock + v, sum[k]);
  }
}

void PowerSums(const double* places, const double* values, int count, double* sums) {
  for (int v = 0; v < kChordBlock; v += kWidth) {
    V sum[kPowers] = {};
    for (int i = v; i < count; i += kChordBlock) {
      const V x = Load(places + i);
      V term = Load(values + i);
      ORVANEL_UNROLL for (V& power : sum) {
        power += term;
        term = term * x;
      }
    }
    ORVANEL_UNROLL for (int a = 0; a < kPowers; ++a) Store(sums + a * kChordBlock + v, sum[a]);
  }
}

// Angles are computed for one block in so many. The next blocks are turned from it, each by the same angle, which adds
// a rounding error each.
constexpr int kTurnedBlocks = 16;

void ColumnWaves(const double* nodes, int count, const WaveGrid& grid, double* waves) {
  const V lane = Ramp(0.0);
  for (int i = 0; i < count; ++i) {
    const double angle = nodes[i] * grid.angle;
    const SinCos turn = SineAndCosine(Splat(angle * kChordBlock));
    for (int block = 0; block < grid.blocks; ++block) {
      double* const to = waves + (block * count + i) * 2 * kChordBlock;
      for (int v = 0; v < kChordBlock; v += kWidth) {
        if (block % kTurnedBlocks == 0) {
          const SinCos wave = SineAndCosine((lane + (block * kChordBlock + v + grid.first)) * angle);
          Store(to + v, wave.cosine);
          Store(to + kChordBlock + v, wave.sine);
        } else {
          const double* const before = to - count * 2 * kChordBlock;
          const V c = Load(before + v);
          const V s = Load(before + kChordBlock + v);
          Store(to + v, c * turn.cosine - s * turn.sine);
          Store(to + kChordBlock + v, s * turn.cosine + c * turn.sine);
        }
      }
    }
  }
}

void ColumnSums(const double* waves, int count, const double* upper, const double* lower, double* sums) {
  for (int v = 0; v < kChordBlock; v += kWidth) {
    V sum[8] = {};
    const double* wave = waves + v;
    for (int i = 0; i < count; ++i, wave += 2 * kChordBlock) {
      const V cosine = Load(wave);
      const V sine = Load(wave + kChordBlock);
      sum[0] += upper[i] * cosine;
      sum[1] += upper[count + i] * cosine;
      sum[2] += upper[2 * count + i] * sine;
      sum[3] += upper[3 * count + i] * sine;
      sum[4] += lower[i] * cosine;
      sum[5] += lower[count + i] * cosine;
      sum[6] += lower[2 * count + i] * sine;
      sum[7] += lower[3 * count + i] * sine;
    }
    ORVANEL_UNROLL for (int k = 0; k < 8; ++k) Store(sums + k * kChordBlock + v, sum[k]);
  }
}

ORVANEL_INLINE V Intensity(V re, V im) { return im * im + re * re; }

// Adds factor |T|^2 to what is there, or replaces it, for `rows` pairs of rows of one block of columns.
template <int rows>
ORVANEL_INLINE void RowsOfBlock(const RowSums& job, int first) {
  for (int v = 0; v < kChordBlock; v += kWidth) {
    V xRe[rows] = {}, xIm[rows] = {}, yRe[rows] = {}, yIm[rows] = {};
    const double* sums = job.sums + v;
    const double* wave = job.waves + first * 2;
    for (int j = 0; j < job.pairs; ++j, sums += 4 * kChordBlock, wave += job.wavesPitch) {
      const V evenRe = Load(sums);
      const V evenIm = Load(sums + kChordBlock);
      const V oddRe = Load(sums + 2 * kChordBlock);
      const V oddIm = Load(sums + 3 * kChordBlock);
      ORVANEL_UNROLL for (int r = 0; r < rows; ++r) {
        xRe[r] += wave[2 * r] * evenRe;
        xIm[r] += wave[2 * r] * evenIm;
        yRe[r] += wave[2 * r + 1] * oddRe;
        yIm[r] += wave[2 * r + 1] * oddIm;
      }
    }
    ORVANEL_UNROLL for (int r = 0; r < rows; ++r) {
      // exp(-i angle) of positive coordinates, exp(+i angle) of negative ones.
      const V plus = Intensity(xRe[r] + yIm[r], xIm[r] - yRe[r]) * job.factor;
      const V minus = Intensity(xRe[r] - yIm[r], xIm[r] + yRe[r]) * job.factor;
      double* const toPlus = job.plus + (first + r) * job.plusPitch + v;
      double* const toMinus = job.minus + (first + r) * job.minusPitch + v;
      Store(toPlus, job.add ? Load(toPlus) + plus : plus);
      if (toMinus != toPlus) Store(toMinus, job.add ? Load(toMinus) + minus : minus);  // once in the middle
    }
  }
}

void RowsFromSums(const RowSums& job) {
  int row = 0;
  for (; row + 2 <= job.rowPairs; row += 2) RowsOfBlock<2>(job, row);
  if (row < job.rowPairs) RowsOfBlock<1>(job, row);
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_MODELS_PHYSICAL_KERNELS_CHORDS_H
