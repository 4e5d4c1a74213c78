// Computes closed forms for circular pupils without samples.
#include "tests/accuracy/closed_forms.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <map>
#include <numbers>
#include <utility>

namespace orvanel::accuracy {

namespace {

constexpr Real kPi = std::numbers::pi_v<Real>;

struct Rule {
  std::vector<Real> at, weight;  // on -1 .. 1
};

// By Newton's method on Legendre's polynomial.
const Rule& GaussLegendre(int nodes) {
  static std::map<int, Rule> rules;
  Rule& rule = rules[nodes];
  if (!rule.at.empty()) return rule;
  for (int i = 0; i < nodes; ++i) {
    Real x = std::cos(kPi * (static_cast<Real>(i) + 0.75L) / (static_cast<Real>(nodes) + 0.5L)), slope = 0;
    for (int step = 0; step < 8; ++step) {
      Real before = 1, value = x;
      for (int k = 2; k <= nodes; ++k) {
        const Real order = static_cast<Real>(k);
        before = std::exchange(value, ((2 * order - 1) * x * value - (order - 1) * before) / order);
      }
      slope = static_cast<Real>(nodes) * (x * value - before) / (x * x - 1);
      x -= value / slope;
    }
    rule.at.push_back(x);
    rule.weight.push_back(2 / ((1 - x * x) * slope * slope));
  }
  return rule;
}

// The coefficient of r^(n - 2s) in R(n, m).
Real RadialCoefficient(int n, int m, int s) {
  const auto factorial = [](int k) { return std::tgamma(static_cast<Real>(k + 1)); };
  return (s % 2 == 0 ? 1 : -1) *
         std::round(factorial(n - s) / (factorial(s) * factorial((n + m) / 2 - s) * factorial((n - m) / 2 - s)));
}

Real Radial(int n, int m, Real r) {
  Real sum = 0;
  for (int s = 0; s <= (n - m) / 2; ++s) sum += RadialCoefficient(n, m, s) * std::pow(r, static_cast<Real>(n - 2 * s));
  return sum;
}

}  // namespace

Real BesselJ(int order, Real x) {
  // Of a whole turn in so many steps, the half that is not the mirror of the other.
  const int half = 30 + static_cast<int>(std::abs(x));
  Real sum = (1 + (order % 2 == 0 ? 1 : -1)) / 2.0L;
  for (int k = 1; k < half; ++k) {
    const Real t = kPi * static_cast<Real>(k) / static_cast<Real>(half);
    sum += std::cos(static_cast<Real>(order) * t - x * std::sin(t));
  }
  return sum / static_cast<Real>(half);
}

Real DiffractionMtf(Real frequency) {
  if (frequency >= 1) return 0;
  return (std::acos(frequency) - frequency * std::sqrt(1 - frequency * frequency)) * 2 / kPi;
}

Real AiryIntensity(Real radius) {
  const Real x = kPi * radius;
  return x == 0 ? 1 : std::pow(2 * BesselJ(1, x) / x, 2.0L);
}

Real AiryEncircledEnergy(Real radius) {
  return 1 - std::pow(BesselJ(0, kPi * radius), 2.0L) - std::pow(BesselJ(1, kPi * radius), 2.0L);
}

Real AiryDarkRing(int ring) {
  Real low = static_cast<Real>(ring), high = low + 0.5L;  // the zeros of J1 come shortly before (ring + 1/4) pi
  for (int step = 0; step < 64; ++step) {
    const Real middle = (low + high) / 2;
    ((BesselJ(1, kPi * low) < 0) == (BesselJ(1, kPi * middle) < 0) ? low : high) = middle;
  }
  return low;
}

std::vector<Mode> Modes() {
  std::vector<Mode> modes;
  for (int n = 2; n <= 6; ++n) {
    for (int m = -n; m <= n; m += 2) modes.push_back({n, m});
  }
  return modes;
}

int IndexOf(Mode mode) { return mode.n * (mode.n + 1) / 2 + (mode.n + mode.m) / 2; }

Real NormalisationFactor(Mode mode) {
  return std::sqrt(static_cast<Real>(mode.m == 0 ? mode.n + 1 : 2 * (mode.n + 1)));
}

Real AxisStrehl(Mode mode, Real rms) {
  const Rule& rule = GaussLegendre(64);
  std::complex<Real> mean = 0;
  for (std::size_t i = 0; i < rule.at.size(); ++i) {
    const Real r = (1 + rule.at[i]) / 2;
    const Real phase = 2 * kPi * NormalisationFactor(mode) * rms * Radial(mode.n, std::abs(mode.m), r);
    mean += rule.weight[i] * r * (mode.m == 0 ? std::polar(1.0L, phase) : BesselJ(0, phase));
  }
  return std::norm(mean);
}

Real StrehlByMarechal(Real rms) { return std::pow(1 - std::pow(2 * kPi * rms, 2.0L) / 2, 2.0L); }
Real StrehlBySquare(Real rms) { return 1 - std::pow(2 * kPi * rms, 2.0L); }
Real StrehlByExponential(Real rms) { return std::exp(-std::pow(2 * kPi * rms, 2.0L)); }

Polynomial::Polynomial(const std::vector<Real>& coefficients) {
  using Powers = std::array<std::array<Real, 7>, 7>;
  const auto times = [](const Powers& a, const Powers& b) {
    Powers product{};
    for (std::size_t p = 0; p < 7; ++p) {
      for (std::size_t q = 0; p + q < 7; ++q) {
        for (std::size_t i = 0; i <= p; ++i) {
          for (std::size_t k = 0; k <= q; ++k) product[p][q] += a[i][k] * b[p - i][q - k];
        }
      }
    }
    return product;
  };
  Powers one{}, x{}, y{}, square{};
  one[0][0] = x[1][0] = y[0][1] = square[2][0] = square[0][2] = 1;
  for (int n = 0; n <= 6; ++n) {
    for (int m = -n; m <= n; m += 2) {
      const Real c = coefficients[static_cast<std::size_t>(IndexOf({n, m}))];
      Powers cosine = one, sine{};  // r^k cos(k theta) and r^k sin(k theta)
      for (int k = 0; k < std::abs(m); ++k) {
        const Powers xc = times(x, cosine), ys = times(y, sine), xs = times(x, sine), yc = times(y, cosine);
        for (std::size_t p = 0; p < 7; ++p) {
          for (std::size_t q = 0; q < 7; ++q) cosine[p][q] = xc[p][q] - ys[p][q], sine[p][q] = xs[p][q] + yc[p][q];
        }
      }
      for (int s = 0; s <= (n - std::abs(m)) / 2; ++s) {
        Powers term = m >= 0 ? cosine : sine;
        for (int k = 0; k < (n - std::abs(m)) / 2 - s; ++k) term = times(term, square);
        for (std::size_t p = 0; p < 7; ++p) {
          for (std::size_t q = 0; q < 7; ++q) c_[p][q] += c * RadialCoefficient(n, std::abs(m), s) * term[p][q];
        }
      }
    }
  }
}

Real Polynomial::operator()(Real x, Real y) const {
  Real sum = 0;
  for (std::size_t p = 7; p-- > 0;) {
    Real row = 0;
    for (std::size_t q = 7 - p; q-- > 0;) row = row * y + c_[p][q];
    sum = sum * x + row;
  }
  return sum;
}

std::complex<Real> TransferFunction(const Polynomial& wavefront, Real fx, Real fy, int nodes) {
  const Real frequency = std::hypot(fx, fy);
  if (frequency >= 1) return 0;
  const Real ux = frequency > 0 ? fx / frequency : 1, uy = frequency > 0 ? fy / frequency : 0;
  // Along the shift the chord runs to cos(t) - frequency, across it the overlap to sin of the largest t. In t nothing
  // is singular.
  const Rule& rule = GaussLegendre(nodes);
  const Real largest = std::acos(frequency);
  std::complex<Real> sum = 0;
  for (std::size_t i = 0; i < rule.at.size(); ++i) {
    const Real t = largest * rule.at[i], across = std::sin(t), half = std::cos(t) - frequency;
    std::complex<Real> chord = 0;
    for (std::size_t k = 0; k < rule.at.size(); ++k) {
      const Real along = half * rule.at[k];
      const Real x = along * ux - across * uy, y = along * uy + across * ux;
      const Real waves =
          wavefront(x + frequency * ux, y + frequency * uy) - wavefront(x - frequency * ux, y - frequency * uy);
      chord += rule.weight[k] * std::polar(1.0L, 2 * kPi * waves);
    }
    sum += rule.weight[i] * std::cos(t) * half * chord;
  }
  return sum * largest / kPi;
}

std::vector<Real> RescaledCoefficients(const std::vector<Real>& coefficients, Real ratio) {
  std::vector<Real> result(28);
  for (int m = -6; m <= 6; ++m) {
    // As powers of the radius, scaled; then, from the highest power down, the polynomial that has it is taken out.
    const int first = std::abs(m);
    std::array<Real, 7> power{};
    for (int n = first; n <= 6; n += 2) {
      for (int s = 0; s <= (n - first) / 2; ++s) {
        const int exponent = n - 2 * s;
        power[static_cast<std::size_t>(exponent)] += coefficients[static_cast<std::size_t>(IndexOf({n, m}))] *
                                                     RadialCoefficient(n, first, s) *
                                                     std::pow(ratio, static_cast<Real>(exponent));
      }
    }
    for (int n = 6 - (6 - first) % 2; n >= first; n -= 2) {
      const Real c = power[static_cast<std::size_t>(n)] / RadialCoefficient(n, first, 0);
      result[static_cast<std::size_t>(IndexOf({n, m}))] = c;
      for (int s = 0; s <= (n - first) / 2; ++s) {
        power[static_cast<std::size_t>(n - 2 * s)] -= c * RadialCoefficient(n, first, s);
      }
    }
  }
  return result;
}

}  // namespace orvanel::accuracy
