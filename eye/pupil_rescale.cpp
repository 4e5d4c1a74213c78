// Rescales by the formula R(n, m)(e r) = sum over k = m, m + 2, .. n of (R(n, k)(e) - R(n, k + 2)(e)) R(k, m)(r).
#include "eye/pupil_rescale.h"

#include <array>
#include <cstdlib>

namespace orvanel::eye {
namespace {

// R(n, m)(rho) for all n and m >= 0; 0 if there is no such polynomial.
class RadialTable {
 public:
  // Uses the recurrence R(n, m) = rho (R(n - 1, |m - 1|) + R(n - 1, m + 1)) - R(n - 2, m). It avoids the cancellation
  // in the sum of powers. Source: Shakibaei and Paramesran (2013).
  explicit RadialTable(double rho) {
    at(0, 0) = 1.0;
    for (int n = 1; n <= kLargestOrder; ++n) {
      for (int m = n % 2; m <= n; m += 2) {
        const double before = n < 2 ? 0.0 : at(n - 2, m);
        at(n, m) = rho * (at(n - 1, std::abs(m - 1)) + at(n - 1, m + 1)) - before;
      }
    }
  }

  double operator()(int n, int m) const { return values_[Index(n, m)]; }

 private:
  static std::size_t Index(int n, int m) { return static_cast<std::size_t>(n * (kLargestOrder + 3) + m); }
  double& at(int n, int m) { return values_[Index(n, m)]; }

  std::array<double, (kLargestOrder + 1) * (kLargestOrder + 3)> values_{};
};

}  // namespace

Coefficients Rescaled(const Coefficients& orthonormal, double ratio) {
  const RadialTable radial(ratio);
  Coefficients rescaled(orthonormal.size());
  for (std::size_t j = 0; j < orthonormal.size(); ++j) {
    if (orthonormal[j] == 0.0) continue;
    const auto [n, m] = Term(j);
    for (int k = std::abs(m); k <= n; k += 2) {
      const double share = radial(n, k) - radial(n, k + 2);
      rescaled[OsaIndex({k, m})] += orthonormal[j] * share * (NormFactor({n, m}) / NormFactor({k, m}));
    }
  }
  return rescaled;
}

}  // namespace orvanel::eye
