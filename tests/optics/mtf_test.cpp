// Tests the sections of an MTF, and the MTF of a perfect pupil.
#include "optics/mtf.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numeric>
#include <vector>

#include "base/elementary.h"

namespace orvanel {
namespace {

TEST(Sections, GoRightAndDownFromTheCentre) {
  std::vector<double> mtf(36);
  std::iota(mtf.begin(), mtf.end(), 0.0);
  std::array<double, 3> row{}, column{};
  CutSections({mtf.data(), 6}, 3, row.data(), column.data());
  EXPECT_EQ(row, (std::array<double, 3>{21.0, 22.0, 23.0}));
  EXPECT_EQ(column, (std::array<double, 3>{21.0, 27.0, 33.0}));
}

TEST(DiffractionLimit, IsIndependentOfTheHalfWidthToRounding) {
  std::array<double, 128> narrow{}, wide{};
  DiffractionLimit(0.0123, 129, 128, narrow.data());
  DiffractionLimit(4.567, 129, 128, wide.data());
  for (std::size_t i = 0; i < 128; ++i) EXPECT_NEAR(narrow[i], wide[i], 1e-14);
}

TEST(DiffractionLimit, IsEvaluatedInItsOrderToTheBit) {
  const double h = 0.0731928473;
  std::array<double, 128> limit{};
  DiffractionLimit(h, 129, 128, limit.data());
  for (int i = 0; i < 128; ++i) {
    const double x = (2.0 * h / 128.0) * i * (1.0 / (2.0 * h));
    EXPECT_EQ(limit[static_cast<std::size_t>(i)], (ArcCosine(x) - x * std::sqrt(1.0 - x * x)) * 0.636619772367582);
  }
}

}  // namespace
}  // namespace orvanel
