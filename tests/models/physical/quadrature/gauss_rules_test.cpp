// Gauss rules against the integrals of powers.
#include "models/physical/quadrature/gauss_rules.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace orvanel::physical {
namespace {

// int x^(2k) over the whole rule.
double EvenPower(const GaussRule& rule, int k) {
  double sum = 0.0;
  for (std::size_t i = 0; i < rule.nodes.size(); ++i) sum += 2.0 * rule.weights[i] * std::pow(rule.nodes[i], 2 * k);
  return sum;
}

class GaussRules : public testing::TestWithParam<int> {};

TEST_P(GaussRules, LegendreIntegratesEveryEvenPowerBelowTwiceItsCount) {
  const GaussRule rule = GaussLegendre(GetParam());
  ASSERT_EQ(rule.nodes.size(), static_cast<std::size_t>(GetParam() / 2));
  for (int k = 0; k < GetParam(); ++k) EXPECT_NEAR(EvenPower(rule, k), 2.0 / (2 * k + 1), 0x1p-40) << k;
}

TEST_P(GaussRules, ChebyshevIntegratesPowersUnderTheHalfCircle) {
  std::vector<double> halfChords;
  const GaussRule rule = GaussChebyshev2(GetParam(), halfChords);
  double expected = std::numbers::pi / 2.0;  // int x^(2k) sqrt(1 - x^2) by Wallis' recurrence
  for (int k = 0; k < GetParam(); ++k) {
    EXPECT_NEAR(EvenPower(rule, k), expected, 0x1p-46) << k;
    expected *= (2.0 * k + 1.0) / (2.0 * k + 4.0);
  }
  for (std::size_t i = 0; i < halfChords.size(); ++i) {
    EXPECT_NEAR(halfChords[i] * halfChords[i] + rule.nodes[i] * rule.nodes[i], 1.0, 0x1p-51);
  }
}

TEST_P(GaussRules, NodesAscendBetweenZeroAndOne) {
  const GaussRule rule = GaussLegendre(GetParam());
  double before = 0.0;
  for (const double x : rule.nodes) {
    EXPECT_GT(x, before);
    before = x;
  }
  EXPECT_LT(before, 1.0);
}

INSTANTIATE_TEST_SUITE_P(, GaussRules, testing::Values(2, 4, 8, 30, 128, 600, 4096));

// The error of x^(2n) is the square of the norm of the monic Legendre polynomial. Beyond 8 nodes it is too small to be
// seen.
TEST(GaussRulesOfFewNodes, MissTheFirstPowerBeyond) {
  for (const int n : {2, 4, 8}) {
    double norm = 2.0 / (2 * n + 1);
    for (int k = 1; k <= n; ++k) norm *= (k / (2.0 * k - 1)) * (k / (2.0 * k - 1));
    EXPECT_NEAR(2.0 / (2 * n + 1) - EvenPower(GaussLegendre(n), n), norm, 1e-14) << n;
  }
}

TEST(GaussRulesOfTwo, AreThoseOfTheTextbook) {
  EXPECT_NEAR(GaussLegendre(2).nodes[0], std::sqrt(1.0 / 3.0), 0x1p-53);
  EXPECT_NEAR(GaussLegendre(2).weights[0], 1.0, 0x1p-52);
  std::vector<double> halfChords;
  EXPECT_NEAR(GaussChebyshev2(2, halfChords).nodes[0], 0.5, 0x1p-53);
}

}  // namespace
}  // namespace orvanel::physical
