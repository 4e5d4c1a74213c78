// The polynomial of a wavefront against Zernike modes in polar form, in long double.
#include "models/physical/pupil/wavefront_polynomial.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace orvanel::physical {
namespace {

// R(n, p) by the recurrence of Kintner's type: Jacobi polynomials P^(0,p) of 2 rho^2 - 1.
long double Radial(int n, int p, long double rho) {
  const int s = (n - p) / 2;
  const long double x = 2 * rho * rho - 1;
  long double before = 1, value = 1 + (p + 2) * (x - 1) / 2;
  if (s == 0) value = before;
  for (int k = 2; k <= s; ++k) {
    const long double a = 0, b = p, c = 2 * k + a + b;
    const long double next =
        ((c - 1) * (c * (c - 2) * x + a * a - b * b) * value - 2 * (k + a - 1) * (k + b - 1) * c * before) /
        (2 * k * (k + a + b) * (c - 2));
    before = value;
    value = next;
  }
  // P_s(x) with x -> orientation of the radial polynomial, 1 at the rim.
  return std::pow(rho, p) * value / 1;
}

// Zernike radial polynomials are (-1)^s rho^p P_s^(p,0)(1 - 2 rho^2) = rho^p P_s^(0,p)(2 rho^2 - 1).
long double Mode(int n, int m, long double x, long double y) {
  const long double rho = std::hypot(x, y), theta = std::atan2(y, x);
  const int p = std::abs(m);
  const long double radial = Radial(n, p, rho);
  const long double norm = std::sqrt((m == 0 ? 1.0L : 2.0L) * (n + 1));
  return norm * radial * (m < 0 ? std::sin(p * theta) : std::cos(p * theta));
}

TEST(WavefrontPolynomial, IsTheModeOfEveryIndex) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> place(-0.7, 0.7);
  std::size_t j = 0;
  for (int n = 0; n <= kHighestOrder; ++n) {
    for (int m = -n; m <= n; m += 2, ++j) {
      std::vector<double> coefficients(j + 1, 0.0);
      coefficients[j] = 1.0;
      const Polynomial polynomial = WavefrontPolynomial(coefficients);
      for (int i = 0; i < 20; ++i) {
        const double x = place(random), y = place(random);
        EXPECT_NEAR(At(polynomial, x, y).value, static_cast<double>(Mode(n, m, x, y)), 1e-12) << n << ' ' << m;
      }
    }
  }
  EXPECT_EQ(j, kModes);
}

TEST(WavefrontPolynomial, SlopesAreThoseOfCentralDifferences) {
  std::mt19937 random(8);
  std::normal_distribution<double> coefficient;
  std::vector<double> coefficients(kModes);
  for (double& c : coefficients) c = coefficient(random);
  const Polynomial w = WavefrontPolynomial(coefficients);
  constexpr double h = 1e-5;
  for (const auto& [x, y] : {std::pair{0.31, -0.62}, {-0.9, 0.2}, {0.0, 0.0}, {0.05, 0.71}}) {
    const Jet jet = At(w, x, y);
    // The third derivative times h^2 / 6, and rounding over 2 h.
    EXPECT_NEAR(jet.dx, (At(w, x + h, y).value - At(w, x - h, y).value) / (2 * h), 1e-5);
    EXPECT_NEAR(jet.dy, (At(w, x, y + h).value - At(w, x, y - h).value) / (2 * h), 1e-5);
  }
}

TEST(WavefrontPolynomial, SlopesOfTiltAndDefocusAreExact) {
  std::vector<double> coefficients = {0.0, 0.25, -0.5, 0.0, 0.75};
  const Jet jet = At(WavefrontPolynomial(coefficients), 0.25, -0.375);
  EXPECT_NEAR(jet.dx, 2 * -0.5 + 4 * std::sqrt(3.0) * 0.75 * 0.25, 1e-15);
  EXPECT_NEAR(jet.dy, 2 * 0.25 + 4 * std::sqrt(3.0) * 0.75 * -0.375, 1e-15);
}

TEST(WavefrontPolynomial, AlongALineItIsTheSamePolynomial) {
  std::mt19937 random(9);
  std::normal_distribution<double> coefficient;
  std::vector<double> coefficients(kModes);
  for (double& c : coefficients) c = coefficient(random);
  const Polynomial w = WavefrontPolynomial(coefficients);
  const LinePolynomial line = AlongLine(w, -0.43);
  for (const double x : {-0.8, 0.1, 0.55}) {
    double sum = 0.0;
    for (std::size_t k = line.size(); k-- > 0;) sum = sum * x + line[k];
    EXPECT_NEAR(sum, At(w, x, -0.43).value, 1e-11);
  }
}

TEST(WavefrontPolynomial, ShiftedItsOriginIsElsewhere) {
  const LinePolynomial p = {0.3, -1.2, 0.7, 0.1, -0.4, 0.9, 0.2, -0.6, 0.8, -0.5, 1.1};
  const auto at = [](const LinePolynomial& q, double x) {
    double sum = 0.0;
    for (std::size_t k = q.size(); k-- > 0;) sum = sum * x + q[k];
    return sum;
  };
  for (const double x : {-0.4, 0.0, 0.6}) EXPECT_NEAR(at(Shifted(p, 0.35), x), at(p, x + 0.35), 1e-14);
}

TEST(WavefrontPolynomial, ComposedWithAMapIsItsValueAtTheMappedPlace) {
  std::mt19937 random(10);
  std::normal_distribution<double> coefficient;
  std::vector<double> coefficients(kModes);
  for (double& c : coefficients) c = coefficient(random);
  const Polynomial w = WavefrontPolynomial(coefficients);
  const AffineMap map{0.6, -0.3, 0.1, 0.2, 0.5, -0.15};
  const Polynomial composed = Composed(w, map);
  for (const auto& [x, y] : {std::pair{0.31, -0.62}, {-0.9, 0.2}, {0.0, 0.0}, {0.05, 0.71}}) {
    const double mappedX = map.xx * x + map.xy * y + map.x0, mappedY = map.yx * x + map.yy * y + map.y0;
    EXPECT_NEAR(At(composed, x, y).value, At(w, mappedX, mappedY).value, 1e-10);
  }
}

TEST(WavefrontPolynomial, WithoutCoefficientsIsFlat) { EXPECT_EQ(At(WavefrontPolynomial({}), 0.3, 0.4).value, 0.0); }

}  // namespace
}  // namespace orvanel::physical
