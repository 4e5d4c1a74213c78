// Conversion of Zernike modes to monomials, and evaluation.
#include "models/physical/pupil/wavefront_polynomial.h"

#include <algorithm>
#include <cmath>

namespace orvanel::physical {
namespace {

using Monomials = std::array<double, kModes>;

double Factorial(int n) { return n < 2 ? 1.0 : n * Factorial(n - 1); }
double Binomial(int n, int k) { return Factorial(n) / (Factorial(k) * Factorial(n - k)); }

// Adds factor * (x^2 + y^2)^s * Re (x + iy)^m, or the imaginary part.
void AddHarmonic(Monomials& to, double factor, int s, int m, bool imaginary) {
  for (int k = imaginary ? 1 : 0; k <= m; k += 2) {
    const double sign = k % 4 < 2 ? 1.0 : -1.0;  // i^k is 1, i, -1, -i
    for (int r = 0; r <= s; ++r) {
      to[Monomial(m - k + 2 * (s - r), k + 2 * r)] += factor * sign * Binomial(m, k) * Binomial(s, r);
    }
  }
}

// Orthonormal mode: integers times one root, so that only the root rounds.
Monomials MonomialsOfMode(int n, int m) {
  const int p = std::abs(m);
  const double norm = std::sqrt(m == 0 ? n + 1.0 : 2.0 * (n + 1.0));
  Monomials mode{};
  for (int s = 0; s <= (n - p) / 2; ++s) {
    const double radial = (s % 2 == 0 ? 1.0 : -1.0) * Factorial(n - s) /
                          (Factorial(s) * Factorial((n + p) / 2 - s) * Factorial((n - p) / 2 - s));
    AddHarmonic(mode, radial, (n - p) / 2 - s, p, m < 0);
  }
  for (double& c : mode) c *= norm;
  return mode;
}

const std::array<Monomials, kModes>& Modes() {
  static const std::array<Monomials, kModes> modes = [] {
    std::array<Monomials, kModes> all;
    std::size_t j = 0;
    for (int n = 0; n <= kHighestOrder; ++n) {
      for (int m = -n; m <= n; m += 2) all[j++] = MonomialsOfMode(n, m);
    }
    return all;
  }();
  return modes;
}

// p times (a x + b y + c); what would exceed the highest order has to be 0.
Polynomial TimesLinear(const Polynomial& p, double a, double b, double c) {
  Polynomial product;
  for (int i = 0; i <= kHighestOrder; ++i) {
    for (int j = 0; i + j <= kHighestOrder; ++j) {
      const double value = p.coefficients[Monomial(i, j)];
      product.coefficients[Monomial(i, j)] += c * value;
      if (i + j == kHighestOrder) continue;
      product.coefficients[Monomial(i + 1, j)] += a * value;
      product.coefficients[Monomial(i, j + 1)] += b * value;
    }
  }
  return product;
}

}  // namespace

Polynomial WavefrontPolynomial(std::span<const double> coefficients) {
  Polynomial sum;
  for (std::size_t j = 0; j < std::min(coefficients.size(), kModes); ++j) {
    if (coefficients[j] == 0.0) continue;
    for (std::size_t i = 0; i < kModes; ++i) sum.coefficients[i] += coefficients[j] * Modes()[j][i];
  }
  return sum;
}

std::array<double, kModes> ByModes(const Polynomial& byMonomials) {
  std::array<double, kModes> derivatives{};
  for (std::size_t j = 0; j < kModes; ++j) {
    for (std::size_t i = 0; i < kModes; ++i) derivatives[j] += Modes()[j][i] * byMonomials.coefficients[i];
  }
  return derivatives;
}

LinePolynomial AlongLine(const Polynomial& polynomial, double y) {
  LinePolynomial line{};
  for (int a = 0; a <= kHighestOrder; ++a) {
    double sum = 0.0;
    for (int b = kHighestOrder - a; b >= 0; --b) sum = sum * y + polynomial.coefficients[Monomial(a, b)];
    line[static_cast<std::size_t>(a)] = sum;
  }
  return line;
}

// By repeated division.
LinePolynomial Shifted(LinePolynomial polynomial, double shift) {
  if (shift == 0.0) return polynomial;
  for (std::size_t k = 0; k < polynomial.size(); ++k) {
    for (std::size_t i = polynomial.size() - 1; i-- > k;) polynomial[i] += shift * polynomial[i + 1];
  }
  return polynomial;
}

LineJet JetAlongLine(const Polynomial& polynomial, double y) {
  LineJet jet;
  for (int a = 0; a <= kHighestOrder; ++a) {
    double value = 0.0, slope = 0.0;  // of the factor of x^a, by y
    for (int b = kHighestOrder - a; b >= 0; --b) {
      slope = slope * y + value;
      value = value * y + polynomial.coefficients[Monomial(a, b)];
    }
    jet.value[static_cast<std::size_t>(a)] = value;
    jet.dy[static_cast<std::size_t>(a)] = slope;
  }
  return jet;
}

Jet LineJet::At(double x) const {
  Jet jet{0.0, 0.0, 0.0};
  for (std::size_t a = value.size(); a-- > 0;) {
    jet.dx = jet.dx * x + jet.value;
    jet.value = jet.value * x + value[a];
    jet.dy = jet.dy * x + dy[a];
  }
  return jet;
}

Jet At(const Polynomial& polynomial, double x, double y) { return JetAlongLine(polynomial, y).At(x); }

// Horner's scheme in x, with coefficients by Horner's scheme in y.
Polynomial Composed(const Polynomial& polynomial, const AffineMap& map) {
  Polynomial sum;
  for (int a = kHighestOrder; a >= 0; --a) {
    Polynomial factor;
    for (int b = kHighestOrder - a; b >= 0; --b) {
      factor = TimesLinear(factor, map.yx, map.yy, map.y0);
      factor.coefficients[0] += polynomial.coefficients[Monomial(a, b)];
    }
    sum = TimesLinear(sum, map.xx, map.xy, map.x0);
    for (std::size_t i = 0; i < kModes; ++i) sum.coefficients[i] += factor.coefficients[i];
  }
  return sum;
}

}  // namespace orvanel::physical
