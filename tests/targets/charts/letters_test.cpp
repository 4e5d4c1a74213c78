// Tests stroke, gap, width, area and symmetry of each letter against its definition.
#include "targets/charts/letters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

#include "targets/charts/coverage.h"

namespace orvanel::targets::charts {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kRounding = 1e-13;

struct Letter {
  const char* name;
  Shape (*draw)();
};

constexpr Letter kLetters[] = {{"C", LandoltRing}, {"E", TumblingE}, {"D", LetterD}, {"H", LetterH},
                               {"K", LetterK},     {"N", LetterN},   {"O", LetterO}, {"R", LetterR},
                               {"S", LetterS},     {"T", LetterT},   {"V", LetterV}, {"Z", LetterZ}};

double Length(Point p) { return std::sqrt(p.x * p.x + p.y * p.y); }

Plane Drawn(const Shape& shape, double scale) {
  const int side = static_cast<int>(std::ceil(5.0 * scale));
  Coverage coverage(side, side);
  coverage.Add(shape.Placed({{}, scale, 0.0}));
  return coverage.Take();
}

// The largest difference of a drawing and its image under a symmetry. 5 strokes are a whole number of pixels.
double Asymmetry(const Shape& shape, const std::function<Point(Point)>& image) {
  const Plane plane = Drawn(shape, 8.6);
  double largest = 0.0;
  for (int r = 0; r < 43; ++r) {
    for (int c = 0; c < 43; ++c) {
      const Point p = image({1.0 * c, 1.0 * r});
      largest = std::max(largest, std::fabs(plane.At(r, c) - plane.At(static_cast<int>(p.y), static_cast<int>(p.x))));
    }
  }
  return largest;
}

TEST(Letters, AreAsWideAsHighAndFillTheSquare) {
  for (const Letter& letter : kLetters) {
    Point low = {1e9, 1e9}, high = {-1e9, -1e9};
    const Shape shape = letter.draw();
    for (const Edge& edge : shape.edges()) {
      for (const Edge& part : MonotoneParts(edge)) {
        low = {std::min(low.x, part.to.x), std::min(low.y, part.to.y)};
        high = {std::max(high.x, part.to.x), std::max(high.y, part.to.y)};
      }
    }
    // The ring of the C ends at its gap, at sqrt(2.5^2 - 0.5^2) from the middle.
    const bool open = letter.draw == LandoltRing;
    EXPECT_NEAR(low.x, 0.0, kRounding) << letter.name;
    EXPECT_NEAR(low.y, 0.0, kRounding) << letter.name;
    EXPECT_NEAR(high.x, open ? 2.5 + std::sqrt(6.0) : 5.0, kRounding) << letter.name;
    EXPECT_NEAR(high.y, 5.0, kRounding) << letter.name;
  }
}

TEST(Letters, AreasAreThoseOfTheirDefinitions) {
  EXPECT_NEAR(TumblingE().Area(), 5.0 + 3.0 * 4.0, kRounding);
  EXPECT_NEAR(LetterH().Area(), 2.0 * 5.0 + 3.0, kRounding);
  EXPECT_NEAR(LetterT().Area(), 5.0 + 4.0, kRounding);
  EXPECT_NEAR(LetterO().Area(), kPi * (2.5 * 2.5 - 1.5 * 1.5), kRounding);
  // Straight bars, and a half ring.
  EXPECT_NEAR(LetterD().Area(), 5.0 + 2.0 * 1.5 + 0.5 * kPi * (2.5 * 2.5 - 1.5 * 1.5), kRounding);
  // Three bars of length 2, two half rings and two quarter rings.
  EXPECT_NEAR(LetterS().Area(), 3.0 * 2.0 + 1.5 * kPi * (1.5 * 1.5 - 0.5 * 0.5), kRounding);
  // A stem, two bars of length 2.5, a half ring, and a leg of height 2 whose ends are 5/4 wide.
  EXPECT_NEAR(LetterR().Area(), 5.0 + 2.0 * 2.5 + 0.5 * kPi * (1.5 * 1.5 - 0.5 * 0.5) + 2.0 * 1.25, kRounding);
  // A stem; an arm of width 1 with sides of 4 sqrt(2) and 2 less; a leg of width 1 with sides of 2.5 sqrt(2) and 1
  // less.
  const double arm = 4.0 * std::sqrt(2.0), leg = 2.5 * std::sqrt(2.0);
  EXPECT_NEAR(LetterK().Area(), 5.0 + 0.5 * (arm + arm - 2.0) + 0.5 * (leg + leg - 1.0), kRounding);
  // Two stems, and a diagonal that is 5/3 high over a width of 3, less its two corners outside of the square.
  EXPECT_NEAR(LetterN().Area(), 2.0 * 5.0 + 3.0 * 5.0 / 3.0 - 2.0 * 0.5 * 0.25 / 3.0, kRounding);
  EXPECT_NEAR(LetterZ().Area(), LetterN().Area(), kRounding);
}

TEST(Letters, TheRingIsACircularRingLessItsGap) {
  // The gap between the circles, of height 1: the integral of sqrt(r^2 - y^2) from -1/2 to 1/2 for both.
  const auto strip = [](double r) { return 0.5 * std::sqrt(r * r - 0.25) + r * r * std::asin(0.5 / r); };
  EXPECT_NEAR(LandoltRing().Area(), 4.0 * kPi - (strip(2.5) - strip(1.5)), kRounding);
  const Shape ring = LandoltRing();
  ASSERT_EQ(ring.edges().size(), 4U);
  EXPECT_EQ(ring.edges()[0].turn, Turn::kClockwise);
  EXPECT_NEAR(ring.edges()[0].radius, 2.5, kRounding);
  EXPECT_NEAR(ring.edges()[2].radius, 1.5, kRounding);
  EXPECT_EQ(ring.edges()[1].from.y, 2.0);  // the upper side of the gap
  EXPECT_EQ(ring.edges()[1].to.y, 2.0);
  EXPECT_EQ(ring.edges()[3].from.y, 3.0);
  EXPECT_EQ(ring.edges()[3].to.y, 3.0);
  EXPECT_GT(ring.edges()[1].to.x, 2.5);
}

TEST(Letters, TheVIsTwoArmsWithOneFoot) {
  const Shape v = LetterV();
  const double width = v.edges()[0].to.x;
  const double slope = (2.5 - 0.5 * width) / 5.0;
  EXPECT_NEAR(width, std::sqrt(1.0 + slope * slope), kRounding);  // the stroke is 1
  // The arms overlap above the foot in a triangle, whose sides have the slope of the arms.
  EXPECT_NEAR(v.Area(), 2.0 * 5.0 * width - 0.5 * width * (0.5 * width / slope), kRounding);
}

TEST(Letters, SlopingSidesHaveAParallelSideAtADistanceOfOneStroke) {
  for (const Letter& letter : kLetters) {
    const Shape shape = letter.draw();
    for (const Edge& edge : shape.edges()) {
      const Point along = edge.to - edge.from;
      if (edge.turn != Turn::kStraight || std::fabs(along.x) < 0.1 || std::fabs(along.y) < 0.1) continue;
      const double length = Length(along);
      // Material is to the right of an edge in its direction, which is at (-y, x) with y downwards.
      const Point inwards = {-along.y / length, along.x / length};
      const bool found = std::any_of(shape.edges().begin(), shape.edges().end(), [&](const Edge& other) {
        const Point back = other.to - other.from, offset = other.from - edge.from;
        const double cross = along.x * back.y - along.y * back.x;
        return other.turn == Turn::kStraight && std::fabs(cross) < kRounding * length &&
               std::fabs(offset.x * inwards.x + offset.y * inwards.y - 1.0) < kRounding;
      });
      EXPECT_TRUE(found) << letter.name << " " << edge.from.x << " " << edge.from.y;
    }
  }
}

TEST(Letters, ArcsHaveAConcentricArcAtADistanceOfOneStroke) {
  int arcs = 0;
  for (const Letter& letter : kLetters) {
    const Shape shape = letter.draw();
    for (const Edge& edge : shape.edges()) {
      if (edge.turn == Turn::kStraight) continue;
      ++arcs;
      const double other = edge.turn == Turn::kClockwise ? edge.radius - 1.0 : edge.radius + 1.0;
      EXPECT_TRUE(std::any_of(shape.edges().begin(), shape.edges().end(), [&](const Edge& e) {
        return e.turn != Turn::kStraight && e.turn != edge.turn && e.centre == edge.centre &&
               std::fabs(e.radius - other) < kRounding;
      })) << letter.name;
    }
  }
  EXPECT_EQ(arcs, 2 + 2 + 4 + 2 + 8);  // C, D, O, R, S
}

TEST(Letters, StraightStrokesFillTheirCellsOfTheGrid) {
  const char* const e[] = {"#####", "#....", "#####", "#....", "#####"};
  const char* const h[] = {"#...#", "#...#", "#####", "#...#", "#...#"};
  const char* const t[] = {"#####", "..#..", "..#..", "..#..", "..#.."};
  for (const auto& [shape, cells] : {std::pair{TumblingE(), e}, std::pair{LetterH(), h}, std::pair{LetterT(), t}}) {
    const Plane plane = Drawn(shape, 1.0);
    for (int r = 0; r < 5; ++r) {
      for (int c = 0; c < 5; ++c) EXPECT_EQ(plane.At(r, c), cells[r][c] == '#' ? 1.0 : 0.0);
    }
  }
}

TEST(Letters, HaveTheSymmetryOfTheirDesign) {
  const auto leftRight = [](Point p) { return Point{42.0 - p.x, p.y}; };
  const auto upDown = [](Point p) { return Point{p.x, 42.0 - p.y}; };
  const auto halfTurn = [](Point p) { return Point{42.0 - p.x, 42.0 - p.y}; };
  for (Shape (*const draw)() : {LetterH, LetterO, LetterT, LetterV}) {
    EXPECT_LT(Asymmetry(draw(), leftRight), kCoverageError);
  }
  for (Shape (*const draw)() : {LandoltRing, TumblingE, LetterD, LetterH, LetterO}) {
    EXPECT_LT(Asymmetry(draw(), upDown), kCoverageError);
  }
  for (Shape (*const draw)() : {LetterN, LetterS, LetterZ}) {
    EXPECT_LT(Asymmetry(draw(), halfTurn), kCoverageError);
    EXPECT_GT(Asymmetry(draw(), leftRight), 0.9);
  }
  EXPECT_GT(Asymmetry(LetterR(), upDown), 0.9);
}

TEST(Letters, TheirDiagonalsJoinTheRightCorners) {
  // One stroke from each corner along the diagonal of the square is material; beside the other diagonal it is empty.
  const Plane n = Drawn(LetterN(), 1.0), z = Drawn(LetterZ(), 1.0);
  EXPECT_GT(n.At(1, 1), 0.5);
  EXPECT_GT(n.At(3, 3), 0.5);
  EXPECT_EQ(n.At(1, 3), 0.0);
  EXPECT_EQ(n.At(3, 1), 0.0);
  EXPECT_GT(z.At(1, 3), 0.5);
  EXPECT_GT(z.At(3, 1), 0.5);
  EXPECT_EQ(z.At(1, 1), 0.0);
  EXPECT_EQ(z.At(3, 3), 0.0);
  // The S has its open ends at the upper right and the lower left.
  const Plane s = Drawn(LetterS(), 4.0);
  EXPECT_EQ(s.At(7, 2), 1.0);
  EXPECT_EQ(s.At(7, 17), 0.0);
  EXPECT_EQ(s.At(12, 2), 0.0);
  EXPECT_EQ(s.At(12, 17), 1.0);
}

}  // namespace
}  // namespace orvanel::targets::charts
