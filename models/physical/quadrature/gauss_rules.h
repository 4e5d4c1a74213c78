// Gauss quadrature rules on [-1, 1], made by our own arithmetic so that every platform has the same bits.
#ifndef ORVANEL_MODELS_PHYSICAL_QUADRATURE_GAUSS_RULES_H
#define ORVANEL_MODELS_PHYSICAL_QUADRATURE_GAUSS_RULES_H

#include <vector>

namespace orvanel::physical {

// The positive half of a symmetric rule with an even number of nodes, in ascending order. Each node x stands for x and
// -x, which have the same weight.
struct GaussRule {
  std::vector<double> nodes;
  std::vector<double> weights;
};

// The rule for int f(x) dx: exact for polynomials up to degree 2 count - 1.
//   count  even, 2 to 4096
// Error: nodes within 2^-52, weights within 2^-40 of the largest. Source: Newton's method on the Legendre recurrence,
// from the starting values of Tricomi (1950).
GaussRule GaussLegendre(int count);

// The rule for int sqrt(1 - x^2) f(x) dx: exact for polynomials up to degree 2 count - 1.
//   count       even, 2 to 4096
//   halfChords  receives sqrt(1 - x^2) of each node
// Source: Abramowitz and Stegun (1964), 25.4.40.
GaussRule GaussChebyshev2(int count, std::vector<double>& halfChords);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_QUADRATURE_GAUSS_RULES_H
