// Measures the distance between a double and a more exact value in units in the last place.
#ifndef ORVANEL_TESTS_SUPPORT_ULPS_H
#define ORVANEL_TESTS_SUPPORT_ULPS_H

#include <cmath>
#include <limits>

namespace orvanel::test {

// Spacing of doubles at the magnitude of `exact`.
inline long double UlpOf(long double exact) {
  const double a = std::fabs(static_cast<double>(exact));
  return static_cast<long double>(std::nextafter(a, std::numeric_limits<double>::infinity())) - a;
}

inline long double UlpsBetween(double value, long double exact) { return std::fabs(value - exact) / UlpOf(exact); }

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_SUPPORT_ULPS_H
