// Computes the centred, unitary transform, eight lines at a time.
//
// contract: every element's arithmetic is that of the plain one-dimensional routine, stage by stage.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "base/elementary.h"
#include "optics/lines.h"
#include "orvanel/transforms.h"

namespace orvanel {
namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

struct Tables {
  Tables(int direction, int n);

  std::vector<double> sinTable;
  std::vector<double> cosTable;
};

Tables::Tables(int direction, int n) {
  const double theta = (direction >= 0 ? -kTwoPi : kTwoPi) / n;
  for (int k = 0; k < n; ++k) {
    const SineCosine value = SineAndCosine(k * theta);
    sinTable.push_back(value.sine);
    cosTable.push_back(value.cosine);
  }
}

// Decimation in frequency: 2^stage groups of span n / 2^stage, whose halves become their sum and their turned
// difference.
void Stages(LineBundle& x, const Tables& tables, std::size_t n, int log2n) {
  double* const re = x.re.data();
  double* const im = x.im.data();
  for (int stage = 0; stage < log2n; ++stage) {
    const std::size_t groups = std::size_t{1} << stage;
    const std::size_t span = n >> stage;
    const std::size_t half = span / 2;
    if (half == 0) return;
    for (std::size_t g = 0; g < groups; ++g) {
      for (std::size_t k = 0; k < half; ++k) {
        const double cos = tables.cosTable[k * groups];
        const double sin = tables.sinTable[k * groups];
        const std::size_t a = (g * span + k) * kLanes;
        const std::size_t b = a + half * kLanes;
        for (std::size_t l = 0; l < kLanes; ++l) {
          const double dRe = re[a + l] - re[b + l];
          const double dIm = im[a + l] - im[b + l];
          re[a + l] = re[a + l] + re[b + l];
          im[a + l] = im[a + l] + im[b + l];
          re[b + l] = dRe * cos - dIm * sin;
          im[b + l] = dRe * sin + dIm * cos;
        }
      }
    }
  }
}

void NegateOdd(LineBundle& x) {
  for (std::size_t j = kLanes; j < x.re.size(); j += 2 * kLanes) {
    for (std::size_t l = j; l < j + kLanes; ++l) {
      x.re[l] = -x.re[l];
      x.im[l] = -x.im[l];
    }
  }
}

// Every element takes the value from the index with its bits reversed.
void Reorder(LineBundle& x, std::size_t n, int log2n) {
  for (std::size_t j = 0; j < n; ++j) {
    const std::size_t other = BitReversed(j, std::min(log2n, 63));
    if (other <= j || other >= n) continue;
    std::swap_ranges(&x.re[j * kLanes], &x.re[j * kLanes] + kLanes, &x.re[other * kLanes]);
    std::swap_ranges(&x.im[j * kLanes], &x.im[j * kLanes] + kLanes, &x.im[other * kLanes]);
  }
}

}  // namespace

void CentredFft2(double* re, double* im, int direction, int n, int log2n) {
  const Tables tables(direction, n);
  const auto length = static_cast<std::size_t>(n);
  const auto inPlace = [](std::size_t j) { return j; };
  const auto routine = [&](LineBundle& x) {
    NegateOdd(x);
    Stages(x, tables, length, log2n);
    Reorder(x, length, log2n);
    NegateOdd(x);
  };
  const double scale = 1.0 / std::sqrt(static_cast<double>(n));
  TransformLines(re, im, n, n, RowsOf(n), inPlace, routine, scale, inPlace);
  TransformLines(re, im, n, n, ColumnsOf(n), inPlace, routine, scale, inPlace);
}

}  // namespace orvanel
