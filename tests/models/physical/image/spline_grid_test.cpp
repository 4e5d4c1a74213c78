// Splines on a coarse grid: what they gather and what they interpolate.
#include "models/physical/image/spline_grid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "tests/models/physical/examples.h"
#include "tests/support/every_kernel.h"
#include "tests/support/planes.h"

namespace orvanel::physical {
namespace {

// The cubic B-spline.
double Spline(double x) {
  const double d = std::fabs(x);
  if (d >= 2) return 0;
  return d < 1 ? (4 - 6 * d * d + 3 * d * d * d) / 6 : std::pow(2 - d, 3) / 6;
}

// Of a pixel and a node, along one direction.
double Weight(int pixel, int node, int step) { return Spline((pixel + 0.5) / step - (node - 1)); }

class SplineGrids : public test::EveryKernel {};

TEST_P(SplineGrids, GatherSamplesByTheirSplines) {
  constexpr int kColumns = 19, kRows = 23, kMargin = 3, kPitch = 24, kStep = 5;
  const SplineGrid grid(ActiveChords(), kColumns + 2 * kMargin, kRows + 2 * kMargin, kStep);
  std::vector<double> samples = reference::Noise(kRows * kPitch, 1);
  for (int r = 0; r < kRows; ++r) {
    for (int c = kColumns; c < kPitch; ++c) samples[static_cast<std::size_t>(r * kPitch + c)] = 0.0;
  }
  EXPECT_EQ(grid.columns(), 8);
  EXPECT_EQ(grid.rows(), 9);
  std::vector<double> nodes(9 * 16, 42.0);
  std::vector<double> lines(grid.LinesFor(kColumns));
  for (const auto& [first, count] : {std::pair{0, 9}, {9, 1}, {10, kRows - 10}}) {
    grid.GatherRows(samples.data() + first * kPitch, kColumns, first, count, kPitch, kMargin, lines.data());
  }
  grid.GatherColumns(lines.data(), kColumns, kMargin, nodes.data(), 16);
  for (int n = 0; n < 9; ++n) {
    for (int m = 0; m < 16; ++m) {
      double sum = 0.0;
      for (int r = 0; r < kRows && m < 8; ++r) {
        for (int c = 0; c < kColumns; ++c) {
          sum += Weight(r + kMargin, n, kStep) * Weight(c + kMargin, m, kStep) *
                 samples[static_cast<std::size_t>(r * kPitch + c)];
        }
      }
      EXPECT_NEAR(nodes[static_cast<std::size_t>(n * 16 + m)], sum, 1e-13) << n << ' ' << m;
    }
  }
}

TEST_P(SplineGrids, AddTheSumOfTheirSplines) {
  constexpr int kColumns = 21, kRows = 17, kPitch = 24, kStep = 4;
  const SplineGrid grid(ActiveChords(), kColumns, kRows, kStep);
  const std::vector<double> nodes = reference::Noise(grid.rows() * 16, 2), before = reference::Noise(kRows * kPitch, 3);
  std::vector<double> plane = before;
  const std::vector<double> lines = grid.Rows(nodes.data(), 16);
  constexpr int kTogether = 6;
  constexpr double kSurround = 0.7;
  double sum = 0.0, expectedSum = 0.0;
  for (int first = 0; first < kRows; first += kTogether) {
    sum +=
        grid.AddTo(lines, first, std::min(kTogether, kRows - first), plane.data() + first * kPitch, kPitch, kSurround);
  }
  for (int r = 0; r < kRows; ++r) {
    for (int c = 0; c < kColumns; ++c) {
      double expected = before[static_cast<std::size_t>(r * kPitch + c)];
      for (int n = 0; n < grid.rows(); ++n) {
        for (int m = 0; m < grid.columns(); ++m) {
          expected += Weight(r, n, kStep) * Weight(c, m, kStep) * nodes[static_cast<std::size_t>(n * 16 + m)];
        }
      }
      EXPECT_NEAR(plane[static_cast<std::size_t>(r * kPitch + c)], expected + kSurround, 1e-14) << r << ' ' << c;
      expectedSum += expected;
    }
  }
  EXPECT_NEAR(sum, expectedSum, 1e-12);
}

TEST(SplineGrid, HasTheSpectrumOfASpline) {
  for (const int k : {0, 3, 8, 13}) {
    EXPECT_NEAR(SplineGrid::Spectrum(k, 16), Spline(0) + 2 * Spline(1) * std::cos(2 * std::acos(-1.0) * k / 16), 1e-15);
  }
}

ORVANEL_ON_EVERY_KERNEL(SplineGrids);

}  // namespace
}  // namespace orvanel::physical
