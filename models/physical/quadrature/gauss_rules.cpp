// Gauss-Legendre and Gauss-Chebyshev quadrature rules.
#include "models/physical/quadrature/gauss_rules.h"

#include <cmath>
#include <cstddef>
#include <numbers>

#include "base/elementary.h"

namespace orvanel::physical {
namespace {

struct Legendre {
  double value;       // P_n(x)
  double derivative;  // P_n'(x)
};

Legendre LegendreAt(int n, double x) {
  double before = 1.0, value = x;
  for (int k = 2; k <= n; ++k) {
    const double next = ((2 * k - 1) * x * value - (k - 1) * before) / k;
    before = value;
    value = next;
  }
  return {value, n * (before - x * value) / (1.0 - x * x)};
}

}  // namespace

GaussRule GaussLegendre(int count) {
  const auto half = static_cast<std::size_t>(count / 2);
  GaussRule rule{std::vector<double>(half), std::vector<double>(half)};
  constexpr int kSteps = 6;  // each doubles the digits; two or three reach the last
  for (std::size_t i = 0; i < half; ++i) {
    // The largest root is number 0.
    const double angle = std::numbers::pi * (static_cast<double>(i) + 0.75) / (count + 0.5);
    double x = (1.0 - (count - 1.0) / (8.0 * count * count * count)) * SineAndCosine(angle).cosine;
    for (int step = 0; step < kSteps; ++step) {
      const Legendre p = LegendreAt(count, x);
      const double change = p.value / p.derivative;
      x -= change;
      if (std::fabs(change) < 0x1p-53) break;
    }
    const double derivative = LegendreAt(count, x).derivative;
    const std::size_t place = half - 1 - i;
    rule.nodes[place] = x;
    rule.weights[place] = 2.0 / ((1.0 - x * x) * derivative * derivative);
  }
  return rule;
}

GaussRule GaussChebyshev2(int count, std::vector<double>& halfChords) {
  const auto half = static_cast<std::size_t>(count / 2);
  GaussRule rule{std::vector<double>(half), std::vector<double>(half)};
  halfChords.resize(half);
  const double step = std::numbers::pi / (count + 1);
  for (std::size_t i = 0; i < half; ++i) {
    // Measured from the equator, where the smallest node is, half a step away.
    const SineCosine latitude = SineAndCosine((static_cast<double>(i) + 0.5) * step);
    rule.nodes[i] = latitude.sine;
    halfChords[i] = latitude.cosine;
    rule.weights[i] = step * latitude.cosine * latitude.cosine;
  }
  return rule;
}

}  // namespace orvanel::physical
