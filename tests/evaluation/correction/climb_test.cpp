// Climbs on functions whose maxima are known.
#include "evaluation/correction/climb.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orvanel::evaluation {
namespace {

constexpr ClimbLimits kLimits{0.5, 1e-3, 200};
constexpr SearchPoint kTop = {0.31, -0.62, 1.17};

// A hill that is ten times as steep along one diagonal as across it.
double Hill(const SearchPoint& p) {
  const double x = p[0] - kTop[0], y = p[1] - kTop[1], z = p[2] - kTop[2];
  return 2.0 - 10.0 * (x + y) * (x + y) - (x - y) * (x - y) - 3.0 * z * z - x * z;
}
SearchPoint SlopeOfHill(const SearchPoint& p) {
  const double x = p[0] - kTop[0], y = p[1] - kTop[1], z = p[2] - kTop[2];
  return {-20.0 * (x + y) - 2.0 * (x - y) - z, -20.0 * (x + y) + 2.0 * (x - y), -6.0 * z - x};
}

TEST(Climb, FindsTheTopOfAQuadratic) {
  KnownFunction function([](const SearchPoint& p) { return ValueAndSlope{Hill(p), {}}; }, 3);
  const Climb climb = ClimbFrom(function, {0.0, 0.0, 0.0}, kLimits);
  EXPECT_TRUE(climb.converged);
  EXPECT_LT(Distance(climb.top.point, kTop), kLimits.tolerance);
  EXPECT_LT(function.evaluations(), 60);
}

TEST(Climb, NeedsFewerValuesWithSlopes) {
  KnownFunction without([](const SearchPoint& p) { return ValueAndSlope{Hill(p), {}}; }, 3);
  KnownFunction with([](const SearchPoint& p) { return ValueAndSlope{Hill(p), SlopeOfHill(p)}; }, 3);
  ClimbFrom(without, {0.0, 0.0, 0.0}, kLimits);
  const Climb climb = ClimbFrom(with, {0.0, 0.0, 0.0}, kLimits);
  EXPECT_LT(Distance(climb.top.point, kTop), kLimits.tolerance);
  EXPECT_LT(2 * with.evaluations(), without.evaluations() + 10);
}

TEST(Climb, FindsTheTopOfASmoothHillFromItsFlatFoot) {
  const auto bell = [](const SearchPoint& p) {
    const double d = Distance(p, kTop);
    return ValueAndSlope{1.0 / (1.0 + 20.0 * d * d), {}};
  };
  KnownFunction function(bell, 3);
  EXPECT_LT(Distance(ClimbFrom(function, {1.5, 0.8, -0.4}, kLimits).top.point, kTop), 10.0 * kLimits.tolerance);
}

TEST(Climb, ComesCloseToATopWithCorners) {
  const auto pyramid = [](const SearchPoint& p) {
    return ValueAndSlope{-std::fabs(p[0] - kTop[0]) - std::fabs(p[1] - kTop[1]) - std::fabs(p[2] - kTop[2]), {}};
  };
  KnownFunction function(pyramid, 3);
  EXPECT_LT(Distance(ClimbFrom(function, {0.0, 0.0, 0.0}, kLimits).top.point, kTop), 0.1);
}

TEST(Climb, OfOneVariableKeepsTheOthers) {
  KnownFunction function([](const SearchPoint& p) { return ValueAndSlope{Hill(p), {}}; }, 1);
  const Climb climb = ClimbFrom(function, {0.0, -0.5, 1.0}, kLimits);
  EXPECT_EQ(climb.top.point[1], -0.5);
  EXPECT_EQ(climb.top.point[2], 1.0);
  // The slope along x is 0 where 22 x + 18 y + z = 0.
  const double top = kTop[0] - (18.0 * (-0.5 - kTop[1]) + (1.0 - kTop[2])) / 22.0;
  EXPECT_NEAR(climb.top.point[0], top, kLimits.tolerance);
}

TEST(Climb, SaysWhenItsEvaluationsAreSpent) {
  KnownFunction function([](const SearchPoint& p) { return ValueAndSlope{Hill(p), {}}; }, 3);
  const Climb climb = ClimbFrom(function, {0.0, 0.0, 0.0}, {0.5, 1e-3, 12});
  EXPECT_FALSE(climb.converged);
  EXPECT_EQ(function.evaluations(), 12);
}

TEST(Climb, GoesRoundPlacesWithoutAValue) {
  const auto half = [](const SearchPoint& p) {
    return ValueAndSlope{p[0] < 0.25 ? std::numeric_limits<double>::quiet_NaN() : Hill(p), {}};
  };
  KnownFunction function(half, 3);
  EXPECT_LT(Distance(ClimbFrom(function, {0.3, 0.0, 1.0}, kLimits).top.point, kTop), 0.05);
  KnownFunction nowhere(
      [](const SearchPoint&) {
        return ValueAndSlope{std::numeric_limits<double>::quiet_NaN(), {}};
      },
      3);
  EXPECT_FALSE(ClimbFrom(nowhere, {}, kLimits).converged);
  EXPECT_EQ(nowhere.evaluations(), 1);
}

TEST(KnownFunction, EvaluatesEqualPointsOnce) {
  int calls = 0;
  KnownFunction function([&](const SearchPoint& p) { return ValueAndSlope{Hill(p) + 0.0 * ++calls, {}}; }, 3);
  function.At({1.0, 2.0, 3.0});
  EXPECT_EQ(function.At({1.0, 2.0, 3.0}), Hill({1.0, 2.0, 3.0}));
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace orvanel::evaluation
