// Computes integers by Philox, and normal numbers by the quantile function.
#include "eye/population/random.h"

#include <cmath>
#include <cstddef>
#include <span>

#include "base/elementary.h"
#include "base/philox.h"

namespace orvanel::eye {
namespace {

// A polynomial; the constant coefficient comes first.
double Polynomial(std::span<const double> coefficients, double x) {
  double sum = 0.0;
  for (std::size_t i = coefficients.size(); i > 0; --i) sum = sum * x + coefficients[i - 1];
  return sum;
}

struct Rational {
  double numerator[8], denominator[8];
  double operator()(double x) const { return Polynomial(numerator, x) / Polynomial(denominator, x); }
};

// For |p - 1/2| <= 0.425, in 0.425^2 - (p - 1/2)^2; times p - 1/2.
constexpr Rational kCentre = {
    {3.3871328727963666080e0, 1.3314166789178437745e+2, 1.9715909503065514427e+3, 1.3731693765509461125e+4,
     4.5921953931549871457e+4, 6.7265770927008700853e+4, 3.3430575583588128105e+4, 2.5090809287301226727e+3},
    {1.0, 4.2313330701600911252e+1, 6.8718700749205790830e+2, 5.3941960214247511077e+3, 2.1213794301586595867e+4,
     3.9307895800092710610e+4, 2.8729085735721942674e+4, 5.2264952788528545610e+3}};

// Outside this range, in r - 1.6 with r = sqrt(-log(min(p, 1 - p))) up to 5, and in r - 5 above.
constexpr Rational kFlank = {
    {1.42343711074968357734e0, 4.63033784615654529590e0, 5.76949722146069140550e0, 3.64784832476320460504e0,
     1.27045825245236838258e0, 2.41780725177450611770e-1, 2.27238449892691845833e-2, 7.74545014278341407640e-4},
    {1.0, 2.05319162663775882187e0, 1.67638483018380384940e0, 6.89767334985100004550e-1, 1.48103976427480074590e-1,
     1.51986665636164571966e-2, 5.47593808499534494600e-4, 1.05075007164441684324e-9}};
constexpr Rational kTail = {
    {6.65790464350110377720e0, 5.46378491116411436990e0, 1.78482653991729133580e0, 2.96560571828504891230e-1,
     2.65321895265761230930e-2, 1.24266094738807843860e-3, 2.71155556874348757815e-5, 2.01033439929228813265e-7},
    {1.0, 5.99832206555887937690e-1, 1.36929880922735805310e-1, 1.48753612908506148525e-2, 7.86869131145613259100e-4,
     1.84631831751005468180e-5, 1.42151175831644588870e-7, 2.04426310338993978564e-15}};

// The centres of 2^52 equal intervals of 0 to 1.
double Uniform(std::uint32_t high, std::uint32_t low) {
  const std::uint64_t part = (static_cast<std::uint64_t>(high) << 32U | low) >> 12U;
  return (static_cast<double>(part) + 0.5) * 0x1p-52;
}

}  // namespace

double NormalQuantile(double p) {
  constexpr double kHalfCentre = 0.425, kEndOfFlank = 5.0;
  const double q = p - 0.5;
  if (std::abs(q) <= kHalfCentre) return q * kCentre(kHalfCentre * kHalfCentre - q * q);
  const double r = std::sqrt(-Logarithm(q < 0.0 ? p : 1.0 - p));
  const double x = r <= kEndOfFlank ? kFlank(r - 1.6) : kTail(r - kEndOfFlank);
  return q < 0.0 ? -x : x;
}

double NormalNumber(std::uint64_t seed, std::uint64_t row, std::uint32_t place) {
  const auto low = [](std::uint64_t x) { return static_cast<std::uint32_t>(x); };
  const PhiloxCounter bits = Philox({place / 2, low(row), low(row >> 32U), 0}, {low(seed), low(seed >> 32U)});
  return NormalQuantile(place % 2 == 0 ? Uniform(bits[0], bits[1]) : Uniform(bits[2], bits[3]));
}

}  // namespace orvanel::eye
