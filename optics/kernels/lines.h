// Transforms kWidth lines of 256 samples side by side: X[k] = sum over n of x[n] exp(+2 pi i n k / 256), as 16 x 16.
//
// Compute-bound: additions and multiplications fill the ports. The 32 vectors of a 16-point transform are about as many
// as the widest variant has registers. Narrower variants spill into the first cache, which costs no more than the
// additional pass of a smaller radix.
#ifndef ORVANEL_OPTICS_KERNELS_LINES_H
#define ORVANEL_OPTICS_KERNELS_LINES_H

#include "optics/kernels/dft.h"
#include "optics/kernels/kernels.h"

namespace orvanel::ORVANEL_VARIANT {
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
      between, tables, [&](int n) ORVANEL_INLINED { return from[n]; },
      [&](int, int k, Complex v) ORVANEL_INLINED { to[k] = v; });
}

// The same in place, results at their places.
[[gnu::noinline]] void TransformInPlace(Complex* lines, const Tables& tables) {
  TransformBundle<false>(
      lines, tables, [&](int n) ORVANEL_INLINED { return lines[n]; },
      [&](int place, int, Complex v) ORVANEL_INLINED { lines[place] = v; });
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_OPTICS_KERNELS_LINES_H
