// Marches through the cells of a grid, and through finer cells at the border.
#include "metrics/quality/area_above.h"

#include <array>
#include <cstddef>

namespace orvanel::metrics {
namespace {

constexpr int kFine = 4;  // of a cell
constexpr int kTaps = 6, kBefore = 2;
constexpr int kRim = kAreaRim;

// Lagrange's weights at t of 1 between the samples 2 and 3 of six.
std::array<double, kTaps> WeightsAt(double t) {
  std::array<double, kTaps> weights;
  for (int i = 0; i < kTaps; ++i) {
    double weight = 1.0;
    for (int k = 0; k < kTaps; ++k) {
      if (k != i) weight *= (t + kBefore - k) / (i - k);
    }
    weights[static_cast<std::size_t>(i)] = weight;
  }
  return weights;
}

// The share of a unit square above the level, by straight borders; a, b, c, d are the excesses of its corners in turn.
double ShareAbove(double a, double b, double c, double d) {
  const std::array<double, 4> corners = {a, b, c, d};
  constexpr std::array<double, 4> kX = {0.0, 1.0, 1.0, 0.0}, kY = {0.0, 0.0, 1.0, 1.0};
  // The polygon above the level, by the shoelace formula.
  double twice = 0.0, firstX = 0.0, firstY = 0.0, lastX = 0.0, lastY = 0.0;
  bool isFirst = true;
  const auto add = [&](double x, double y) {
    if (isFirst) {
      firstX = x;
      firstY = y;
      isFirst = false;
    } else {
      twice += lastX * y - x * lastY;
    }
    lastX = x;
    lastY = y;
  };
  for (std::size_t i = 0; i < 4; ++i) {
    const std::size_t next = (i + 1) % 4;
    if (corners[i] > 0.0) add(kX[i], kY[i]);
    if ((corners[i] > 0.0) != (corners[next] > 0.0)) {
      const double t = corners[i] / (corners[i] - corners[next]);
      add(kX[i] + t * (kX[next] - kX[i]), kY[i] + t * (kY[next] - kY[i]));
    }
  }
  if (isFirst) return 0.0;
  twice += lastX * firstY - firstX * lastY;
  return twice / 2.0;
}

// The share of a cell at the border.
//   first  of the 6 x 6 samples
double ShareOfCell(double level, const double* first, int pitch) {
  static const auto weights = [] {
    std::array<std::array<double, kTaps>, kFine + 1> all;
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = WeightsAt(static_cast<double>(i) / kFine);
    return all;
  }();
  std::array<std::array<double, kFine + 1>, kTaps> rows{};
  for (int r = 0; r < kTaps; ++r) {
    for (int c = 0; c < kTaps; ++c) {
      const double sample = first[static_cast<std::ptrdiff_t>(r) * pitch + c] - level;
      for (std::size_t i = 0; i <= kFine; ++i) {
        rows[static_cast<std::size_t>(r)][i] += weights[i][static_cast<std::size_t>(c)] * sample;
      }
    }
  }
  std::array<std::array<double, kFine + 1>, kFine + 1> fine{};
  for (std::size_t k = 0; k <= kFine; ++k) {
    for (std::size_t r = 0; r < kTaps; ++r) {
      for (std::size_t i = 0; i <= kFine; ++i) fine[k][i] += weights[k][r] * rows[r][i];
    }
  }
  double share = 0.0;
  for (std::size_t k = 0; k < kFine; ++k) {
    for (std::size_t i = 0; i < kFine; ++i) {
      share += ShareAbove(fine[k][i], fine[k][i + 1], fine[k + 1][i + 1], fine[k + 1][i]);
    }
  }
  return share / (kFine * kFine);
}

}  // namespace

double AreaAbove(double level, const double* samples, int rows, int columns) {
  double area = 0.0;
  for (int r = kRim; r + kRim + 1 < rows; ++r) {
    const double* const row = samples + static_cast<std::ptrdiff_t>(r) * columns;
    const double* const next = row + columns;
    for (int c = kRim; c + kRim + 1 < columns; ++c) {
      const int above = (row[c] > level ? 1 : 0) + (row[c + 1] > level ? 1 : 0) + (next[c] > level ? 1 : 0) +
                        (next[c + 1] > level ? 1 : 0);
      if (above == 0) continue;
      area += above == 4 ? 1.0 : ShareOfCell(level, row + c - kBefore - std::ptrdiff_t{kBefore} * columns, columns);
    }
  }
  return area;
}

}  // namespace orvanel::metrics
