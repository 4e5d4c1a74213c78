// Areas of discs and strips under smooth functions.
#include "metrics/quality/area_above.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <functional>
#include <numbers>
#include <vector>

namespace orvanel::metrics {
namespace {

double Area(double level, int rows, int columns, const std::function<double(double x, double y)>& of) {
  std::vector<double> samples;
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < columns; ++c) samples.push_back(of(c, r));
  }
  return AreaAbove(level, samples.data(), rows, columns);
}

TEST(AreaAbove, OfAGaussianIsThatOfADisc) {
  const double sigma = 5.0;
  const auto hill = [&](double x, double y) {
    return std::exp(-((x - 20.3) * (x - 20.3) + (y - 18.8) * (y - 18.8)) / (2 * sigma * sigma));
  };
  const double exact = std::numbers::pi * 2.0 * std::numbers::ln2 * sigma * sigma;
  EXPECT_NEAR(Area(0.5, 40, 42, hill), exact, 1e-3 * exact);
}

TEST(AreaAbove, CountsIslands) {
  const auto hills = [](double x, double y) {
    const auto hill = [&](double a, double b) { return std::exp(-((x - a) * (x - a) + (y - b) * (y - b)) / 18.0); };
    return hill(15.2, 20.0) + hill(55.7, 31.1);
  };
  const double exact = 2.0 * std::numbers::pi * 18.0 * std::numbers::ln2;
  EXPECT_NEAR(Area(0.5, 50, 71, hills), exact, 1e-3 * exact);
}

TEST(AreaAbove, LeavesOutTheRim) {
  EXPECT_EQ(Area(0.5, 20, 30, [](double, double) { return 1.0; }), 13.0 * 23.0);
  EXPECT_EQ(Area(0.5, 20, 30, [](double, double) { return 0.0; }), 0.0);
}

}  // namespace
}  // namespace orvanel::metrics
