// Transforms kWidth lines of any length 2^a 3^b 5^c side by side: X[k] = sum over n of x[n] exp(+2 pi i n k / length).
//
// Compute-bound while two buffers of kWidth lines fit into the second cache. Passes between two buffers need no order
// of digits afterwards. Source: Stockham (1966), in the form of decimation in frequency.
#ifndef ORVANEL_MODELS_PHYSICAL_KERNELS_LINES_H
#define ORVANEL_MODELS_PHYSICAL_KERNELS_LINES_H

#include "models/physical/kernels/kernels.h"
#include "optics/kernels/dft.h"

namespace orvanel::ORVANEL_VARIANT {
namespace {

using physical::LineTransform;

// The place of result k of a transform in place.
template <int radix>
constexpr int ResultOf(int k) {
  return radix == 16 ? OutputOf(k) : k;
}

// halfEmpty: the second half is zero and is not read.
template <int radix, bool halfEmpty>
ORVANEL_INLINE void DftOf(Complex* x) {
  if constexpr (radix == 2) Dft2(x);
  if constexpr (radix == 3) Dft3(x);
  if constexpr (radix == 4) Dft4(x[0], x[1], x[2], x[3]);
  if constexpr (radix == 5) Dft5(x);
  if constexpr (radix == 8) Dft8(x);
  if constexpr (radix == 9) Dft9(x);
  if constexpr (radix == 16) Dft16<halfEmpty>(x);
}

// Joins groups of `stride` transformed samples into groups of radix * stride, for `length` samples.
template <int radix, bool halfEmpty>
[[gnu::noinline]] void Pass(const Complex* from, Complex* to, int length, int stride, const double* turns) {
  const int apart = length / radix;
  const int groups = apart / stride;
  constexpr int loaded = halfEmpty ? radix / 2 : radix;
  for (int q = 0; q < stride; ++q) {
    Complex x[radix];
    ORVANEL_UNROLL for (int j = 0; j < loaded; ++j) x[j] = from[q + j * apart];
    DftOf<radix, halfEmpty>(x);
    ORVANEL_UNROLL for (int j = 0; j < radix; ++j) to[q + j * stride] = x[ResultOf<radix>(j)];
  }
  for (int p = 1; p < groups; ++p) {
    const double* const turn = turns + (p - 1) * 2 * (radix - 1);
    const Complex* const source = from + p * stride;
    Complex* const target = to + p * radix * stride;
    for (int q = 0; q < stride; ++q) {
      Complex x[radix];
      ORVANEL_UNROLL for (int j = 0; j < loaded; ++j) x[j] = source[q + j * apart];
      DftOf<radix, halfEmpty>(x);
      target[q] = x[0];
      ORVANEL_UNROLL for (int j = 1; j < radix; ++j) {
        target[q + j * stride] = Times(x[ResultOf<radix>(j)], Splat(turn[2 * j - 2]), Splat(turn[2 * j - 1]));
      }
    }
  }
}

// Transforms lines whose samples from `filled` on are zero; the caller does not have to clear these. Returns the
// result, in one of the two buffers.
//   from  may be the second buffer
ORVANEL_INLINE Complex* TransformLines(const LineTransform& transform, Complex* from, int filled, Complex* first,
                                       Complex* second) {
  const int length = transform.length;
  const bool halfEmpty = transform.radices[0] == 16 && 2 * filled <= length;
  for (int n = filled; n < (halfEmpty ? length / 2 : length); ++n) from[n] = Complex(V{}, V{});
  Complex* to = first;
  int stride = 1;
  for (int pass = 0; pass < transform.passes; ++pass) {
    const double* const turns = transform.turns[pass];
    const int radix = transform.radices[pass];
    if (pass == 0 && halfEmpty) {
      Pass<16, true>(from, to, length, stride, turns);
    } else if (radix == 16) {
      Pass<16, false>(from, to, length, stride, turns);
    } else if (radix == 9) {
      Pass<9, false>(from, to, length, stride, turns);
    } else if (radix == 8) {
      Pass<8, false>(from, to, length, stride, turns);
    } else if (radix == 5) {
      Pass<5, false>(from, to, length, stride, turns);
    } else if (radix == 4) {
      Pass<4, false>(from, to, length, stride, turns);
    } else if (radix == 3) {
      Pass<3, false>(from, to, length, stride, turns);
    } else {
      Pass<2, false>(from, to, length, stride, turns);
    }
    stride *= radix;
    from = to;
    to = to == first ? second : first;
  }
  return from;
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_MODELS_PHYSICAL_KERNELS_LINES_H
