// Computes Zernike polynomials in long double from their definition, for tests. Shares no code with the library.
#ifndef ORVANEL_TESTS_EYE_ZERNIKE_TRUTH_H
#define ORVANEL_TESTS_EYE_ZERNIKE_TRUTH_H

#include <cmath>
#include <cstdlib>
#include <numbers>

namespace orvanel::eye {

inline long double Factorial(int n) { return n < 2 ? 1.0L : n * Factorial(n - 1); }

// R(n, |m|) at rho.
inline long double Radial(int n, int m, long double rho) {
  m = std::abs(m);
  long double sum = 0.0L;
  for (int s = 0; s <= (n - m) / 2; ++s) {
    sum += (s % 2 ? -1.0L : 1.0L) * Factorial(n - s) /
           (Factorial(s) * Factorial((n + m) / 2 - s) * Factorial((n - m) / 2 - s)) * std::pow(rho, n - 2 * s);
  }
  return sum;
}

inline long double Norm(int n, int m) { return std::sqrt((m == 0 ? 1.0L : 2.0L) * static_cast<long double>(n + 1)); }

// The orthonormal polynomial of OSA/ANSI Z80.28 at (x, y), y upwards.
inline long double OsaPolynomial(int n, int m, long double x, long double y) {
  const long double rho = std::hypot(x, y), theta = std::atan2(y, x);
  return Norm(n, m) * Radial(n, m, rho) * (m < 0 ? std::sin(-m * theta) : std::cos(m * theta));
}

// Integral from 0 to 1 by Gauss and Legendre with 16 nodes, exact for polynomials up to degree 31.
template <class Function>
long double Integral(Function function) {
  constexpr int kNodes = 16;
  long double sum = 0.0L;
  for (int i = 0; i < kNodes; ++i) {
    long double x = std::cos(std::numbers::pi_v<long double> * (i + 0.75L) / (kNodes + 0.5L)), slope = 0.0L;
    for (int iteration = 0; iteration < 100; ++iteration) {
      long double before = 1.0L, value = x;
      for (int n = 2; n <= kNodes; ++n) {
        const long double next = ((2 * n - 1) * x * value - (n - 1) * before) / n;
        before = value;
        value = next;
      }
      slope = kNodes * (x * value - before) / (x * x - 1.0L);
      x -= value / slope;
    }
    sum += function((1.0L + x) / 2.0L) / ((1.0L - x * x) * slope * slope);
  }
  return sum;
}

}  // namespace orvanel::eye

#endif  // ORVANEL_TESTS_EYE_ZERNIKE_TRUTH_H
