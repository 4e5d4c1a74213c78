// Reduces angles by quarter turns: with three products up to 2^24 radians, with integer arithmetic on the bits of 2/pi
// beyond.
#include "base/reduced_angle.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

namespace orvanel {
namespace {

constexpr double kTwoOverPi = 0x1.45f306dc9c883p-1;
constexpr double kHalfPiHigh = 0x1.921fb54442d18p+0;
constexpr double kHalfPiLow = 0x1.1a62633145c07p-54;

// pi/2 in pieces: the first two have 29 bits, so that their products with 24-bit integers are exact.
constexpr double kHalfPi1 = 0x1.921fb54p+0;
constexpr double kHalfPi2 = 0x1.10b4611p-30;
constexpr double kHalfPi3 = 0x1.4c4c6628b80dcp-59;
constexpr double kLargestFast = 0x1p24;

// Adding and subtracting this rounds to the nearest integer.
constexpr double kRound = 0x1.8p52;

// The binary digits of 2/pi behind the point, after one word of zeros: enough for the largest double.
constexpr std::array<std::uint64_t, 21> kTwoOverPiBits = {
    0x0000000000000000, 0xa2f9836e4e441529, 0xfc2757d1f534ddc0, 0xdb6295993c439041, 0xfe5163abdebbc561,
    0xb7246e3a424dd2e0, 0x06492eea09d1921c, 0xfe1deb1cb129a73e, 0xe88235f52ebb4484, 0xe99c7026b45f7e41,
    0x3991d639835339f4, 0x9c845f8bbdf9283b, 0x1ff897ffde05980f, 0xef2f118b5a0a6d1f, 0x6d367ecf27cb09b7,
    0x4f463f669e5fea2d, 0x7527bac7ebe5f17b, 0x3d0739f78a5292ea, 0x6bfb5fb11f8d5d08, 0x56033046fc7b6bab,
    0xf0cfbc209af4361d};

struct Pair {
  double high;
  double low;
};

// a + b exactly. Source: Knuth, The Art of Computer Programming 2, 4.2.2.
Pair Sum(double a, double b) {
  const double s = a + b;
  const double t = s - a;
  return {s, (a - (s - t)) + (b - t)};
}

// a * b exactly. Source: Dekker (1971).
Pair Product(double a, double b) {
  constexpr double kSplit = 0x1p27 + 1.0;
  const double p = a * b;
  const double ta = kSplit * a;
  const double tb = kSplit * b;
  const double a1 = ta - (ta - a);
  const double b1 = tb - (tb - b);
  const double a2 = a - a1;
  const double b2 = b - b1;
  return {p, ((a1 * b1 - p) + a1 * b2 + a2 * b1) + a2 * b2};
}

// (a + b) quarter turns in radians, |b| <= ulp(a).
Pair QuarterTurns(double a, double b) {
  const Pair p = Product(a, kHalfPiHigh);
  return Sum(p.high, p.low + (a * kHalfPiLow + b * kHalfPiHigh));
}

struct Words {
  std::uint64_t high;
  std::uint64_t low;
};

// a * b in two words, by halves: not every processor has it.
Words Multiply(std::uint64_t a, std::uint64_t b) {
  constexpr std::uint64_t kHalf = 0xffffffff;
  const std::uint64_t lowest = (a & kHalf) * (b & kHalf);
  const std::uint64_t left = (a >> 32) * (b & kHalf) + (lowest >> 32);
  const std::uint64_t right = (a & kHalf) * (b >> 32) + (left & kHalf);
  return {(a >> 32) * (b >> 32) + (left >> 32) + (right >> 32), (right << 32) | (lowest & kHalf)};
}

// The nearest double: both halves are exact, their sum is rounded once. A single conversion would not use double
// arithmetic on 32-bit processors.
double ToDouble(std::uint64_t integer) {
  return static_cast<double>(static_cast<std::uint32_t>(integer >> 32)) * 0x1p32 +
         static_cast<double>(static_cast<std::uint32_t>(integer));
}

// |x| <= kLargestFast. Source: Cody and Waite, Software Manual for the Elementary Functions (1980).
ReducedAngle ReduceModerate(double x) {
  const double k = (x * kTwoOverPi + kRound) - kRound;
  const double x1 = x - k * kHalfPi1;  // exact: the product is, and so is the difference
  const Pair x2 = Sum(x1, -(k * kHalfPi2));
  const Pair r = Sum(x2.high, x2.low - k * kHalfPi3);
  return {static_cast<int>(static_cast<std::int64_t>(k) & 3), r.high, r.low};
}

// x finite, |x| >= 1. Source: Payne and Hanek (1983): of the product with 2/pi, whole turns need not be computed.
ReducedAngle ReduceHuge(double x) {
  // |x| = m * 2^e with an integer m of 53 bits.
  const auto bits = std::bit_cast<std::uint64_t>(x);
  const int e = static_cast<int>((bits >> 52) & 0x7ff) - 1075;
  const std::uint64_t m = (bits & 0xfffffffffffff) | 0x10000000000000;

  // 192 digits of 2/pi; the first one counts two quarter turns of |x|.
  const auto first = static_cast<unsigned>(e + 62);
  const auto digits = [&](unsigned word) {
    const unsigned at = first / 64 + word;
    const unsigned shift = first % 64;
    return shift == 0 ? kTwoOverPiBits[at] : (kTwoOverPiBits[at] << shift) | (kTwoOverPiBits[at + 1] >> (64 - shift));
  };

  // Their product with m, without the digits above the second before the point: these are multiples of four quarter
  // turns.
  const Words p1 = Multiply(m, digits(1));
  const std::uint64_t middle = p1.low + Multiply(m, digits(2)).high;
  const std::uint64_t carry = middle < p1.low ? 1 : 0;
  const std::uint64_t top = m * digits(0) + p1.high + carry;

  // Two digits of the quadrant, then the fraction, read as a signed one from -1/2 to 1/2.
  auto quadrant = static_cast<unsigned>(top >> 62);
  std::uint64_t high = (top << 2) | (middle >> 62);
  std::uint64_t low = middle << 2;
  const bool up = (high >> 63) != 0;
  if (up) {
    quadrant += 1;
    high = ~high;
    low = ~low;
  }
  const double a = ToDouble(high & ~std::uint64_t{0x7ff}) * 0x1p-64;
  const double b = ToDouble(((high & 0x7ff) << 53) | (low >> 11)) * 0x1p-117;
  const Pair fraction = Sum(a, b);
  const Pair r = QuarterTurns(fraction.high, fraction.low);

  const double sign = (x < 0.0) != up ? -1.0 : 1.0;
  if (x < 0.0) quadrant = 4 - (quadrant & 3);
  return {static_cast<int>(quadrant & 3), sign * r.high, sign * r.low};
}

}  // namespace

ReducedAngle ReduceAngle(double x) { return std::fabs(x) <= kLargestFast ? ReduceModerate(x) : ReduceHuge(x); }

ReducedAngle ReduceTurn(int k, int n) {
  const int quadrant = (8 * k + n) / (2 * n);
  const Pair r = QuarterTurns(static_cast<double>(4 * k - quadrant * n) / n, 0.0);
  return {quadrant & 3, r.high, r.low};
}

}  // namespace orvanel
