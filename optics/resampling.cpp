// Magnifies planes by cubic convolution.
#include "orvanel/resampling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "optics/samples.h"

namespace orvanel {
namespace {

// Where an output sample takes from along one axis: source offsets first - 1 to first + 2, and their weights.
struct Taps {
  bool inside;
  int first;
  std::array<double, 4> weights;
};

// An offset of 0 or below counts from the whole number below it, so that 0 is -1 and a fraction of 1.
Taps TapsAt(int offset, double factor, int n) {
  const double u = offset / factor;
  if (!(std::fabs(u) <= n)) return {false, 0, {}};
  const auto first = static_cast<int>(u <= 0.0 ? u - 1.0 : u);
  const double f = u - first;
  const bool inside = first >= 2 - n / 2 && first < n / 2 - 2;
  return {inside, first, {CubicKernel(1.0 + f), CubicKernel(f), CubicKernel(1.0 - f), CubicKernel(2.0 - f)}};
}

}  // namespace

double CubicKernel(double x) {
  const double t = std::fabs(x);
  if (t < 1.0) return t * t * t - 2.0 * t * t + 1.0;
  if (t < 2.0) return 4.0 - 8.0 * t + 5.0 * t * t - t * t * t;
  return 0.0;
}

void Rescale(const double* plane, int n, double factor, double* out) {
  std::vector<Taps> taps;  // rows and columns take alike
  taps.reserve(static_cast<std::size_t>(std::max(n, 0)));
  for (int offset = -n / 2; offset < n - n / 2; ++offset) taps.push_back(TapsAt(offset, factor, n));
  for (int r = 0; r < n; ++r) {
    const Taps& v = taps[static_cast<std::size_t>(r)];
    for (int c = 0; c < n; ++c) {
      const Taps& u = taps[static_cast<std::size_t>(c)];
      double sum = 0.0;
      if (u.inside && v.inside) {
        for (int j = 0; j < 4; ++j) {
          for (int i = 0; i < 4; ++i) {
            const double sample = plane[SampleIndex(n / 2 + v.first - 1 + j, n / 2 + u.first - 1 + i, n)];
            sum += v.weights[static_cast<std::size_t>(j)] * u.weights[static_cast<std::size_t>(i)] * sample;
          }
        }
      }
      out[SampleIndex(r, c, n)] = sum < 0.0 ? 0.0 : sum;
    }
  }
}

}  // namespace orvanel
