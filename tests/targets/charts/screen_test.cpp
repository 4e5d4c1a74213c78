// Tests the resolution of screens against the tangent.
#include "targets/charts/screen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace orvanel::targets::charts {
namespace {

TEST(Screen, OneDegreeHasTwoTangentsOfItsHalf) {
  const double half = std::numbers::pi / 360.0;
  EXPECT_NEAR(PixelsPerDegree({Millimetres(0.25), Millimetres(4000.0)}), 2.0 * 4000.0 * std::tan(half) / 0.25, 1e-11);
  EXPECT_NEAR(PixelsPerDegree({Millimetres(0.078), Millimetres(333.0)}), 2.0 * 333.0 * std::tan(half) / 0.078, 1e-11);
}

}  // namespace
}  // namespace orvanel::targets::charts
