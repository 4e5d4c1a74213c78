// Transforms kWidth lines of any length 2^a 3^b 5^c side by side: X[k] = sum over n of x[n] exp(+2 pi i n k / length).
//
// Compute-bound while kWidth lines fit into the first cache; therefore in place. Forward passes leave the results in
// the order of their digits, back passes begin with that order. Source: Gentleman and Sande (1966) for the forward
// passes, Cooley and Tukey (1965) for the passes back, which are their transpose.
#ifndef ORVANEL_MODELS_PHYSICAL_KERNELS_LINES_H
#define ORVANEL_MODELS_PHYSICAL_KERNELS_LINES_H

#include "models/physical/kernels/kernels.h"
#include "optics/kernels/dft.h"

namespace orvanel::ORVANEL_VARIANT {
namespace {

using physical::LineTransform;

// Into the second cache.
ORVANEL_INLINE void Prefetch(const Complex* from) {
  constexpr int kLine = 64;
  for (int i = 0; i < static_cast<int>(sizeof(Complex)); i += kLine) {
    __builtin_prefetch(reinterpret_cast<const char*>(from) + i, 0, 2);
  }
}

// The place of result k of a transform in place.
template <int radix>
constexpr int ResultOf(int k) {
  return radix == 16 ? OutputOf(k) : k;
}

// halfEmpty: the second half is zero and is not read.
template <int radix, bool halfEmpty = false>
ORVANEL_INLINE void DftOf(Complex* x) {
  if constexpr (radix == 3) Dft3(x);
  if constexpr (radix == 4) Dft4(x[0], x[1], x[2], x[3]);
  if constexpr (radix == 5) Dft5(x);
  if constexpr (radix == 8) Dft8<halfEmpty>(x);
  if constexpr (radix == 9) Dft9(x);
  if constexpr (radix == 16) Dft16<halfEmpty>(x);
}

// Splits each group of so many samples into `radix` smaller ones, for `length` samples.
//   to  may be the same as `from`
template <int radix, bool halfEmpty>
[[gnu::noinline]] void Pass(const Complex* from, Complex* to, int length, int group, const double* turns) {
  const int apart = group / radix;
  constexpr int loaded = halfEmpty ? radix / 2 : radix;
  for (int first = 0; first < length; first += group) {
    Complex x[radix];
    ORVANEL_UNROLL for (int j = 0; j < loaded; ++j) x[j] = from[first + j * apart];
    DftOf<radix, halfEmpty>(x);
    ORVANEL_UNROLL for (int j = 0; j < radix; ++j) to[first + j * apart] = x[ResultOf<radix>(j)];
    for (int p = 1; p < apart; ++p) {
      const double* const turn = turns + (p - 1) * 2 * (radix - 1);
      const Complex* const source = from + first + p;
      Complex* const target = to + first + p;
      ORVANEL_UNROLL for (int j = 0; j < loaded; ++j) x[j] = source[j * apart];
      DftOf<radix, halfEmpty>(x);
      target[0] = x[0];
      ORVANEL_UNROLL for (int j = 1; j < radix; ++j) {
        target[j * apart] = Times(x[ResultOf<radix>(j)], Splat(turn[2 * j - 2]), Splat(turn[2 * j - 1]));
      }
    }
  }
}

// Joins what Pass has split.
template <int radix>
[[gnu::noinline]] void PassBack(Complex* lines, int length, int group, const double* turns) {
  const int apart = group / radix;
  for (int first = 0; first < length; first += group) {
    Complex x[radix];
    ORVANEL_UNROLL for (int j = 0; j < radix; ++j) x[j] = lines[first + j * apart];
    DftOf<radix>(x);
    ORVANEL_UNROLL for (int j = 0; j < radix; ++j) lines[first + j * apart] = x[ResultOf<radix>(j)];
    for (int p = 1; p < apart; ++p) {
      const double* const turn = turns + (p - 1) * 2 * (radix - 1);
      Complex* const at = lines + first + p;
      x[0] = at[0];
      ORVANEL_UNROLL for (int j = 1; j < radix; ++j) {
        x[j] = Times(at[j * apart], Splat(turn[2 * j - 2]), Splat(turn[2 * j - 1]));
      }
      DftOf<radix>(x);
      ORVANEL_UNROLL for (int j = 0; j < radix; ++j) at[j * apart] = x[ResultOf<radix>(j)];
    }
  }
}

// The last pass of a transform, the product with factors, and the first pass back. Results have exchanged parts, so
// that the passes back have the opposite sign.
template <int radix>
[[gnu::noinline]] void PassWithFactors(Complex* lines, int length, const Complex* factors, const Complex* next) {
  for (int first = 0; first < length; first += radix) {
    ORVANEL_UNROLL for (int j = 0; j < radix; ++j) Prefetch(next + first + j);
    Complex x[radix];
    Complex y[radix];
    ORVANEL_UNROLL for (int j = 0; j < radix; ++j) x[j] = lines[first + j];
    DftOf<radix>(x);
    ORVANEL_UNROLL for (int j = 0; j < radix; ++j) {
      const Complex product = Times(x[ResultOf<radix>(j)], factors[first + j].re, factors[first + j].im);
      y[j] = {product.im, product.re};
    }
    DftOf<radix>(y);
    ORVANEL_UNROLL for (int j = 0; j < radix; ++j) lines[first + j] = y[ResultOf<radix>(j)];
  }
}

// Calls pass.operator()<radix>().
template <class OfRadix>
ORVANEL_INLINE void WithRadix(int radix, OfRadix pass) {
  switch (radix) {
    case 16:
      return pass.template operator()<16>();
    case 9:
      return pass.template operator()<9>();
    case 8:
      return pass.template operator()<8>();
    case 5:
      return pass.template operator()<5>();
    case 4:
      return pass.template operator()<4>();
    default:
      return pass.template operator()<3>();
  }
}

// The forward passes up to number `last`. Samples from `filled` on are zero; the caller does not have to clear these.
// Result k comes to the place transform.places[k], after all passes.
ORVANEL_INLINE void TransformLines(const LineTransform& transform, Complex* from, int filled, Complex* to, int last) {
  const int length = transform.length;
  const bool halfEmpty = 2 * filled <= length && last > 0;
  for (int n = filled; n < (halfEmpty ? length / 2 : length); ++n) from[n] = Complex(V{}, V{});
  int group = length;
  for (int pass = 0; pass < last; ++pass) {
    const double* const turns = transform.turns[pass];
    const int radix = transform.radices[pass];
    if (pass == 0 && halfEmpty && radix == 16) {
      Pass<16, true>(from, to, length, group, turns);
    } else if (pass == 0 && halfEmpty) {
      Pass<8, true>(from, to, length, group, turns);
    } else {
      WithRadix(radix, [&]<int r>() ORVANEL_INLINED { Pass<r, false>(from, to, length, group, turns); });
    }
    group /= radix;
    from = to;
  }
}

ORVANEL_INLINE void TransformLines(const LineTransform& transform, Complex* from, int filled, Complex* to) {
  TransformLines(transform, from, filled, to, transform.passes);
}

// The passes back, without the first `done` ones. Results are in natural order.
ORVANEL_INLINE void TransformLinesBack(const LineTransform& transform, Complex* lines, int done) {
  int group = 1;
  for (int pass = transform.passes; pass-- > 0;) {
    const int radix = transform.radices[pass];
    group *= radix;
    if (transform.passes - pass <= done) continue;
    WithRadix(radix,
              [&]<int r>() ORVANEL_INLINED { PassBack<r>(lines, transform.length, group, transform.turns[pass]); });
  }
}

// Transforms lines whose samples from `filled` on are zero, multiplies them by factors in the order of
// transform.places, and transforms them back with the opposite sign. Results have exchanged parts.
//   next  the lines of the next call
ORVANEL_INLINE void FilterLines(const LineTransform& transform, Complex* lines, int filled, const Complex* factors,
                                const Complex* next) {
  const int last = transform.passes - 1;
  TransformLines(transform, lines, filled, lines, last);
  WithRadix(transform.radices[last],
            [&]<int r>() ORVANEL_INLINED { PassWithFactors<r>(lines, transform.length, factors, next); });
  TransformLinesBack(transform, lines, 1);
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_MODELS_PHYSICAL_KERNELS_LINES_H
