// Tests the 45 polynomials against the formula of factorials, and at points with known values.
#include "orvanel/zernike.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <vector>

#include "tests/support/error_bounds.h"
#include "tests/support/reference.h"

namespace orvanel {
namespace {

using reference::kUlp;
using reference::Near;
using reference::Real;
using reference::TermMagnitude;

double Term(int n, int k, double x, double y) {
  return ZernikeTermTable[static_cast<std::size_t>(n)][static_cast<std::size_t>(k)](PowersOf(x), PowersOf(y));
}

TEST(Zernike, TableHasNineRowsOfGrowingLength) {
  EXPECT_EQ(ZernikeTermTable.size(), 9u);
  for (std::size_t n = 0; n < ZernikeTermTable.size(); ++n) EXPECT_EQ(ZernikeTermTable[n].size(), n + 1);
}

TEST(Zernike, AnOrderGivesItsTermsByIndexAndInTurn) {
  const ZernikeOrder order = ZernikeTermTable[3];
  EXPECT_EQ(std::vector<ZernikeTerm>(order.begin(), order.end()),
            (std::vector<ZernikeTerm>{order[0], order[1], order[2], order[3]}));
  EXPECT_NE(order[1], order[2]);
}

TEST(Zernike, AllFortyFiveTermsAreTheirFactorialFormula) {
  // At most 15 monomials of 9 factors: 8 + 14 roundings. They hold X and Y up to the 8th power, made by multiplication.
  constexpr Real kTermRoundings = 22;
  const double points[][2] = {{0.317, -0.733}, {-0.919, 0.217}, {-0.0137, -0.573}, {0.6661, 0.7229}, {0.25, 0.125}};
  for (int n = 0; n <= 8; ++n) {
    for (int k = 0; k <= n; ++k) {
      for (const auto& [x, y] : points) {
        const int m = -n + 2 * k;
        EXPECT_PRED3(Near, Term(n, k, x, y), reference::ZernikeTerm(n, m, x, y),
                     kTermRoundings * kUlp * TermMagnitude(n, std::abs(m)))
            << n << ", " << m;
      }
    }
  }
}

TEST(Zernike, TermsOfTheSynthesisAreExactOnTheGrid) {
  // With X and Y multiples of 1/64 no monomial up to order 6 rounds; in long double the formula is good to far more.
  for (int n = 2; n <= 6; ++n) {
    for (int k = 0; k <= n; ++k) {
      for (int i = -63; i < 64; i += 9) {
        const double x = i / 64.0, y = (17 - i / 2) / 64.0;
        const Real exact = reference::ZernikeTerm(n, -n + 2 * k, x, y);
        EXPECT_PRED3(Near, Term(n, k, x, y), exact, 1e-17L) << n << ", " << -n + 2 * k << " at " << x << ", " << y;
      }
    }
  }
}

TEST(Zernike, CosineTermsAreOneOnTheRightOfTheRim) {
  for (int n = 0; n <= 8; ++n) {
    for (int k = 0; k <= n; ++k) EXPECT_EQ(Term(n, k, 1.0, 0.0), -n + 2 * k >= 0 ? 1.0 : 0.0) << n << ", " << k;
  }
}

TEST(Zernike, SineTermsFollowTheAngleFromRightToDown) {
  // At (0, 1), the lower end of the rim, theta = 90 degrees: sin(|m| theta) = 1, 0, -1, 0.
  const double sines[4] = {0.0, 1.0, 0.0, -1.0};
  for (int n = 1; n <= 8; ++n) {
    for (int k = 0; k < (n + 1) / 2; ++k) EXPECT_EQ(Term(n, k, 0.0, 1.0), sines[(n - 2 * k) % 4]) << n << ", " << k;
  }
}

TEST(Zernike, PowersAreRepeatedProducts) {
  const Powers powers = PowersOf(0.3);
  double product = 1.0;
  for (const double power : powers) {
    EXPECT_EQ(power, product);
    product *= 0.3;
  }
}

}  // namespace
}  // namespace orvanel
