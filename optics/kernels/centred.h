// The centred, unitary transform and what the modulation transfer function takes from it.
//
// Compute-bound; the square root and the division of the modulus run beside the additions of the next column. Every
// element's arithmetic is that of the plain one-dimensional routine, stage by stage: negate odd elements, eight radix-2
// stages of decimation in frequency, bit reversal, negate odd elements, times 1/16. Four stages at a time stay in
// registers. A negation that meets a multiplication becomes its factor's sign, which changes no bit.
#ifndef ORVANEL_OPTICS_KERNELS_CENTRED_H
#define ORVANEL_OPTICS_KERNELS_CENTRED_H

#include "optics/kernels/lines.h"
#include "optics/kernels/pupil.h"

namespace orvanel::ORVANEL_KERNELS {
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

// The first four stages where all imaginary parts are zeros of one sign, that of `zero`, and all sines are negative or
// -0: what stays real is computed as real, with zeros of the sign that the whole computation gives.
ORVANEL_INLINE void FourStagesOfReal(Complex* x, int offset, V zero, CentredTables t) {
  ORVANEL_UNROLL for (int stage = 0; stage < 4; ++stage) {
    const int half = 8 >> stage;
    ORVANEL_UNROLL for (int i = 0; i < 16; ++i) {
      if ((i & half) != 0) continue;
      const int k = (offset + 16 * (i & (half - 1))) << stage;
      if (i < half) {
        const V d = x[i].re - x[i + half].re;
        x[i].re = x[i].re + x[i + half].re;
        x[i + half] = {d * Splat(t.cosine[k]) + 0.0, d * Splat(t.sine[k]) + Splat(0.0 * t.cosine[k])};
      } else {
        Butterfly(x[i], x[i + half], t.cosine[k], t.sine[k]);
      }
    }
  }
  x[0].im = zero;
}

constexpr int ReversedNibble(int k) { return (k & 1) << 3 | (k & 2) << 1 | (k & 4) >> 1 | (k & 8) >> 3; }

// Element `place` of a line is its result of this index, and the other way round.
constexpr int ResultAt(int place) { return 16 * ReversedNibble(place % 16) + ReversedNibble(place / 16); }
constexpr int PlaceOfResult(int k) { return ResultAt(k); }

// load(n) gives samples n, odd ones negated; they may lie in `between`. store(place, X, odd) takes result
// ResultAt(place), to be multiplied by odd / 16; its place in `between` is free by then. real: all samples are.
// meanwhile(i), i = 0 .. 31, is called before each sixteen elements, for work that the processor can do beside them.
template <bool real, class Load, class Store, class Meanwhile>
ORVANEL_INLINE void CentredBundle(Complex* between, CentredTables t, Load load, Store store, Meanwhile meanwhile) {
  for (int n = 0; n < 16; ++n) {
    meanwhile(n);
    Complex x[16];
    ORVANEL_UNROLL for (int i = 0; i < 16; ++i) x[i] = load(n + 16 * i);
    if constexpr (real) {
      FourStagesOfReal(x, n, n % 2 == 0 ? V{} : -V{}, t);
    } else {
      FourStages<16, 1, true>(x, n, t);
    }
    ORVANEL_UNROLL for (int i = 0; i < 16; ++i) between[16 * i + n] = x[i];
  }
  for (int i = 0; i < 16; ++i) {
    meanwhile(16 + i);
    Complex x[16];
    ORVANEL_UNROLL for (int n = 0; n < 16; ++n) x[n] = between[16 * i + n];
    FourStages<1, 16, false>(x, 0, t);
    const double odd = ResultAt(16 * i) % 2 == 0 ? 1.0 : -1.0;
    ORVANEL_UNROLL for (int n = 0; n < 16; ++n) store(16 * i + n, x[n], odd);
  }
}

constexpr double kUnitary = 0.0625;  // 1 / sqrt(256)

// Row transforms into scratch; results in odd rows are negated. at(row, column) points to kWidth samples' parts, to be
// multiplied by factor.
template <bool real, class AtReal, class AtImaginary>
ORVANEL_INLINE void CentredRows(CentredTables t, const Scratch& scratch, double factor, AtReal atReal,
                                AtImaginary atImaginary) {
  Complex* const lines = Lines(scratch);
  const V even = Splat(factor);
  const V odd = Splat(-factor);
  V scale;  // of each row, with its sign
  for (int l = 0; l < kWidth; ++l) scale[l] = l % 2 == 0 ? kUnitary : -kUnitary;
  for (int first = 0; first < kLength; first += kWidth) {
    for (int c = 0; c < kLength; c += kWidth) {
      V a[kWidth];
      LoadTransposed(
          [&](int l) __attribute__((always_inline)) { return atReal(first + l, c); }, a);
      ORVANEL_UNROLL for (int l = 0; l < kWidth; ++l) lines[c + l].re = a[l] * (l % 2 == 0 ? even : odd);
      if constexpr (real) continue;
      LoadTransposed(
          [&](int l) __attribute__((always_inline)) { return atImaginary(first + l, c); }, a);
      ORVANEL_UNROLL for (int l = 0; l < kWidth; ++l) lines[c + l].im = a[l] * (l % 2 == 0 ? even : odd);
    }
    CentredBundle<real>(
        lines, t, [&](int n) __attribute__((always_inline)) { return lines[n]; },
        [&](int place, Complex v, double sign) __attribute__((always_inline)) {
          lines[place] = {v.re * (scale * sign), v.im * (scale * sign)};
        },
        [](int) {});
    for (int column = 0; column < kLength; column += kWidth) {
      Complex* const block = Panel(scratch, column) + first;
      V a[kWidth], b[kWidth];
      LoadTransposed(
          [&](int l) __attribute__((always_inline)) { return Samples(lines[PlaceOfResult(column + l)].re); }, a);
      LoadTransposed(
          [&](int l) __attribute__((always_inline)) { return Samples(lines[PlaceOfResult(column + l)].im); }, b);
      ORVANEL_UNROLL for (int l = 0; l < kWidth; ++l) block[l] = {a[l], b[l]};
    }
  }
}

// Columns column .. column + kWidth - 1 of scratch; put(place, X) takes the results.
template <class Put, class Meanwhile>
ORVANEL_INLINE void CentredColumns(const Scratch& scratch, int column, CentredTables t, Put put, Meanwhile meanwhile) {
  const Complex* const panel = Panel(scratch, column);
  CentredBundle<false>(
      Lines(scratch), t, [&](int n) __attribute__((always_inline)) { return panel[n]; },
      [&](int place, Complex v, double odd) __attribute__((always_inline)) {
        put(place, Complex{v.re * (odd * kUnitary), v.im * (odd * kUnitary)});
      },
      meanwhile);
}

void CentredTransform(double* re, double* im, int direction, const Tables& tables, const Scratch& scratch) {
  const int negative = direction >= 0 ? 0 : 1;
  const CentredTables t = {tables.centredCosine[negative], tables.centredSine[negative]};
  CentredRows<false>(
      t, scratch, 1.0, [&](int row, int column) __attribute__((always_inline)) { return re + row * kLength + column; },
      [&](int row, int column) __attribute__((always_inline)) { return im + row * kLength + column; });
  for (int column = 0; column < kLength; column += kWidth) {
    CentredColumns(
        scratch, column, t,
        [&](int place, Complex v) __attribute__((always_inline)) {
          Store(re + ResultAt(place) * kLength + column, v.re);
          Store(im + ResultAt(place) * kLength + column, v.im);
        },
        [](int) {});
  }
}

// Error of Angle in units in the last place. The worst is a / b just above 0.236, where the result is below 1/4. In
// units of 2^-53: numerator and denominator of u = -0.236, 0.236 each; quotient, u + u z p, and the sums with `low` and
// `high`, 1/8 each, being below 1/4; u z p, which is below 0.0045, and the polynomial, 0.09. Together 1.07, and the
// last place is worth 1/4. From a / b = 1/4 on the numerator is exact.
constexpr double kPhaseUlps = 4.3;

// Angle of the point (x, y), with the signs of C's atan2, also for zeros; x and y neither infinite nor so small that a
// quarter of them is not exact. Error: kPhaseUlps. One division: with a <= b the two moduli and c = 0, 1/2 or 1,
// whichever is near a / b, atan(a / b) = atan(c) + atan(u), u = (a - c b) / (b + c a), |u| < 0.2361. The polynomial is
// minimax there, to 2^-57.
ORVANEL_INLINE V Angle(V y, V x) {
  constexpr auto signBit = static_cast<long long>(1ull << 63);
  const Mask ySign = Bits(y) & signBit;
  const Mask xNegative = Bits(x) < 0;
  const V ax = Bits(Bits(x) & ~signBit);
  const V ay = Bits(Bits(y) & ~signBit);
  const Mask steep = ay > ax;
  const V a = Select(steep, ax, ay);
  const V b = Select(steep, ay, ax);
  const Mask middle = a > 0.236 * b;
  const Mask upper = a > 0.8 * b;
  const V c = Select(upper, Splat(1.0), Select(middle, Splat(0.5), V{}));
  const V high = Select(upper, Splat(0x1.921fb54442d18p-1), Select(middle, Splat(0x1.dac670561bb4fp-2), V{}));
  const V low = Select(upper, Splat(0x1.1a62633145c07p-55), Select(middle, Splat(0x1.a2b7f222f65e2p-56), V{}));
  const V denominator = b + c * a;
  const V u = (a - c * b) / Select(b == 0.0, Splat(1.0), denominator);
  const V z = u * u;
  const V p =
      ((((((0x1.8c54635a3f3f1p-5 * z - 0x1.0d582260de0cbp-4) * z + 0x1.3ae7a1f1a7cddp-4) * z - 0x1.745bf3ee0c58bp-4) *
             z +
         0x1.c71c6dabf8f0ap-4) *
            z -
        0x1.24924920eb474p-3) *
           z +
       0x1.99999999971b4p-3) *
          z -
      0x1.5555555555553p-2;
  const V arc = high + (low + (u + u * z * p));
  const V base = Select(steep, Splat(0x1.921fb54442d18p+0), Select(xNegative, Splat(0x1.921fb54442d18p+1), V{}));
  const V baseLow = Select(steep, Splat(0x1.1a62633145c07p-54), Select(xNegative, Splat(0x1.1a62633145c07p-53), V{}));
  const V turned = Bits(Bits(arc) ^ ((steep ^ xNegative) & signBit));
  const V angle = base + (turned + baseLow);
  return Bits(Bits(angle) | ySign);
}

// Division by one number, without the divider, which the square roots keep busy: a product with its reciprocal in two
// doubles. Dekker (1971). Small dividends, whose products would underflow, are divided.
// Relative error before the last rounding, in units of 2^-106: the reciprocal's second double, 2; its product, 1; the
// sum of what two roundings of 2^-53 left, 2. So the result is that of the divider but for quotients as near as that to
// the middle between two doubles: one in 2^50, and the same in every lane of every variant.
constexpr double kQuotientError = 5 * 0x1p-106;
struct Divisor {
  explicit Divisor(double d) {
    const double r = 1.0 / d;
    const double r1 = High(r), d1 = High(d);
    const double p = r * d;
    const double rest = (((r1 * d1 - p) + r1 * (d - d1)) + (r - r1) * d1) + (r - r1) * (d - d1);
    divisor = Splat(d);
    reciprocal = Splat(r);
    high = Splat(r1);
    low = Splat(r - r1);
    remainder = Splat(((1.0 - p) - rest) * r);
  }

  // Its first 26 bits.
  template <class Number>
  static ORVANEL_INLINE_MEMBER Number High(Number a) {
    const Number t = a * 0x8000001p0;
    return t - (t - a);
  }

  V divisor;
  V reciprocal;
  V high;
  V low;
  V remainder;
};
ORVANEL_INLINE V operator/(V a, const Divisor& d) {
  const V p = a * d.reciprocal;
  const V a1 = Divisor::High(a);
  const V a2 = a - a1;
  const V rest = (((a1 * d.high - p) + a1 * d.low) + a2 * d.high) + a2 * d.low;
  const V quotient = p + (rest + a * d.remainder);
  const Mask small = a < 0x1p-900;
  if (Any(small)) [[unlikely]]
    return Select(small, a / d.divisor, quotient);
  return quotient;
}

// Squared moduli of kWidth columns, to become their MTF while the next columns are transformed: in 32 portions, of
// which number i ends before the next columns' results of portion i - 16 come to their places.
struct Moduli {
  V* squared;
  double* mtf;  // the column's plane; none: nothing to do
  Divisor zeroFrequency;
};
ORVANEL_INLINE void Finish(const Moduli& moduli, int portion) {
  if (moduli.mtf == nullptr) return;
  ORVANEL_UNROLL for (int j = 0; j < 8; ++j) {
    const int place = 8 * portion + j;
    __builtin_prefetch(moduli.mtf + ResultAt(place) * kLength + kWidth, 1);
    Store(moduli.mtf + ResultAt(place) * kLength, Sqrt(moduli.squared[place]) / moduli.zeroFrequency);
  }
}

void TransferFunction(const Recentring& from, const Tables& tables, const Scratch& scratch, double* mtf,
                      double* phase) {
  const CentredTables t = {tables.centredCosine[0], tables.centredSine[0]};
  const auto at = [&](int row, int column) __attribute__((always_inline)) {
    return SamplesAt(RowOf(from, row), column);
  };
  CentredRows<true>(t, scratch, from.factor, at, at);

  // The column of the centre comes first, since all moduli are divided by that of the centre.
  Complex* const lines = Lines(scratch);
  Moduli moduli = {reinterpret_cast<V*>(lines + kLength), nullptr, Divisor(1.0)};
  for (int step = 0; step < kLength; step += kWidth) {
    const int column = (step + 128) % kLength;
    CentredColumns(
        scratch, column, t,
        [&](int place, Complex v) __attribute__((always_inline)) {
          moduli.squared[place] = v.re * v.re + v.im * v.im;
          if (phase != nullptr) lines[place] = v;
        },
        [&](int portion) __attribute__((always_inline)) { Finish(moduli, portion); });
    if (step == 0) moduli.zeroFrequency = Divisor(Sqrt(moduli.squared[1])[0]);  // ResultAt(1) is 128
    if (mtf != nullptr) moduli.mtf = mtf + column;
    if (phase == nullptr) continue;
    for (int place = 0; place < kLength; place += 2) {
      const V first = Angle(lines[place].im, lines[place].re);
      const V second = Angle(lines[place + 1].im, lines[place + 1].re);
      Store(phase + ResultAt(place) * kLength + column, first);
      Store(phase + ResultAt(place + 1) * kLength + column, second);
    }
  }
  for (int portion = 0; portion < 32; ++portion) Finish(moduli, portion);
}

}  // namespace
}  // namespace orvanel::ORVANEL_KERNELS

#endif  // ORVANEL_OPTICS_KERNELS_CENTRED_H
