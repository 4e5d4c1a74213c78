// Declares sine, cosine, arc tangent, arc cosine, logarithm and powers that use only + - * / and the square root. So
// every platform and every compiler gives the same bits; the functions of C libraries differ.
#ifndef ORVANEL_BASE_ELEMENTARY_H
#define ORVANEL_BASE_ELEMENTARY_H

namespace orvanel {

// Error bounds, in units in the last place of the result.
// Sine and cosine: 1/2 for the last sum. The terms after the first are at most an eighth of it and have five roundings
// of 1/2: x z, the polynomial's last two, their product, the sum with the low part. Below kSmallestExactSine a sine or
// cosine is off by at most that bound times kSmallestExactSine, since the reduced angle has too few bits near a zero.
// Arc tangent: a tabulated angle less u can be as small as u, at most 1/16. Then the last sum and the five roundings of
// u (numerator, denominator, quotient, the terms added to it) count fully. The step to a quarter or half turn rounds
// less.
// Arc cosine: that of the arc tangent, and 1 for the root.
constexpr double kSineCosineUlps = 0.82;
constexpr double kSmallestExactSine = 0x1p-35;
constexpr double kArcTangentUlps = 3.0;
constexpr double kArcCosineUlps = 4.0;

// Logarithm: two roundings of s (a sum, the quotient) count fully, since a unit of the result may be half of theirs.
// The last two sums have 1/2 each; the first of them counts only if the exponent is not 0. The series has a hundredth
// of s. Exponential, in units of 2^-53 for a result below 1: the reduced argument, 1/4; the sum of its powers, 1/4 and
// 1/5; the last sum, 1/2.
constexpr double kLogarithmUlps = 3.1;
constexpr double kExponentialUlps = 1.3;

// Power: t = y log x is rounded and has the logarithm's error. The exponential turns t's error, times |t|, into a
// relative error. A unit in the last place may be half of that.
constexpr double PowerUlps(double t) { return kExponentialUlps + 2.0 * (kLogarithmUlps + 0.5) * (t < 0.0 ? -t : t); }

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

// The natural logarithm; minus infinity of 0, NaN below. Error: kLogarithmUlps.
// Source: 2 artanh((m - 1) / (m + 1)) by its Taylor series, m within a factor of sqrt(2) of 1.
double Logarithm(double x);

// e to the power of x; 0 and infinity beyond the range of doubles. Error unless the result is subnormal:
// kExponentialUlps. Source: Cody and Waite (1980) for the reduction, the Taylor series on [-log(2)/2, log(2)/2].
double Exponential(double x);

// x to the power of y, x at least 0. Error: PowerUlps(y log x), under the same condition.
double Power(double x, double y);

}  // namespace orvanel

#endif  // ORVANEL_BASE_ELEMENTARY_H
