// Sums the series of the Bessel function, each where it is accurate.
#include "models/physical/spread/bessel.h"

#include <cmath>
#include <numbers>

#include "base/elementary.h"

namespace orvanel::physical {
namespace {

// The largest term is 2.7e4 at x = 14, whose roundings add up to 1e-11.
double PowerSeries(double x) {
  const double quarter = x * x / 4.0;
  double term = x / 2.0, sum = term;
  for (int k = 1; k < 60 && std::fabs(term) > 1e-18; ++k) {
    term *= -quarter / (k * (k + 1.0));
    sum += term;
  }
  return sum;
}

// Terms fall until number 2 x; twelve leave at most 1e-11.
double Asymptotic(double x) {
  constexpr int kTerms = 12;
  double p = 0.0, q = 0.0, term = 1.0;
  for (int k = 0; k < 2 * kTerms; ++k) {
    const double sign = k % 4 < 2 ? 1.0 : -1.0;
    (k % 2 == 0 ? p : q) += sign * term;
    const double odd = 2.0 * k + 1.0;
    term *= (4.0 - odd * odd) / ((k + 1.0) * 8.0 * x);
  }
  const SineCosine t = SineAndCosine(x - 0.75 * std::numbers::pi);
  return std::sqrt(2.0 / (std::numbers::pi * x)) * (p * t.cosine - q * t.sine);
}

}  // namespace

double BesselJ1(double x) { return x < 14.0 ? PowerSeries(x) : Asymptotic(x); }

}  // namespace orvanel::physical
