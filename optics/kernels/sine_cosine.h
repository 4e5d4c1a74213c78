// Computes sine and cosine of vectors.
#ifndef ORVANEL_OPTICS_KERNELS_SINE_COSINE_H
#define ORVANEL_OPTICS_KERNELS_SINE_COSINE_H

#include "optics/kernels/vectors.h"

namespace orvanel::ORVANEL_VARIANT {
namespace {

// Absolute error of SineAndCosine. The worst case is an x that is reduced to 1/2 .. pi/4. In units of 2^-53:
//   two roundings of the reduced angle, 1/2 each, times the derivative, at most 0.88
//   1/2 for the last sum, 0.41 for the terms before it, 1/8 for the polynomial
// Together 1.91.
constexpr double kSineCosineError = 0x1p-52;

// Sine and cosine of |x| <= kLargestAngle. Error: kSineCosineError.
// Reduction by pi/2 in three pieces, whose products with the quarter turns are exact except for the last: Cody and
// Waite (1980). The polynomials are minimax on [-pi/4, pi/4], to 2^-56 and better.
constexpr double kLargestAngle = 0x1p20;
struct SinCos {
  V sine;
  V cosine;
};
ORVANEL_INLINE SinCos SineAndCosine(V x) {
  constexpr double round = 0x1.8p52;
  const V shifted = x * 0x1.45f306dc9c883p-1 + round;
  const V k = shifted - round;
  V r = x - k * 0x1.921fb544p+0;
  r = r - k * 0x1.0b4611a6p-34;
  r = r - k * 0x1.3198a2e037073p-69;
  const V z = r * r;
  const V s =
      ((((0x1.5e11baa866d65p-33 * z - 0x1.ae602178c81e6p-26) * z + 0x1.71de37b2363ccp-19) * z - 0x1.a01a019ea17c9p-13) *
           z +
       0x1.1111111110c84p-7) *
          z -
      0x1.5555555555555p-3;
  const V c =
      ((((0x1.1eeb586f6f942p-29 - 0x1.9073ede2fbd4dp-37 * z) * z - 0x1.27e4fa0384756p-22) * z + 0x1.a01a019f38ba6p-16) *
           z -
       0x1.6c16c16c168ccp-10) *
          z +
      0x1.5555555555555p-5;
  const V sine = r + r * z * s;
  const V cosine = 1.0 - (0.5 * z - z * z * c);
  // The last two bits of the shifted sum are those of k.
  const Mask quarters = Bits(shifted);
  const Mask odd = (quarters & 1) != 0;
  const Mask sineSign = (quarters & 2) << 62;
  const Mask cosineSign = ((quarters + 1) & 2) << 62;
  return {Bits(Bits(Select(odd, cosine, sine)) ^ sineSign), Bits(Bits(Select(odd, sine, cosine)) ^ cosineSign)};
}

}  // namespace
}  // namespace orvanel::ORVANEL_VARIANT

#endif  // ORVANEL_OPTICS_KERNELS_SINE_COSINE_H
