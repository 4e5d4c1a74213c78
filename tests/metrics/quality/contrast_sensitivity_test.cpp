// The polynomial at known frequencies, and tables.
#include "metrics/quality/contrast_sensitivity.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orvanel::metrics {
namespace {

TEST(ContrastSensitivity, PeaksAt211) {
  const ContrastSensitivity usual;
  double highest = 0.0, at = 0.0;
  for (double f = 0.0; f <= 60.0; f += 0.001) {
    if (usual.At(f) > highest) {
      highest = usual.At(f);
      at = f;
    }
  }
  EXPECT_NEAR(highest, 211.0, 0.5);
  EXPECT_NEAR(at, 8.66, 0.01);
}

TEST(ContrastSensitivity, IsThePolynomialInLog10) {
  const ContrastSensitivity usual;
  EXPECT_NEAR(usual.At(0.0), std::pow(10.0, 1.8636), 1e-10);
  const double f = 20.0;
  const double log10 = 2.8876e-8 * std::pow(f, 5) - 5.2957e-6 * std::pow(f, 4) + 3.5818e-4 * std::pow(f, 3) -
                       1.1241e-2 * f * f + 0.12704 * f + 1.8636;
  EXPECT_NEAR(usual.At(f), std::pow(10.0, log10), 1e-9);
}

TEST(ContrastSensitivity, EndsAt60) {
  const ContrastSensitivity usual;
  EXPECT_GT(usual.At(60.0), 1.0);
  EXPECT_EQ(usual.At(60.001), 0.0);
  EXPECT_NEAR(usual.Continued(60.001), usual.At(60.0), 1e-3);
}

TEST(ContrastSensitivity, HasTheSlopeOfItsDifferences) {
  const ContrastSensitivity usual;
  EXPECT_NEAR(usual.SlopeAtZero(), (usual.At(1e-6) - usual.At(0.0)) / 1e-6, 1e-3);
}

TEST(ContrastSensitivity, OfATableIsLinearInBetweenAndConstantBelow) {
  int wrong = -1;
  const auto table = ContrastSensitivity::Of({{2.0, 10.0}, {6.0, 30.0}, {10.0, 5.0}}, wrong);
  ASSERT_TRUE(table);
  EXPECT_EQ(table->At(0.0), 10.0);
  EXPECT_EQ(table->At(3.0), 15.0);
  EXPECT_EQ(table->At(8.0), 17.5);
  EXPECT_EQ(table->At(10.0), 5.0);
  EXPECT_EQ(table->At(10.1), 0.0);
  EXPECT_EQ(table->Continued(12.0), 5.0);
  EXPECT_EQ(table->end(), 10.0);
  EXPECT_EQ(table->SlopeAtZero(), 0.0);
  EXPECT_FALSE(table->isDefault());
}

TEST(ContrastSensitivity, RefusesATableAtItsWrongPoint) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  int wrong = -1;
  EXPECT_FALSE(ContrastSensitivity::Of({{1.0, 1.0}, {1.0, 2.0}}, wrong));
  EXPECT_EQ(wrong, 1);
  EXPECT_FALSE(ContrastSensitivity::Of({{0.0, 1.0}, {2.0, 2.0}, {4.0, nan}}, wrong));
  EXPECT_EQ(wrong, 2);
  EXPECT_FALSE(ContrastSensitivity::Of({{-1.0, 1.0}, {2.0, 2.0}}, wrong));
  EXPECT_EQ(wrong, 0);
  EXPECT_FALSE(ContrastSensitivity::Of({{0.0, 1.0}}, wrong));
  EXPECT_EQ(wrong, 1);
}

}  // namespace
}  // namespace orvanel::metrics
