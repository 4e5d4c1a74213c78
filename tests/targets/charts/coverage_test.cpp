// Tests the covered area of each pixel against closed forms, and its sum against the area of the shape.
#include "targets/charts/coverage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <vector>

#include "targets/charts/letters.h"

namespace orvanel::targets::charts {
namespace {

Plane Drawn(const Shape& shape, int columns, int rows) {
  Coverage coverage(columns, rows);
  coverage.Add(shape);
  return coverage.Take();
}

double Sum(const Plane& plane) { return std::accumulate(plane.begin(), plane.end(), 0.0); }

// The part of a polygon where side * (coordinate - at) >= 0. Source: Sutherland and Hodgman (1974).
std::vector<Point> HalfPlane(const std::vector<Point>& polygon, double Point::*coordinate, double at, double side) {
  std::vector<Point> kept;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const Point a = polygon[i], b = polygon[(i + 1) % polygon.size()];
    const double da = side * (a.*coordinate - at), db = side * (b.*coordinate - at);
    if (da >= 0.0) kept.push_back(a);
    if ((da < 0.0) != (db < 0.0)) kept.push_back(a + (da / (da - db)) * (b - a));
  }
  return kept;
}

double AreaInPixel(std::vector<Point> polygon, int row, int column) {
  polygon = HalfPlane(polygon, &Point::x, column, 1.0);
  polygon = HalfPlane(polygon, &Point::x, column + 1.0, -1.0);
  polygon = HalfPlane(polygon, &Point::y, row, 1.0);
  polygon = HalfPlane(polygon, &Point::y, row + 1.0, -1.0);
  double twice = 0.0;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const Point a = polygon[i], b = polygon[(i + 1) % polygon.size()];
    twice += (a.x - column) * (b.y - row) - (b.x - column) * (a.y - row);
  }
  return 0.5 * twice;
}

// The area of the disc around the origin, left of x and above y. Integrated over columns of the disc: the whole of a
// column where the disc ends above y, and up to y in between.
long double QuadrantOfDisc(long double x, long double y, long double r) {
  const auto half = [r](long double t) {  // the integral of sqrt(r^2 - t^2) from -r to t
    t = std::clamp(t, -r, r);
    return 0.5L * (t * std::sqrt(r * r - t * t) + r * r * std::asin(t / r)) + r * r * std::acos(-1.0L) / 4.0L;
  };
  if (y <= -r || x <= -r) return 0.0L;
  if (y >= r) return 2.0L * half(x);
  const long double chord = std::sqrt(r * r - y * y);
  const long double inside = half(std::min(x, chord)) - half(-chord);
  const long double width = std::min(x, chord) + chord;
  if (y < 0.0L) return x <= -chord ? 0.0L : inside + y * width;
  const long double before = 2.0L * half(std::min(x, -chord)), behind = 2.0L * (half(std::max(x, chord)) - half(chord));
  return before + (x <= -chord ? 0.0L : inside + y * width) + behind;
}

long double DiscInPixel(Point centre, double radius, int row, int column) {
  const long double left = column - static_cast<long double>(centre.x), top = row - static_cast<long double>(centre.y);
  return QuadrantOfDisc(left + 1, top + 1, radius) - QuadrantOfDisc(left, top + 1, radius) -
         QuadrantOfDisc(left + 1, top, radius) + QuadrantOfDisc(left, top, radius);
}

TEST(Coverage, APixelOfARectangleIsTheProductOfItsOverlaps) {
  const Plane plane = Drawn(Polygon({{1.25, 0.5}, {4.75, 0.5}, {4.75, 2.125}, {1.25, 2.125}}), 6, 4);
  const double across[] = {0.0, 0.75, 1.0, 1.0, 0.75, 0.0}, down[] = {0.5, 1.0, 0.125, 0.0};
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 6; ++c) EXPECT_EQ(plane.At(r, c), across[c] * down[r]) << r << " " << c;
  }
}

TEST(Coverage, PixelsOfAPolygonAreItsPartsInThem) {
  // A star-like polygon with edges of all slopes.
  const std::vector<Point> corners = {{2.3, 1.7},   {13.9, 4.2},  {22.6, 0.4}, {17.8, 11.1},
                                      {21.2, 19.6}, {11.7, 14.3}, {1.1, 18.9}, {6.4, 9.3}};
  Outline outline(corners[0]);
  for (std::size_t i = 1; i < corners.size(); ++i) outline.LineTo(corners[i]);
  Shape shape;
  shape.Add(outline);
  const Plane plane = Drawn(shape, 24, 20);
  for (int r = 0; r < 20; ++r) {
    for (int c = 0; c < 24; ++c) EXPECT_NEAR(plane.At(r, c), AreaInPixel(corners, r, c), kCoverageError);
  }
}

TEST(Coverage, PixelsOfADiscAreItsPartsInThem) {
  for (const double radius : {0.3, 0.9, 3.37, 9.81}) {
    const Point centre = {11.31, 10.77};
    const Plane plane = Drawn(Disc(centre, radius), 24, 22);
    for (int r = 0; r < 22; ++r) {
      for (int c = 0; c < 24; ++c) {
        EXPECT_NEAR(plane.At(r, c), static_cast<double>(DiscInPixel(centre, radius, r, c)), kCoverageError);
      }
    }
  }
}

TEST(Coverage, PixelsOfALargeDiscAreItsPartsInThem) {
  const Point centre = {2047.3, 2048.9};
  constexpr double kRadius = 2011.7;
  const Plane plane = Drawn(Disc(centre, kRadius), 4096, 4096);
  EXPECT_NEAR(Sum(plane) / (std::acos(-1.0) * kRadius * kRadius), 1.0, 1e-13);
  // Long double has 1e-19 of the disc's 1e7.
  for (int r = 30; r < 4070; r += 101) {
    for (int c = 0; c < 4096; ++c) {
      const double value = plane.At(r, c);
      if (value == 0.0 || value == 1.0) continue;
      EXPECT_NEAR(value, static_cast<double>(DiscInPixel(centre, kRadius, r, c)), kCoverageError) << r << " " << c;
    }
  }
}

TEST(Coverage, SumsToTheAreaAtAnySamplingAndShift) {
  Shape (*const shapes[])() = {LandoltRing, TumblingE, LetterD, LetterH, LetterK, LetterN,
                               LetterO,     LetterR,   LetterS, LetterT, LetterV, LetterZ};
  // The sum may differ by the roundings of each pixel on the outline.
  double worst = 0.0;
  for (const double scale : {0.13, 0.77, 1.0, 3.3, 17.9}) {
    for (int i = 0; i < 12; ++i) {
      const Point at = {20.0 + 0.083 * i, 30.0 - 0.171 * i};
      const Shape shape = shapes[i]().Placed({at, scale, 7.5 * i * i});
      Coverage coverage(256, 256);
      coverage.Add(shape.Placed({{108.0, 97.0}, 1.0, 0.0}));
      const double area = shape.Area();
      worst = std::max(worst, std::fabs(Sum(coverage.Take()) / area - 1.0));
      EXPECT_NEAR(area, scale * scale * shapes[i]().Area(), 1e-10 * area);
    }
  }
  RecordProperty("largest_relative_error_of_the_area", std::to_string(worst));
  EXPECT_LT(worst, 1e-9);
}

TEST(Coverage, InsideIsExactlyOneAndOutsideExactlyZero) {
  const Plane plane = Drawn(LetterO().Placed({{3.1, 2.7}, 19.3, 0.0}), 104, 102);
  int inside = 0, outside = 0;
  for (int r = 0; r < 102; ++r) {
    for (int c = 0; c < 104; ++c) {
      const double x = c + 0.5 - (3.1 + 2.5 * 19.3), y = r + 0.5 - (2.7 + 2.5 * 19.3);
      const double radius = std::sqrt(x * x + y * y);
      const double toOutline = std::min(std::fabs(radius - 2.5 * 19.3), std::fabs(radius - 1.5 * 19.3));
      if (toOutline < 1.0) continue;  // pixels reach 0.71 from their centre
      const bool material = radius < 2.5 * 19.3 && radius > 1.5 * 19.3;
      EXPECT_EQ(plane.At(r, c), material ? 1.0 : 0.0);
      ++(material ? inside : outside);
    }
  }
  EXPECT_GT(inside, 3000);
  EXPECT_GT(outside, 3000);
}

TEST(Coverage, ShapesThatReachOutsideAreClipped) {
  const Shape shape = LetterS().Placed({{-7.3, -6.1}, 6.7, 20.0});
  const Plane whole = Drawn(shape.Placed({{40.0, 40.0}, 1.0, 0.0}), 100, 100);
  const Plane window = Drawn(shape, 17, 13);
  for (int r = 0; r < 13; ++r) {
    for (int c = 0; c < 17; ++c) EXPECT_NEAR(window.At(r, c), whole.At(r + 40, c + 40), kCoverageError);
  }
}

TEST(Coverage, ShapesAddUp) {
  const Shape left = Polygon({{0.0, 0.0}, {2.5, 0.0}, {1.5, 3.0}, {0.0, 3.0}});
  const Shape right = Polygon({{2.5, 0.0}, {4.0, 0.0}, {4.0, 3.0}, {1.5, 3.0}});
  Coverage coverage(4, 3);
  coverage.Add(left);
  coverage.Add(right);
  for (const double value : coverage.Take()) EXPECT_EQ(value, 1.0);
}

TEST(Coverage, HasTheSameBitsEverywhere) {
  const Plane plane = Drawn(LetterR().Placed({{10.3, 40.7}, 9.7, 13.0}), 90, 90);
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const double value : plane) hash = (hash ^ std::bit_cast<std::uint64_t>(value)) * 0x100000001b3U;
  EXPECT_EQ(hash, 0x7a79c8368918ea26U) << std::hex << hash;
}

}  // namespace
}  // namespace orvanel::targets::charts
