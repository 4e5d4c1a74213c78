// Fourier transforms of a few samples, X[k] = sum over n of x[n] exp(+2 pi i n k / count), on kWidth lines side by
// side.
#ifndef ORVANEL_OPTICS_KERNELS_DFT_H
#define ORVANEL_OPTICS_KERNELS_DFT_H

#include "optics/kernels/vectors.h"

namespace orvanel::ORVANEL_VARIANT {
namespace {

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
  const auto turnByEighth = [](Complex a) ORVANEL_INLINED { return Complex{(a.re - a.im) * h, (a.re + a.im) * h}; };
  const auto turnByThreeEighths = [](Complex a) ORVANEL_INLINED {
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

// Three, five, eight and nine samples, in place and in natural order. halfEmpty: as above.
ORVANEL_INLINE void Dft3(Complex* x) {
  constexpr double sine = 0x1.bb67ae8584caap-1;  // of a third of a turn
  const Complex sum = x[1] + x[2];
  const Complex difference = x[1] - x[2];
  const Complex middle = {x[0].re - 0.5 * sum.re, x[0].im - 0.5 * sum.im};
  x[0] = x[0] + sum;
  x[1] = {middle.re - sine * difference.im, middle.im + sine * difference.re};
  x[2] = {middle.re + sine * difference.im, middle.im - sine * difference.re};
}

ORVANEL_INLINE void Dft5(Complex* x) {
  constexpr double c1 = 0x1.3c6ef372fe950p-2, c2 = -0x1.9e3779b97f4a8p-1;  // of one and two fifths of a turn
  constexpr double s1 = 0x1.e6f0e134454ffp-1, s2 = 0x1.2cf2304755a5ep-1;
  const Complex sum1 = x[1] + x[4];
  const Complex difference1 = x[1] - x[4];
  const Complex sum2 = x[2] + x[3];
  const Complex difference2 = x[2] - x[3];
  const Complex p = {x[0].re + c1 * sum1.re + c2 * sum2.re, x[0].im + c1 * sum1.im + c2 * sum2.im};
  const Complex q = {x[0].re + c2 * sum1.re + c1 * sum2.re, x[0].im + c2 * sum1.im + c1 * sum2.im};
  const Complex u = {s1 * difference1.re + s2 * difference2.re, s1 * difference1.im + s2 * difference2.im};
  const Complex v = {s2 * difference1.re - s1 * difference2.re, s2 * difference1.im - s1 * difference2.im};
  x[0] = x[0] + sum1 + sum2;
  x[1] = p + TimesI(u);
  x[4] = p - TimesI(u);
  x[2] = q + TimesI(v);
  x[3] = q - TimesI(v);
}

template <bool halfEmpty>
ORVANEL_INLINE void Dft8(Complex* x) {
  constexpr double h = 0x1.6a09e667f3bcdp-1;
  ORVANEL_UNROLL for (int n = 0; n < 2; ++n) {
    if constexpr (halfEmpty) {
      Dft4OfTwo(x[n], x[n + 2], x[n + 4], x[n + 6]);
    } else {
      Dft4(x[n], x[n + 2], x[n + 4], x[n + 6]);
    }
  }
  const Complex even[4] = {x[0], x[2], x[4], x[6]};
  const Complex odd[4] = {x[1],
                          {(x[3].re - x[3].im) * h, (x[3].re + x[3].im) * h},
                          TimesI(x[5]),
                          {(x[7].re + x[7].im) * -h, (x[7].re - x[7].im) * h}};
  ORVANEL_UNROLL for (int k = 0; k < 4; ++k) {
    x[k] = even[k] + odd[k];
    x[k + 4] = even[k] - odd[k];
  }
}

ORVANEL_INLINE void Dft9(Complex* x) {
  constexpr double c1 = 0x1.8836fa2cf5039p-1, c2 = 0x1.63a1a7e0b738ap-3, c4 = -0x1.e11f642522d1cp-1;  // of ninths
  constexpr double s1 = 0x1.491b7523c161dp-1, s2 = 0x1.f838b8c811c17p-1, s4 = 0x1.5e3a8748a0bf5p-2;
  Complex y[9];
  ORVANEL_UNROLL for (int n = 0; n < 3; ++n) {
    Complex t[3] = {x[n], x[n + 3], x[n + 6]};
    Dft3(t);
    ORVANEL_UNROLL for (int k = 0; k < 3; ++k) y[3 * k + n] = t[k];
  }
  // Element 3 k + n turns by n k ninths.
  y[4] = Times(y[4], Splat(c1), Splat(s1));
  y[5] = Times(y[5], Splat(c2), Splat(s2));
  y[7] = Times(y[7], Splat(c2), Splat(s2));
  y[8] = Times(y[8], Splat(c4), Splat(s4));
  ORVANEL_UNROLL for (int k = 0; k < 3; ++k) {
    Dft3(y + 3 * k);
    ORVANEL_UNROLL for (int j = 0; j < 3; ++j) x[k + 3 * j] = y[3 * k + j];
  }
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_OPTICS_KERNELS_DFT_H
