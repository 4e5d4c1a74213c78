// Decay of the coefficients of exp(i phase).
#include "models/physical/quadrature/bandwidth.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "base/elementary.h"

namespace orvanel::physical {
namespace {

// sinh x - x, and cosh x - 1, for 0 <= x: by their series where they nearly cancel.
double SinhLess(double x) {
  if (x < 0.1) return x * x * x / 6.0 * (1.0 + x * x / 20.0);
  const double e = Exponential(x);
  return (e - 1.0 / e) / 2.0 - x;
}
double CoshLess(double x) {
  if (x < 0.1) return x * x / 2.0 * (1.0 + x * x / 12.0);
  const double e = Exponential(x);
  return (e + 1.0 / e) / 2.0 - 1.0;
}

}  // namespace

Amplitudes AmplitudesOf(const Pupil& pupil) {
  Amplitudes amplitudes{};
  const double k = 2.0 * std::numbers::pi / pupil.wavelengthUm;
  std::size_t j = 0;
  for (int n = 0; n <= kHighestOrder; ++n) {
    double sum = 0.0, squares = 0.0;
    for (int m = 0; m <= n; ++m, ++j) {
      sum += std::fabs(pupil.modesUm[j]);
      squares += pupil.modesUm[j] * pupil.modesUm[j];
    }
    amplitudes[static_cast<std::size_t>(n)] =
        k * std::min(sum * std::sqrt(2.0 * (n + 1)), std::sqrt(squares) * (n + 1));
  }
  return amplitudes;
}

Damping DampingOf(const Pupil& pupil) {
  const Attenuation attenuation = AttenuationOf(pupil);
  const double size = std::fabs(attenuation.perSquare);
  return {2.0 * size * std::sqrt(attenuation.x * attenuation.x + attenuation.y * attenuation.y), size};
}

double DegreeOf(double frequency, const Amplitudes& amplitudes, const Damping& damping) {
  constexpr double kDigits = 16.1;  // ln 1e7
  double best = std::numeric_limits<double>::infinity();
  double h = 2.0;
  while (h > 0.01) {
    double growth = kDigits + damping.linear * CoshLess(h) + damping.square * CoshLess(2.0 * h);
    for (std::size_t n = 1; n < amplitudes.size(); ++n) {
      if (amplitudes[n] > 0.0) growth += amplitudes[n] * SinhLess(static_cast<double>(n) * h);
    }
    const double degree = frequency + growth / h;  // falls to its least and rises
    if (!(degree <= best)) break;
    best = degree;
    h *= 0.85;
  }
  return best;
}

int CountFor(double degree, int step) {
  if (!(degree < 2.0 * kMaxNodes)) return 2 * kMaxNodes;
  const int count = static_cast<int>(degree / 2.0) + 1;  // a rule of n nodes is exact up to degree 2n - 1
  return (count + step - 1) / step * step;
}

}  // namespace orvanel::physical
