// Computes the centred, unitary transform.
//
// Compute-bound. Every element's arithmetic is that of the plain one-dimensional routine, stage by stage: negate odd
// elements, eight radix-2 stages of decimation in frequency, bit reversal, negate odd elements, times 1/16. Four stages
// at a time stay in registers. A negation that meets a multiplication becomes its factor's sign, which changes no bit.
#ifndef ORVANEL_OPTICS_KERNELS_CENTRED_H
#define ORVANEL_OPTICS_KERNELS_CENTRED_H

#include "optics/kernels/lines.h"

namespace orvanel::ORVANEL_VARIANT {
namespace {

struct CentredTables {
  const double* cosine;
  const double* sine;
};

// a + b and (a - b) * w.
ORVANEL_INLINE void Butterfly(Complex& a, Complex& b, double cosine, double sine) {
  const Complex d = a - b;
  a = a + b;
  b = Times(d, Splat(cosine), Splat(sine));
}

// The same with w = 1 + 0 i, whose zero has the sign of sine: a product with 1 changes no bit.
ORVANEL_INLINE void ButterflyOfOne(Complex& a, Complex& b, double sine) {
  const Complex d = a - b;
  const V zero = Splat(sine);
  a = a + b;
  b = {d.re - d.im * zero, d.re * zero + d.im};
}

// Four stages on sixteen elements whose neighbours are `stride` apart in the line; the first stage has the factors of
// index (offset + stride i) * groups.
template <int stride, int groups, bool first>
ORVANEL_INLINE void FourStages(Complex* x, int offset, CentredTables t) {
  ORVANEL_UNROLL for (int stage = 0; stage < 4; ++stage) {
    const int half = 8 >> stage;
    ORVANEL_UNROLL for (int i = 0; i < 16; ++i) {
      if ((i & half) != 0) continue;
      const int k = (offset + stride * (i & (half - 1))) * (groups << stage);
      if (!first && (i & (half - 1)) == 0) {
        ButterflyOfOne(x[i], x[i + half], t.sine[0]);
      } else {
        Butterfly(x[i], x[i + half], t.cosine[k], t.sine[k]);
      }
    }
  }
}

constexpr int ReversedNibble(int k) { return (k & 1) << 3 | (k & 2) << 1 | (k & 4) >> 1 | (k & 8) >> 3; }

// Element `place` of a line is its result of this index, and the other way round.
constexpr int ResultAt(int place) { return 16 * ReversedNibble(place % 16) + ReversedNibble(place / 16); }
constexpr int PlaceOfResult(int k) { return ResultAt(k); }

// load(n) gives samples n, odd ones negated; they may lie in `between`. store(place, X, odd) takes result
// ResultAt(place), to be multiplied by odd / 16; its place in `between` is free by then.
template <class Load, class Store>
ORVANEL_INLINE void CentredBundle(Complex* between, CentredTables t, Load load, Store store) {
  for (int n = 0; n < 16; ++n) {
    Complex x[16];
    ORVANEL_UNROLL for (int i = 0; i < 16; ++i) x[i] = load(n + 16 * i);
    FourStages<16, 1, true>(x, n, t);
    ORVANEL_UNROLL for (int i = 0; i < 16; ++i) between[16 * i + n] = x[i];
  }
  for (int i = 0; i < 16; ++i) {
    Complex x[16];
    ORVANEL_UNROLL for (int n = 0; n < 16; ++n) x[n] = between[16 * i + n];
    FourStages<1, 16, false>(x, 0, t);
    const double odd = ResultAt(16 * i) % 2 == 0 ? 1.0 : -1.0;
    ORVANEL_UNROLL for (int n = 0; n < 16; ++n) store(16 * i + n, x[n], odd);
  }
}

constexpr double kUnitary = 0.0625;  // 1 / sqrt(256)

// Row transforms into scratch; results in odd rows are negated.
ORVANEL_INLINE void CentredRows(const double* re, const double* im, CentredTables t, const Scratch& scratch) {
  Complex* const lines = Lines(scratch);
  V scale{};  // of each row, with its sign
  for (int l = 0; l < kWidth; ++l) scale[l] = l % 2 == 0 ? kUnitary : -kUnitary;
  for (int first = 0; first < kLength; first += kWidth) {
    for (int c = 0; c < kLength; c += kWidth) {
      V a[kWidth];
      const auto load = [&](const double* plane, V Complex::*part) ORVANEL_INLINED {
        LoadTransposed([&](int l) ORVANEL_INLINED { return plane + (first + l) * kLength + c; }, a);
        ORVANEL_UNROLL for (int l = 0; l < kWidth; ++l) lines[c + l].*part = l % 2 == 0 ? a[l] : -a[l];
      };
      load(re, &Complex::re);
      load(im, &Complex::im);
    }
    CentredBundle(
        lines, t, [&](int n) ORVANEL_INLINED { return lines[n]; },
        [&](int place, Complex v, double sign) ORVANEL_INLINED {
          lines[place] = {v.re * (scale * sign), v.im * (scale * sign)};
        });
    for (int column = 0; column < kLength; column += kWidth) {
      Complex* const block = Panel(scratch, column) + first;
      V a[kWidth], b[kWidth];
      LoadTransposed([&](int l) ORVANEL_INLINED { return Samples(lines[PlaceOfResult(column + l)].re); }, a);
      LoadTransposed([&](int l) ORVANEL_INLINED { return Samples(lines[PlaceOfResult(column + l)].im); }, b);
      ORVANEL_UNROLL for (int l = 0; l < kWidth; ++l) block[l] = {a[l], b[l]};
    }
  }
}

void CentredTransform(double* re, double* im, int direction, const Tables& tables, const Scratch& scratch) {
  const int negative = direction >= 0 ? 0 : 1;
  const CentredTables t = {tables.centredCosine[negative], tables.centredSine[negative]};
  CentredRows(re, im, t, scratch);
  for (int column = 0; column < kLength; column += kWidth) {
    const Complex* const panel = Panel(scratch, column);
    CentredBundle(
        Lines(scratch), t, [&](int n) ORVANEL_INLINED { return panel[n]; },
        [&](int place, Complex v, double odd) ORVANEL_INLINED {
          Store(re + ResultAt(place) * kLength + column, v.re * (odd * kUnitary));
          Store(im + ResultAt(place) * kLength + column, v.im * (odd * kUnitary));
        });
  }
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_OPTICS_KERNELS_CENTRED_H
