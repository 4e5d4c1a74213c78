// Computes the modulation and phase transfer function from the half spectrum of the transfer function.
//
// The modulation is bound by the square roots, which keep the divider busy, the phase by its polynomial. One half of
// each plane follows from the other.
#ifndef ORVANEL_OPTICS_KERNELS_MODULATION_H
#define ORVANEL_OPTICS_KERNELS_MODULATION_H

#include "optics/kernels/spectrum.h"

namespace orvanel::ORVANEL_VARIANT {
namespace {

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

// Division by one number as a product with its reciprocal in two doubles, since square roots keep the divider busy.
// Dekker (1971). Dividends are zero or at least 2^-537, as every square root is, so that no product underflows.
// Relative error before the last rounding, in units of 2^-106: 2 for the reciprocal's second double, 1 for its product,
// 2 for the rest of two roundings of 2^-53. The result equals that of the divider, except for quotients so near to the
// middle between two doubles: one in 2^50. It is the same in every lane of every variant.
constexpr double kQuotientError = 5 * 0x1p-106;
struct Divisor {
  explicit Divisor(double d) {
    const double r = 1.0 / d;
    const double r1 = High(r), d1 = High(d);
    const double p = r * d;
    const double rest = (((r1 * d1 - p) + r1 * (d - d1)) + (r - r1) * d1) + (r - r1) * (d - d1);
    reciprocal = Splat(r);
    high = Splat(r1);
    low = Splat(r - r1);
    remainder = r == 0.0 ? V{} : Splat(((1.0 - p) - rest) * r);  // of an infinite divisor, whose quotients are zero
  }

  // Its first 26 bits.
  template <class Number>
  static ORVANEL_INLINE_MEMBER Number High(Number a) {
    const Number t = a * 0x8000001p0;
    return t - (t - a);
  }

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
  return p + (rest + a * d.remainder);
}

// A plane with zero frequency in the middle, from make(p, column), the samples of the spectrum's row p; columns of
// negative frequency are those of positive frequency mirrored, and passed through mirror.
template <class Make, class Mirror>
ORVANEL_INLINE void CentredPlane(double* plane, Make make, Mirror mirror) {
  constexpr int half = kLength / 2;
  for (int p = 0; p <= half; ++p) {
    const int opposite = (kLength - p) % kLength;
    double* const row = plane + (p + half) % kLength * kLength;
    double* const oppositeRow = plane + (half - p) * kLength;
    // Column 128; the columns behind it, and column 0 where it first goes to its own mirror image, are written over.
    Store(oppositeRow, make(opposite, half));
    Store(row, make(p, half));
    for (int c = 0; c < half; c += kWidth) {
      const V v = make(p, c);
      const V w = make(opposite, c);
      Store(oppositeRow + half + 1 - c - kWidth, mirror(Reverse(v)));
      Store(row + half + 1 - c - kWidth, mirror(Reverse(w)));
      Store(row + half + c, v);
      Store(oppositeRow + half + c, w);
    }
  }
}

void Modulation(const HalfSpectrum& spectrum, double* mtf) {
  const auto modulus = [&](int p, int column) ORVANEL_INLINED {
    const Complex v = HalfPanel(spectrum, column)[p];
    return Sqrt(v.re * v.re + v.im * v.im);
  };
  const Divisor zeroFrequency(modulus(0, 0)[0]);
  CentredPlane(
      mtf, [&](int p, int column) ORVANEL_INLINED { return modulus(p, column) / zeroFrequency; },
      [](V v) ORVANEL_INLINED { return v; });
}

// The centred transform has the other sign in its exponent, and its origin in the middle of the plane.
void Phase(const HalfSpectrum& spectrum, double* phase) {
  constexpr auto signBit = static_cast<long long>(1ull << 63);
  Mask oddLanes{};
  for (int l = 1; l < kWidth; l += 2) oddLanes[l] = signBit;
  CentredPlane(
      phase,
      [&](int p, int column) ORVANEL_INLINED {
        const Complex v = HalfPanel(spectrum, column)[p];
        const Mask odd = p % 2 == 0 ? oddLanes : oddLanes ^ signBit;
        return Angle(Bits(Bits(V{} - v.im) ^ odd), Bits(Bits(v.re) ^ odd));
      },
      [](V v) ORVANEL_INLINED { return -v; });
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_OPTICS_KERNELS_MODULATION_H
