// Tests maxima at known places.
#include "models/classic/brent.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace orvanel {
namespace {

TEST(Brent, FindsTheTopOfAParabola) {
  const Maximum found = MaximiseOnInterval([](double x) { return -(x - 0.7) * (x - 0.7); }, -2.0, 5.0, 1e-9);
  EXPECT_NEAR(found.x, 0.7, 3e-9);
  EXPECT_NEAR(found.value, 0.0, 1e-16);
}

TEST(Brent, FindsTheTopOfWhatIsNoParabola) {
  // A double cannot tell the top of a cosine to better than the root of its precision.
  const Maximum cosine = MaximiseOnInterval([](double x) { return std::cos(x - 1.3); }, -1.0, 3.0, 1e-9);
  EXPECT_NEAR(cosine.x, 1.3, 3e-8);
  const Maximum tent = MaximiseOnInterval([](double x) { return -std::fabs(x - 0.31); }, 0.0, 1.0, 1e-10);
  EXPECT_NEAR(tent.x, 0.31, 3e-10);
}

TEST(Brent, EndsBesideABoundWhereTheFunctionGrowsTowardsIt) {
  EXPECT_NEAR(MaximiseOnInterval([](double x) { return x; }, 2.0, 4.0, 1e-6).x, 4.0, 3e-6);
  EXPECT_NEAR(MaximiseOnInterval([](double x) { return -x; }, 2.0, 4.0, 1e-6).x, 2.0, 3e-6);
}

TEST(Brent, StaysInsideTheIntervalAndTakesFewSteps) {
  std::vector<double> points;
  const auto f = [&](double x) {
    points.push_back(x);
    return std::exp(-x * x) + 0.1 * x;
  };
  MaximiseOnInterval(f, -3.0, 3.0, 1e-8);
  for (const double x : points) {
    EXPECT_GT(x, -3.0);
    EXPECT_LT(x, 3.0);
  }
  EXPECT_LT(points.size(), 30u);  // golden sections alone would take 42
}

TEST(Brent, EndsOnAFunctionThatIsConstantOrNotANumber) {
  EXPECT_EQ(MaximiseOnInterval([](double) { return 0.25; }, 0.0, 1.0, 1e-6).value, 0.25);
  MaximiseOnInterval([](double) { return std::nan(""); }, 0.0, 1.0, 1e-6);
}

}  // namespace
}  // namespace orvanel
