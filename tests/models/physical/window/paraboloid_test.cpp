// Climbs of known hills, rings and ridges.
#include "models/physical/window/paraboloid.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orvanel::physical {
namespace {

constexpr double kNearest = 1e-5;

// Value and derivatives of a Gaussian of two widths about (1, -2).
Paraboloid Gaussian(double x, double y) {
  const double a = 0.5, b = 0.2, u = x - 1.0, v = y + 2.0, g = std::exp(-a * u * u - b * v * v);
  return {g,
          -2 * a * u * g,
          -2 * b * v * g,
          (4 * a * a * u * u - 2 * a) * g,
          4 * a * b * u * v * g,
          (4 * b * b * v * v - 2 * b) * g};
}

TEST(Paraboloid, StepGoesToThePeakOfAParabola) {
  // 5 - 2 (x - 1)^2 - 3 (y + 2)^2, at (0, 0).
  const Paraboloid at{5 - 2 - 12, 4, -12, -4, 0, -6};
  const Step step = StepFrom(at);
  EXPECT_TRUE(step.toPeak);
  EXPECT_NEAR(step.x, 1.0, 1e-12);
  EXPECT_NEAR(step.y, -2.0, 1e-12);
  EXPECT_NEAR(at.value + Gain(at, step), 5.0, 1e-12);
  EXPECT_NEAR(Length(Shortened(step, 0.5)), 0.5, 1e-12);
}

TEST(Paraboloid, ClimbEndsAtTheTop) {
  const Peak peak = Climb(Gaussian, 3.0, 0.5, 0.5, kNearest);
  EXPECT_NEAR(peak.x, 1.0, 1e-6);
  EXPECT_NEAR(peak.y, -2.0, 1e-6);
  EXPECT_NEAR(peak.value, 1.0, 1e-10);
  EXPECT_TRUE(peak.isolated);
}

TEST(Paraboloid, PlaceOnARingIsNotIsolated) {
  // -(r - 1)^2 as (1 - r^2)^2 / -4 near the ring r = 1.
  const auto ring = [](double x, double y) {
    const double d = 1.0 - x * x - y * y;
    return Paraboloid{-d * d / 4.0, x * d, y * d, d - 2.0 * x * x, -2.0 * x * y, d - 2.0 * y * y};
  };
  const Peak peak = Climb(ring, 0.4, 0.7, 0.2, kNearest);
  EXPECT_NEAR(std::hypot(peak.x, peak.y), 1.0, 1e-4);
  EXPECT_FALSE(peak.isolated);
}

}  // namespace
}  // namespace orvanel::physical
