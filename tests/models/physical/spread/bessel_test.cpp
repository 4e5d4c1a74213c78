// The Bessel function against its integral, and at its zeros.
#include "models/physical/spread/bessel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace orvanel::physical {
namespace {

// J1(x) = 1/pi int cos(t - x sin t) dt from 0 to pi; the trapezoidal rule is exact to rounding once it has enough
// steps.
double Integral(double x) {
  const int steps = 40 + static_cast<int>(2 * x);
  long double sum = 0.0L;
  for (int i = 0; i < steps; ++i) {
    const long double t = 2 * std::numbers::pi_v<long double> * (i + 0.5L) / steps;
    sum += std::cos(t - static_cast<long double>(x) * std::sin(t));
  }
  return static_cast<double>(sum / steps);
}

TEST(Bessel, IsItsIntegral) {
  for (double x = 0.0; x < 60.0; x += 0.173) EXPECT_NEAR(BesselJ1(x), Integral(x), kBesselError) << x;
  for (const double x : {13.9999, 14.0, 14.0001, 250.3, 4711.8})
    EXPECT_NEAR(BesselJ1(x), Integral(x), kBesselError) << x;
}

// Abramowitz and Stegun, table 9.5.
TEST(Bessel, IsZeroWhereTheTableSays) {
  for (const double zero : {3.8317059702, 7.0155866698, 16.4706300509, 35.3323075501}) {
    EXPECT_NEAR(BesselJ1(zero), 0.0, 1e-10);
  }
}

}  // namespace
}  // namespace orvanel::physical
