// Defines planes in long double, and functions on them for tests.
#ifndef ORVANEL_TESTS_SUPPORT_PLANES_H
#define ORVANEL_TESTS_SUPPORT_PLANES_H

#include <cmath>
#include <cstddef>
#include <vector>

namespace orvanel::reference {

using Real = long double;
using Plane = std::vector<Real>;

template <class Samples>
Plane ToReal(const Samples& samples) {
  return Plane(samples.begin(), samples.end());
}

inline std::size_t At(int row, int column, int columns) {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(column);
}

inline std::size_t Area(int n) { return At(n, 0, n); }

inline Plane Zeros(int n) { return Plane(Area(n)); }

inline Real Sum(const Plane& plane) {
  Real sum = 0;
  for (const Real v : plane) sum += v;
  return sum;
}

inline Real Norm(const Plane& plane) {
  Real sum = 0;
  for (const Real v : plane) sum += v * v;
  return std::sqrt(sum);
}

// From -0.31 to 0.69, always the same for one seed.
inline std::vector<double> Noise(int samples, unsigned seed) {
  std::vector<double> plane;
  for (int i = 0; i < samples; ++i) {
    seed = seed * 1664525u + 1013904223u;
    plane.push_back(static_cast<double>(seed >> 8) / 16777216.0 - 0.31);
  }
  return plane;
}

// For EXPECT_PRED3(Near, actual, expected, bound): false if any of them is not a number.
inline bool Near(Real actual, Real expected, Real bound) { return std::abs(actual - expected) <= bound; }

}  // namespace orvanel::reference

#endif  // ORVANEL_TESTS_SUPPORT_PLANES_H
