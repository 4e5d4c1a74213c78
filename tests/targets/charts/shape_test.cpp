// Tests areas of shapes against closed forms, arcs in parts, and placements.
#include "targets/charts/shape.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace orvanel::targets::charts {
namespace {

constexpr double kPi = std::numbers::pi;
// A dozen roundings of numbers below 100.
constexpr double kRounding = 2e-13;

TEST(Shape, AreaOfAPolygonIsThatOfItsTriangles) {
  EXPECT_DOUBLE_EQ(Polygon({{1.25, 2.5}, {7.75, 3.25}, {4.5, 9.0}}).Area(),
                   0.5 * ((7.75 - 1.25) * (9.0 - 2.5) - (4.5 - 1.25) * (3.25 - 2.5)));
  EXPECT_DOUBLE_EQ(Polygon({{1.25, 2.5}, {4.5, 9.0}, {7.75, 3.25}}).Area(),
                   -0.5 * ((7.75 - 1.25) * (9.0 - 2.5) - (4.5 - 1.25) * (3.25 - 2.5)));
}

TEST(Shape, AreasOfDiscAndRingAreThoseOfCircles) {
  EXPECT_NEAR(Disc({3.5, -2.25}, 2.75).Area(), kPi * 2.75 * 2.75, kRounding);
  EXPECT_NEAR(Ring({3.5, -2.25}, 2.75, 1.125).Area(), kPi * (2.75 * 2.75 - 1.125 * 1.125), kRounding);
}

TEST(Shape, AnArcOfAnyLengthEnclosesItsSegment) {
  constexpr double kRadius = 1.75;
  for (int degrees = 5; degrees < 360; degrees += 5) {
    const double angle = degrees * kPi / 180.0, start = 0.3;
    const Point centre = {0.5, 0.25};
    const Point from = centre + Point{kRadius * std::cos(start), kRadius * std::sin(start)};
    const Point to = centre + Point{kRadius * std::cos(start + angle), kRadius * std::sin(start + angle)};
    const double segment = 0.5 * kRadius * kRadius * (angle - std::sin(angle));
    Shape clockwise, anticlockwise;
    clockwise.Add(Outline(from).ArcTo(to, centre, Turn::kClockwise));
    anticlockwise.Add(Outline(to).ArcTo(from, centre, Turn::kAnticlockwise));
    EXPECT_NEAR(clockwise.Area(), segment, kRounding) << degrees;
    EXPECT_NEAR(anticlockwise.Area(), -segment, kRounding) << degrees;
  }
}

TEST(Shape, PartsOfAnArcEndAtItsExtremePoints) {
  // From 30 degrees through right, down, left and up, to 10 degrees.
  const auto at = [](double degrees) {
    return Point{2.0 * std::cos(degrees * kPi / 180.0), 2.0 * std::sin(degrees * kPi / 180.0)};
  };
  const std::vector<Edge> parts = MonotoneParts({at(30.0), at(10.0), Turn::kClockwise, {}, 2.0});
  ASSERT_EQ(parts.size(), 5U);
  EXPECT_EQ(parts[0].to, (Point{0.0, 2.0}));
  EXPECT_EQ(parts[1].to, (Point{-2.0, 0.0}));
  EXPECT_EQ(parts[2].to, (Point{0.0, -2.0}));
  EXPECT_EQ(parts[3].to, (Point{2.0, 0.0}));
  EXPECT_EQ(parts[4].from, (Point{2.0, 0.0}));
  const std::vector<Edge> back = MonotoneParts({at(10.0), at(30.0), Turn::kAnticlockwise, {}, 2.0});
  ASSERT_EQ(back.size(), 5U);
  EXPECT_EQ(back[0].to, (Point{2.0, 0.0}));
  EXPECT_EQ(back[1].to, (Point{0.0, -2.0}));
  // A quarter between extreme points stays one part, also where its ends are rounded.
  EXPECT_EQ(MonotoneParts({{2.0, 1e-16}, {-1e-16, 2.0}, Turn::kClockwise, {}, 2.0}).size(), 1U);
}

TEST(Shape, SegmentsHaveTheirAreaForLongAndShortChords) {
  // In long double, where the difference keeps its digits: h^3 is the smallest share of it.
  for (const double half : {1e-3, 0.01, 0.1, 0.1249, 0.1251, 0.3, 0.9, 1.0}) {
    const long double h = half, exact = std::asin(h) - h * std::sqrt(1.0L - h * h);
    EXPECT_NEAR(SegmentArea(2.0 * half * 3.0, 3.0) / static_cast<double>(9.0L * exact), 1.0, 1e-12) << half;
  }
}

TEST(Shape, APlacementTurnsAnticlockwiseThenScalesThenMoves) {
  const Shape line = Polygon({{1.0, 0.0}, {2.0, 0.0}, {2.0, 0.5}});
  const Shape up = line.Placed({{10.0, 20.0}, 3.0, 90.0});
  EXPECT_EQ(up.edges()[0].from, (Point{10.0, 17.0}));
  EXPECT_EQ(up.edges()[0].to, (Point{10.0, 14.0}));
  EXPECT_EQ(up.edges()[1].to, (Point{11.5, 14.0}));
  const Shape left = line.Placed({{}, 1.0, -180.0});
  EXPECT_EQ(left.edges()[0].from, (Point{-1.0, 0.0}));
  const Shape diagonal = line.Placed({{}, 1.0, 45.0});
  EXPECT_DOUBLE_EQ(diagonal.edges()[0].from.x, std::sqrt(0.5));
  EXPECT_DOUBLE_EQ(diagonal.edges()[0].from.y, -std::sqrt(0.5));
}

TEST(Shape, PlacementsScaleTheAreaBySquares) {
  const Shape ring = Ring({0.25, 0.5}, 2.5, 1.5);
  EXPECT_NEAR(ring.Placed({{7.0, -3.0}, 1.75, 33.0}).Area(), 1.75 * 1.75 * 4.0 * kPi, kRounding);
}

}  // namespace
}  // namespace orvanel::targets::charts
