// Computes elementary functions by series on a reduced argument.
#include "base/elementary.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "base/reduced_angle.h"

namespace orvanel {
namespace {

constexpr double kPi = 0x1.921fb54442d18p+1;
constexpr double kPiLow = 0x1.1a62633145c07p-53;
constexpr double kHalfPi = 0x1.921fb54442d18p+0;
constexpr double kHalfPiLow = 0x1.1a62633145c07p-54;

// a[0] + a[1] z + a[2] z^2 + ...
template <std::size_t count>
double Polynomial(const std::array<double, count>& a, double z) {
  double sum = a[count - 1];
  for (std::size_t i = count - 1; i-- > 0;) sum = a[i] + z * sum;
  return sum;
}

// -1/3!, 1/5!, ... to 1/17!: the first term left out is below 1e-19 on [-pi/4, pi/4]. Every factorial is exact.
constexpr std::array<double, 8> kSineSeries = {
    -1.0 / 6.0,        1.0 / 120.0,        -1.0 / 5040.0,          1.0 / 362880.0,
    -1.0 / 39916800.0, 1.0 / 6227020800.0, -1.0 / 1307674368000.0, 1.0 / 355687428096000.0};

// 1/4!, -1/6!, ... to 1/16!.
constexpr std::array<double, 7> kCosineSeries = {
    1.0 / 24.0,        -1.0 / 720.0,         1.0 / 40320.0,         -1.0 / 3628800.0,
    1.0 / 479001600.0, -1.0 / 87178291200.0, 1.0 / 20922789888000.0};

SineCosine OfReduced(const ReducedAngle& angle) {
  const double x = angle.high;
  const double z = x * x;
  const double half = 0.5 * z;
  const double sine = x + (x * z * Polynomial(kSineSeries, z) + angle.low * (1.0 - half));
  // 1 - z/2 first; its rounding error is added with the small terms.
  const double most = 1.0 - half;
  const double cosine = most + (((1.0 - most) - half) + (z * z * Polynomial(kCosineSeries, z) - x * angle.low));
  switch (angle.quadrant) {
    case 0:
      return {sine, cosine};
    case 1:
      return {cosine, -sine};
    case 2:
      return {-sine, -cosine};
    default:
      return {-cosine, sine};
  }
}

// 1/2!, 1/3!, ... to 1/14!: the first term left out is below 1e-19 on [-log(2)/2, log(2)/2].
constexpr std::array<double, 13> kExponentialSeries = {
    1.0 / 2.0,         1.0 / 6.0,          1.0 / 24.0,         1.0 / 120.0,     1.0 / 720.0,
    1.0 / 5040.0,      1.0 / 40320.0,      1.0 / 362880.0,     1.0 / 3628800.0, 1.0 / 39916800.0,
    1.0 / 479001600.0, 1.0 / 6227020800.0, 1.0 / 87178291200.0};

// log 2 in two doubles. The last digits of the first are 0, so that its products with exponents are exact.
constexpr double kLog2High = 0x1.62e42feep-1;
constexpr double kLog2Low = 0x1.a39ef35793c76p-33;

// 2^exponent, of a normal number.
double PowerOfTwo(int exponent) { return std::bit_cast<double>(static_cast<std::uint64_t>(exponent + 1023) << 52U); }

// atan(i/8), i = 0 .. 8, in two doubles.
struct TabulatedArc {
  double high;
  double low;
};
constexpr std::array<TabulatedArc, 9> kArcs = {{{0.0, 0.0},
                                                {0x1.fd5ba9aac2f6ep-4, -0x1.cd37686760c17p-59},
                                                {0x1.f5b75f92c80ddp-3, 0x1.8ab6e3cf7afbdp-57},
                                                {0x1.6f61941e4def1p-2, -0x1.c63aae6f6e918p-56},
                                                {0x1.dac670561bb4fp-2, 0x1.a2b7f222f65e2p-56},
                                                {0x1.1e00babdefeb4p-1, -0x1.928df287a668fp-58},
                                                {0x1.4978fa3269ee1p-1, 0x1.2419a87f2a458p-56},
                                                {0x1.700a7c5784634p-1, -0x1.8c34d25aadef6p-56},
                                                {0x1.921fb54442d18p-1, 0x1.1a62633145c07p-55}}};

// -1/3, 1/5, ... to 1/13: the first term left out is below 1e-18 of the angle on [-1/16, 1/16].
constexpr std::array<double, 6> kArcTangentSeries = {-1.0 / 3.0, 1.0 / 5.0,   -1.0 / 7.0,
                                                     1.0 / 9.0,  -1.0 / 11.0, 1.0 / 13.0};

// atan(a / b), 0 <= a <= b, 0 < b < infinity.
double ArcOfRatio(double a, double b) {
  // Scales, so that the sums below are finite and the products exact to the last bit.
  const double scale = b > 0x1p1000 ? 0x1p-100 : b < 0x1p-900 ? 0x1p200 : 1.0;
  a *= scale;
  b *= scale;
  const auto i = static_cast<int>(a / b * 8.0 + 0.5);  // from 0 to 8; any close value is correct
  const double t = i * 0.125;
  const double u = (a - t * b) / (b + t * a);
  const double z = u * u;
  const TabulatedArc& arc = kArcs[static_cast<std::size_t>(i)];
  return arc.high + (arc.low + (u + u * z * Polynomial(kArcTangentSeries, z)));
}

}  // namespace

SineCosine SineAndCosine(double x) {
  if (!(std::fabs(x) <= std::numeric_limits<double>::max())) return {x - x, x - x};
  return OfReduced(ReduceAngle(x));
}

SineCosine SineAndCosineOfTurn(int k, int n) { return OfReduced(ReduceTurn(k, n)); }

double ArcTangent2(double y, double x) {
  const double ax = std::fabs(x);
  const double ay = std::fabs(y);
  if (!(ax >= 0.0 && ay >= 0.0)) return x + y;  // not numbers
  const bool steep = ay > ax;
  const double a = steep ? ax : ay;
  const double b = steep ? ay : ax;
  double angle = 0.0;
  if (a == std::numeric_limits<double>::infinity()) {
    angle = kHalfPi / 2.0;
  } else if (a > 0.0 && b < std::numeric_limits<double>::infinity()) {
    angle = ArcOfRatio(a, b);
  }
  if (steep) {
    angle = (std::signbit(x) ? kHalfPi + angle : kHalfPi - angle) + kHalfPiLow;
  } else if (std::signbit(x)) {
    angle = (kPi - angle) + kPiLow;
  }
  return std::copysign(angle, y);
}

double ArcTangent(double x) { return ArcTangent2(x, 1.0); }

double ArcCosine(double x) { return ArcTangent2(std::sqrt((1.0 - x) * (1.0 + x)), x); }

double Logarithm(double x) {
  if (!(x > 0.0)) return x == 0.0 ? -std::numeric_limits<double>::infinity() : std::numeric_limits<double>::quiet_NaN();
  if (x == std::numeric_limits<double>::infinity()) return x;
  // x = 2^exponent m.
  constexpr double kRootOfHalf = 0x1.6a09e667f3bcdp-1;
  const bool subnormal = x < std::numeric_limits<double>::min();
  const auto bits = std::bit_cast<std::uint64_t>(subnormal ? x * 0x1p54 : x);
  constexpr std::uint64_t kFraction = (std::uint64_t{1} << 52U) - 1, kHalf = std::uint64_t{1022} << 52U;
  int exponent = static_cast<int>(bits >> 52U) - 1022 - (subnormal ? 54 : 0);
  auto m = std::bit_cast<double>((bits & kFraction) | kHalf);
  if (m < kRootOfHalf) {
    m *= 2.0;
    --exponent;
  }
  const double s = (m - 1.0) / (m + 1.0);
  const double square = s * s;  // below 0.0295
  double series = 0.0;
  for (int k = 25; k >= 3; k -= 2) series = (series + 1.0 / k) * square;
  return exponent * kLog2High + (2.0 * s + (2.0 * s * series + exponent * kLog2Low));
}

double Exponential(double x) {
  constexpr double kLargest = 709.79, kSmallest = -745.2;
  if (!(x < kLargest)) return x > 0.0 ? std::numeric_limits<double>::infinity() : x;  // or NaN
  if (x < kSmallest) return 0.0;
  // x = exponent log 2 + r.
  constexpr double kLog2Inverse = 0x1.71547652b82fep+0;
  const int exponent = static_cast<int>(x * kLog2Inverse + (x < 0.0 ? -0.5 : 0.5));
  const double r = (x - exponent * kLog2High) - exponent * kLog2Low;
  const double power = 1.0 + (r + r * r * Polynomial(kExponentialSeries, r));
  // In two steps, since 2^1024 is not a double; if the result is a double, both steps are exact.
  const int half = exponent / 2;
  return power * PowerOfTwo(half) * PowerOfTwo(exponent - half);
}

double Power(double x, double y) { return Exponential(y * Logarithm(x)); }

}  // namespace orvanel
