// A wavefront of Zernike modes as one polynomial in x and y.
#ifndef ORVANEL_MODELS_PHYSICAL_PUPIL_WAVEFRONT_POLYNOMIAL_H
#define ORVANEL_MODELS_PHYSICAL_PUPIL_WAVEFRONT_POLYNOMIAL_H

#include <array>
#include <cstddef>
#include <span>

namespace orvanel::physical {

constexpr int kHighestOrder = 10;
constexpr std::size_t kModes = 66;  // of radial orders 0 to 10

// Index of the monomial x^a y^b, a + b <= 10: those of one power of x stand together, in ascending powers of y.
constexpr std::size_t Monomial(int a, int b) {
  return static_cast<std::size_t>(a * (2 * kHighestOrder + 3 - a) / 2 + b);
}

// sum of coefficients[Monomial(a, b)] x^a y^b.
struct Polynomial {
  std::array<double, kModes> coefficients{};
};

// Derivatives by the coefficients of the modes, from those by the coefficients of the polynomial: the transpose of
// WavefrontPolynomial.
std::array<double, kModes> ByModes(const Polynomial& byMonomials);

// A polynomial of one variable: sum of c[k] x^k.
using LinePolynomial = std::array<double, kHighestOrder + 1>;

// The wavefront sum c_j Z_j(x, y).
//   coefficients  by standard OSA/ANSI index j = (n(n + 2) + m)/2, orthonormal modes, at most 66; the rest are 0
// The result has the unit of the coefficients; x and y are fractions of the pupil's radius, y up.
// Error: below 1e-12 of the largest coefficient on the unit disc.
// Source: ANSI Z80.28; powers of x + iy for the azimuthal factors.
Polynomial WavefrontPolynomial(std::span<const double> coefficients);

// The same polynomial along the line of this y: its powers of x.
LinePolynomial AlongLine(const Polynomial& polynomial, double y);

// p(x + shift).
LinePolynomial Shifted(LinePolynomial polynomial, double shift);

// Value and slopes.
struct Jet {
  double value;
  double dx;
  double dy;
};
Jet At(const Polynomial& polynomial, double x, double y);

// The same along the line of one y, for many x.
struct LineJet {
  LinePolynomial value;
  LinePolynomial dy;
  Jet At(double x) const;
};
LineJet JetAlongLine(const Polynomial& polynomial, double y);

// The map (x, y) -> (xx x + xy y + x0, yx x + yy y + y0).
struct AffineMap {
  double xx = 1.0, xy = 0.0, x0 = 0.0;
  double yx = 0.0, yy = 1.0, y0 = 0.0;
};

// p(map(x, y)) as a polynomial of x and y.
Polynomial Composed(const Polynomial& polynomial, const AffineMap& map);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_PUPIL_WAVEFRONT_POLYNOMIAL_H
