// Lenses of a trial case against all lenses of it.
#include "evaluation/correction/lens_grid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace orvanel::evaluation {
namespace {

double Apart(const PowerVector& a, const PowerVector& b) {
  const PowerVector d = a - b;
  return std::sqrt(d.m.value() * d.m.value() + d.j0.value() * d.j0.value() + d.j45.value() * d.j45.value());
}

TEST(LensGrid, ListsTheClosestOfAllLensesInOrder) {
  const LensGrid grid{Dioptres(0.5), Degrees(10.0), false};
  for (const Refraction wanted : {Refraction{Dioptres(-1.37), Dioptres(-0.81), Degrees(33.0)},
                                  Refraction{Dioptres(2.1), Dioptres(-0.07), Degrees(171.0)},
                                  Refraction{Dioptres(0.2), Dioptres(-4.1), Degrees(2.0)}}) {
    const PowerVector target = ToPowerVector(wanted);
    std::vector<double> all;
    for (int s = -20; s <= 20; ++s) {
      for (int c = -20; c <= 0; ++c) {
        for (int a = c == 0 ? 18 : 1; a <= 18; ++a) {
          all.push_back(Apart(ToPowerVector({Dioptres(0.5 * s), Dioptres(0.5 * c), Degrees(10.0 * a)}), target));
        }
      }
    }
    std::sort(all.begin(), all.end());
    const std::vector<Refraction> lenses = LensesNear(grid, target, 12);
    ASSERT_EQ(lenses.size(), 12U);
    for (std::size_t i = 0; i < lenses.size(); ++i) {
      EXPECT_NEAR(Apart(ToPowerVector(lenses[i]), target), all[i], 1e-12) << i;
    }
  }
}

TEST(LensGrid, HasAxesFromOneStepTo180AndNoneWithoutACylinder) {
  for (const Refraction& lens : LensesNear({}, {Dioptres(0.1), Dioptres(0.03), Dioptres(-0.02)}, 200)) {
    EXPECT_GE(lens.axis, Degrees(5.0));
    EXPECT_LE(lens.axis, Degrees(180.0));
    EXPECT_LE(lens.cylinder, Dioptres(0.0));
    if (lens.cylinder == Dioptres(0.0)) {
      EXPECT_EQ(lens.axis, Degrees(180.0));
    }
  }
}

TEST(LensGrid, HasStepsOfTheAxisThatDivideAHalfTurn) {
  for (const double step : {1.0, 2.5, 5.0, 45.0}) EXPECT_TRUE(DividesHalfTurn(Degrees(step))) << step;
  for (const double step : {1.1, 7.0, 40.0}) EXPECT_FALSE(DividesHalfTurn(Degrees(step))) << step;
}

TEST(LensGrid, OfSpheresHasNoCylinders) {
  const LensGrid grid{Dioptres(0.25), Degrees(5.0), true};
  const std::vector<Refraction> lenses = LensesNear(grid, {Dioptres(-0.6), Dioptres(1.0), Dioptres(0.5)}, 3);
  ASSERT_EQ(lenses.size(), 3U);
  EXPECT_EQ(lenses[0].sphere, Dioptres(-0.5));
  EXPECT_EQ(lenses[1].sphere, Dioptres(-0.75));
  EXPECT_EQ(lenses[2].sphere, Dioptres(-0.25));
  for (const Refraction& lens : lenses) EXPECT_EQ(lens.cylinder, Dioptres(0.0));
}

}  // namespace
}  // namespace orvanel::evaluation
