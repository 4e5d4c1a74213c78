// Tests gratings, checks, stars and points against integrals and areas in closed form.
#include "targets/charts/patterns.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <numeric>

#include "targets/charts/coverage.h"

namespace orvanel::targets::charts {
namespace {

constexpr double kPi = std::numbers::pi;

double Sum(const Plane& plane) { return std::accumulate(plane.begin(), plane.end(), 0.0); }

// The mean of a function over a pixel, by the rule of Gauss and Legendre with 5 x 5 nodes: exact to 1e-10 for the waves
// below.
template <class Function>
double Mean(Function f, int row, int column) {
  const double nodes[] = {-0.9061798459386640, -0.5384693101056831, 0.0, 0.5384693101056831, 0.9061798459386640};
  const double weights[] = {0.2369268850561891, 0.4786286704993665, 0.5688888888888889, 0.4786286704993665,
                            0.2369268850561891};
  double sum = 0.0;
  for (int i = 0; i < 5; ++i) {
    for (int j = 0; j < 5; ++j) {
      sum += 0.25 * weights[i] * weights[j] * f(column + 0.5 + 0.5 * nodes[j], row + 0.5 + 0.5 * nodes[i]);
    }
  }
  return sum;
}

TEST(Patterns, PixelsOfASineGratingAreMeansOfTheWave) {
  for (const double degrees : {0.0, 27.0, 90.0, 133.0, -60.0}) {
    const GratingWave wave = {0.21, degrees, 40.0, {10.3, 7.9}};
    const Plane plane = SineGrating(24, 18, wave);
    // Perpendicular to the bars, whose direction is (cos, -sin) with y downwards.
    const double across = std::sin(degrees * kPi / 180.0), down = std::cos(degrees * kPi / 180.0);
    for (int r = 0; r < 18; ++r) {
      for (int c = 0; c < 24; ++c) {
        const auto value = [&](double x, double y) {
          const double u = (x - wave.origin.x) * across + (y - wave.origin.y) * down;
          return std::sin(2.0 * kPi * 0.21 * u + 40.0 * kPi / 180.0);
        };
        EXPECT_NEAR(plane.At(r, c), Mean(value, r, c), 1e-8);
      }
    }
  }
}

TEST(Patterns, VerticalBarsRiseToTheRightAndHorizontalOnesDownwards) {
  const Plane vertical = SineGrating(8, 8, {0.1, 90.0, 0.0, {4.0, 4.0}});
  EXPECT_GT(vertical.At(2, 4), 0.1);
  EXPECT_EQ(vertical.At(2, 4), vertical.At(6, 4));
  EXPECT_EQ(vertical.At(2, 3), -vertical.At(2, 4));
  const Plane horizontal = SineGrating(8, 8, {0.1, 0.0, 0.0, {4.0, 4.0}});
  EXPECT_GT(horizontal.At(4, 2), 0.1);
  EXPECT_EQ(horizontal.At(4, 2), horizontal.At(4, 6));
  // Bars that rise to the right: the wave grows to the lower right.
  const Plane oblique = SineGrating(8, 8, {0.1, 45.0, 0.0, {4.0, 4.0}});
  EXPECT_GT(oblique.At(4, 4), 0.1);
  EXPECT_NEAR(oblique.At(3, 4), 0.0, 1e-15);
}

TEST(Patterns, AWaveOfOnePixelIsUniform) {
  for (const double value : SineGrating(5, 5, {1.0, 90.0, 30.0, {2.5, 2.5}})) EXPECT_NEAR(value, 0.0, 1e-15);
  for (const double value : SquareGrating(5, 5, {1.0, 90.0, 30.0, {2.5, 2.5}})) EXPECT_NEAR(value, 0.5, 1e-10);
}

TEST(Patterns, ASquareGratingOfVerticalBarsHasTheirShares) {
  // Period 4, bars from 1.25 to 3.25, from 5.25 to 7.25.
  const Plane plane = SquareGrating(8, 3, {0.25, 90.0, 0.0, {1.25, 0.7}});
  const double shares[] = {0.0, 0.75, 1.0, 0.25, 0.0, 0.75, 1.0, 0.25};
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 8; ++c) EXPECT_NEAR(plane.At(r, c), shares[c], 1e-12);
  }
}

TEST(Patterns, ASquareGratingIsPositiveWhereTheSineIs) {
  const GratingWave wave = {0.043, 118.0, 75.0, {30.3, 22.1}};
  const Plane square = SquareGrating(64, 48, wave), sine = SineGrating(64, 48, wave);
  int checked = 0;
  for (int r = 0; r < 48; ++r) {
    for (int c = 0; c < 64; ++c) {
      // Farther from a zero than the diagonal of a pixel, 0.043 x 0.71 turns.
      if (std::fabs(sine.At(r, c)) < std::sin(2.0 * kPi * 0.043 * 0.75)) continue;
      EXPECT_EQ(square.At(r, c), sine.At(r, c) > 0.0 ? 1.0 : 0.0);
      ++checked;
    }
  }
  EXPECT_GT(checked, 1000);
}

TEST(Patterns, TwoWavesInOppositePhaseCoverEveryPixelOnce) {
  for (const double frequency : {1e-7, 0.03, 0.5, 0.97}) {
    const Plane one = SquareGrating(40, 40, {frequency, 31.0, 20.0, {17.7, 21.1}});
    const Plane other = SquareGrating(40, 40, {frequency, 31.0, 200.0, {17.7, 21.1}});
    for (std::size_t i = 0; i < one.size(); ++i) EXPECT_NEAR(one[i] + other[i], 1.0, 2.0 * kCoverageError);
  }
}

TEST(Patterns, ChecksHaveTheirShares) {
  const Plane plane = Checkerboard(4, 4, 1.5, {2.0, 2.0});
  // Signs across: from 0.5 to 2 negative, from 2 to 3.5 positive.
  const double means[] = {0.0, -1.0, 1.0, 0.0};
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) EXPECT_NEAR(plane.At(r, c), 0.5 + 0.5 * means[r] * means[c], 1e-15);
  }
  // Checks of half a pixel and of much more than the plane.
  for (const double value : Checkerboard(3, 3, 0.5, {0.2, 0.7})) EXPECT_NEAR(value, 0.5, 1e-15);
  for (const double value : Checkerboard(3, 3, 1e9, {0.0, 0.0})) EXPECT_NEAR(value, 1.0, 1e-7);
}

TEST(Patterns, SectorsOfAStarHaveHalfOfItsArea) {
  for (const int cycles : {1, 2, 7, 20}) {
    const Shape star = SiemensStar({30.3, 31.1}, 53.0, cycles);
    EXPECT_NEAR(star.Area(), 0.5 * kPi * 26.5 * 26.5, 1e-9);
    Coverage coverage(64, 64);
    coverage.Add(star);
    EXPECT_NEAR(Sum(coverage.Take()), 0.5 * kPi * 26.5 * 26.5, 1e-8);
  }
}

TEST(Patterns, TheFirstSectorGoesAnticlockwiseFromTheRight) {
  Coverage coverage(64, 64);
  coverage.Add(SiemensStar({32.0, 32.0}, 60.0, 2));
  const Plane plane = coverage.Take();
  EXPECT_EQ(plane.At(20, 44), 1.0);
  EXPECT_EQ(plane.At(20, 20), 0.0);
  EXPECT_EQ(plane.At(44, 20), 1.0);
  EXPECT_EQ(plane.At(44, 44), 0.0);
}

TEST(Patterns, PointsAreDiscsOnASquareGrid) {
  const Shape points = Points({20.0, 20.0}, 3.0, 4, 9.0);
  EXPECT_NEAR(points.Area(), 16.0 * kPi * 2.25, 1e-11);
  Coverage coverage(40, 40);
  coverage.Add(points);
  const Plane plane = coverage.Take();
  // The centres are 6.5, 15.5, 24.5, 33.5.
  for (const int centre : {6, 15, 24, 33}) EXPECT_EQ(plane.At(centre, 33), 1.0);
  EXPECT_EQ(plane.At(11, 33), 0.0);
  EXPECT_NEAR(Points({0.5, 0.5}, 0.2, 1, 0.0).Area(), kPi * 0.01, 1e-15);
}

}  // namespace
}  // namespace orvanel::targets::charts
