// Sine, cosine, arc tangent and arc cosine made of + - * / and the square root only, so that every platform and every
// compiler gives the same bits; those of C libraries differ.
#ifndef ORVANEL_OPTICS_ELEMENTARY_H
#define ORVANEL_OPTICS_ELEMENTARY_H

namespace orvanel {

// Error bounds, in units in the last place of the result. That of sine and cosine: 1/2 for the last sum, and of the
// terms behind the first, which are at most an eighth of it, five roundings of 1/2 (x z, the polynomial's last two,
// their product, the sum with the low part). Below kSmallestExactSine a sine or cosine is off by at most that bound
// times kSmallestExactSine: so near to a zero the reduced angle runs out of bits. Arc tangent: where a tabulated angle
// less u comes out as small as u, at most 1/16, the five roundings of u (numerator, denominator, quotient, what is
// added to it) count fully, and the last sum; taking it from a quarter or half turn rounds less. Arc cosine: that, and
// 1 for the root.
constexpr double kSineCosineUlps = 0.82;
constexpr double kSmallestExactSine = 0x1p-35;
constexpr double kArcTangentUlps = 3.0;
constexpr double kArcCosineUlps = 4.0;

struct SineCosine {
  double sine;
  double cosine;
};

// Sine and cosine of x radians, for every finite x; NaN for the others. Error: kSineCosineUlps.
// Source: Cody and Waite (1980) for the reduction, the Taylor series on [-pi/4, pi/4] for the values.
SineCosine SineAndCosine(double x);

// Sine and cosine of k/n of a full turn, 0 <= k < n, n a power of two. Error: kSineCosineUlps.
SineCosine SineAndCosineOfTurn(int k, int n);

// The angle of the point (x, y), from -pi to pi, with the special values of C's atan2. Error: kArcTangentUlps.
// Source: the addition theorem of the tangent, with atan(i/8) tabulated, and the Taylor series on [-1/16, 1/16].
double ArcTangent2(double y, double x);

// Error: kArcTangentUlps.
double ArcTangent(double x);

// From 0 to pi; NaN outside -1 .. 1. Error: kArcCosineUlps.
double ArcCosine(double x);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_ELEMENTARY_H
