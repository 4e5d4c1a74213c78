// Transforms kWidth lines of 256 samples side by side: X[k] = sum over n of x[n] exp(+2 pi i n k / 256), as 16 x 16.
//
// Compute-bound: additions and multiplications fill the ports. The 32 vectors of a 16-point transform are about as many
// as the widest variant has registers. Narrower variants spill into the first cache, which costs no more than the
// additional pass of a smaller radix.
#ifndef ORVANEL_OPTICS_KERNELS_LINES_H
#define ORVANEL_OPTICS_KERNELS_LINES_H

#include "optics/kernels/kernels.h"
#include "optics/kernels/vectors.h"

namespace orvanel::ORVANEL_KERNELS {
namespace {

constexpr int kLength = kKernelGrid;
constexpr int kHalf = kLength / 2;

// A complex plane in scratch: panels of kWidth columns, one after the other, so that what a transform of columns writes
// and what a transform of rows reads is contiguous. Rows to spare between panels, which keep a row of all panels out of
// the same sets of the first cache, gain nothing.
ORVANEL_INLINE Complex* Panel(const Scratch& scratch, int column) {
  return static_cast<Complex*>(scratch.plane) + column / kWidth * kLength;
}
ORVANEL_INLINE Complex* Lines(const Scratch& scratch) { return static_cast<Complex*>(scratch.lines); }

// Four-point transform in place; those of inputs a, b alone, c = d = 0, cost half.
ORVANEL_INLINE void Dft4(Complex& a, Complex& b, Complex& c, Complex& d) {
  const Complex s0 = a + c;
  const Complex s1 = a - c;
  const Complex t0 = b + d;
  const Complex t1 = b - d;
  a = s0 + t0;
  b = {s1.re - t1.im, s1.im + t1.re};
  c = s0 - t0;
  d = {s1.re + t1.im, s1.im - t1.re};
}

ORVANEL_INLINE void Dft4OfTwo(Complex& a, Complex& b, Complex& c, Complex& d) {
  const Complex a0 = a;
  const Complex b0 = b;
  a = a0 + b0;
  b = {a0.re - b0.im, a0.im + b0.re};
  c = a0 - b0;
  d = {a0.re + b0.im, a0.im - b0.re};
}

// Sixteen-point transform of x[0 .. 15]; X[k1 + 4 k2] comes to x[4 k1 + k2]. halfEmpty: x[8 .. 15] are zero and are not
// read.
constexpr int OutputOf(int k) { return 4 * (k % 4) + k / 4; }
template <bool halfEmpty>
ORVANEL_INLINE void Dft16(Complex* x) {
  constexpr double c1 = 0x1.d906bcf328d46p-1;  // cosine and sine of a sixteenth of a turn, and of an eighth
  constexpr double s1 = 0x1.87de2a6aea963p-2;
  constexpr double h = 0x1.6a09e667f3bcdp-1;
  ORVANEL_UNROLL for (int n = 0; n < 4; ++n) {
    if constexpr (halfEmpty) {
      Dft4OfTwo(x[n], x[n + 4], x[n + 8], x[n + 12]);
    } else {
      Dft4(x[n], x[n + 4], x[n + 8], x[n + 12]);
    }
  }
  // Element 4 k1 + n2 turns by n2 k1 sixteenths.
  const auto turnByEighth = [](Complex a) __attribute__((always_inline)) {
    return Complex{(a.re - a.im) * h, (a.re + a.im) * h};
  };
  const auto turnByThreeEighths = [](Complex a) __attribute__((always_inline)) {
    return Complex{(a.re + a.im) * -h, (a.re - a.im) * h};
  };
  x[5] = Times(x[5], Splat(c1), Splat(s1));
  x[6] = turnByEighth(x[6]);
  x[7] = Times(x[7], Splat(s1), Splat(c1));
  x[9] = turnByEighth(x[9]);
  x[10] = TimesI(x[10]);
  x[11] = turnByThreeEighths(x[11]);
  x[13] = Times(x[13], Splat(s1), Splat(c1));
  x[14] = turnByThreeEighths(x[14]);
  x[15] = Times(x[15], Splat(-c1), Splat(-s1));
  ORVANEL_UNROLL for (int k = 0; k < 4; ++k) Dft4(x[4 * k], x[4 * k + 1], x[4 * k + 2], x[4 * k + 3]);
}

// Where TransformBundle puts the result of index k in `between`, if told to.
constexpr int PlaceOf(int k) { return 16 * (k % 16) + k / 16; }

// The transform of kWidth lines. load(n) gives samples n of them; store(place, k, X) takes the result of index k, whose
// place in `between` is free by then. Samples may lie in `between`, number n at n. halfEmpty: only samples 0 to 128 are
// loaded, the others are zero.
template <bool halfEmpty, class Load, class Store>
ORVANEL_INLINE void TransformBundle(Complex* between, const Tables& tables, Load load, Store store) {
  {
    Complex x[16];
    constexpr int count = halfEmpty ? 9 : 16;
    ORVANEL_UNROLL for (int n1 = 0; n1 < count; ++n1) x[n1] = load(16 * n1);
    ORVANEL_UNROLL for (int n1 = count; n1 < 16; ++n1) x[n1] = Complex(V{}, V{});
    Dft16<false>(x);
    ORVANEL_UNROLL for (int k1 = 0; k1 < 16; ++k1) between[16 * k1] = x[OutputOf(k1)];
  }
  for (int n2 = 1; n2 < 16; ++n2) {
    Complex x[16];
    constexpr int count = halfEmpty ? 8 : 16;
    ORVANEL_UNROLL for (int n1 = 0; n1 < count; ++n1) x[n1] = load(16 * n1 + n2);
    Dft16<halfEmpty>(x);
    const double* const cosine = tables.cosine + 16 * n2;
    const double* const sine = tables.sine + 16 * n2;
    between[n2] = x[0];
    ORVANEL_UNROLL for (int k1 = 1; k1 < 16; ++k1) {
      between[16 * k1 + n2] = Times(x[OutputOf(k1)], Splat(cosine[k1]), Splat(sine[k1]));
    }
  }
  for (int k1 = 0; k1 < 16; ++k1) {
    Complex x[16];
    ORVANEL_UNROLL for (int n2 = 0; n2 < 16; ++n2) x[n2] = between[16 * k1 + n2];
    Dft16<false>(x);
    ORVANEL_UNROLL for (int k2 = 0; k2 < 16; ++k2) store(16 * k1 + k2, k1 + 16 * k2, x[OutputOf(k2)]);
  }
}

// The transform of kWidth lines, sample n of each at from[n], result k at to[k]; `from` may be `between` or `to`. Calls
// of one copy of the code leave room in the first cache for instructions.
[[gnu::noinline]] void TransformPanel(const Complex* from, Complex* between, const Tables& tables, Complex* to) {
  TransformBundle<false>(
      between, tables, [&](int n) __attribute__((always_inline)) { return from[n]; },
      [&](int, int k, Complex v) __attribute__((always_inline)) { to[k] = v; });
}

// The same in place, results at their places.
[[gnu::noinline]] void TransformInPlace(Complex* lines, const Tables& tables) {
  TransformBundle<false>(
      lines, tables, [&](int n) __attribute__((always_inline)) { return lines[n]; },
      [&](int place, int, Complex v) __attribute__((always_inline)) { lines[place] = v; });
}

}  // namespace
}  // namespace orvanel::ORVANEL_KERNELS

#endif  // ORVANEL_OPTICS_KERNELS_LINES_H
