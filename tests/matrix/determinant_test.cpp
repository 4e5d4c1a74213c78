// Tests determinant, minors and trace.
#include <gtest/gtest.h>

#include <cmath>

#include "orvanel/matrix.h"
#include "tests/matrix/examples.h"
#include "tests/matrix/independent.h"

namespace orvanel {
namespace {

using test::Equal;
using test::IsEmpty;
using test::MatrixOf;

TEST(Determinant, OfOneElementIsIt) { EXPECT_EQ(MatrixOf({{-2.5}}).det(), -2.5); }

TEST(Determinant, OfNothingIsZero) { EXPECT_EQ(Matrix().det(), 0.0); }

TEST(Determinant, OfTwoByTwoIsTheDifferenceOfTheProducts) { EXPECT_EQ(MatrixOf({{2.0, 3.0}, {5.0, 11.0}}).det(), 7.0); }

TEST(Determinant, ChangesSignWithAnExchangeOfRows) {
  EXPECT_EQ(MatrixOf({{2.0, 3.0, 5.0}, {7.0, 11.0, 13.0}, {17.0, 19.0, 23.0}}).det(), -78.0);
  EXPECT_EQ(MatrixOf({{7.0, 11.0, 13.0}, {2.0, 3.0, 5.0}, {17.0, 19.0, 23.0}}).det(), 78.0);
}

TEST(Determinant, ExpandsAlongTheFirstRowFromTheLeft) {
  // 1e16 - 1e16 + 3; any other order loses the 3 in part or in whole.
  const Matrix a = MatrixOf({{1e16, 1e16, 3.0}, {1.0, 1.0, 0.0}, {0.0, 0.0, 1.0}});
  EXPECT_EQ(a.det(), 0.0);
  const Matrix b = MatrixOf({{1e16, 1e16, 3.0}, {1.0, 1.0, 0.0}, {0.0, 1.0, 1.0}});
  EXPECT_EQ(b.det(), 3.0);
}

TEST(Determinant, EqualsTheProductOfPivotsInMorePrecision) {
  for (int n = 2; n <= 8; ++n) {
    const Matrix a = test::RandomMatrix(n, n, static_cast<unsigned>(n));
    // The reference, 2048 times as precise, needs less than the bound leaves unused.
    const double bound = DeterminantError(n) * test::PermanentOfMagnitudes(a);
    const long double reference = test::DeterminantByEigen(a);
    EXPECT_LE(std::fabs(static_cast<double>(a.det() - reference)), bound) << n;
    EXPECT_GT(std::fabs(static_cast<double>(reference)), 1e6 * bound) << n;
  }
}

TEST(Minor, LacksOneRowAndOneColumn) {
  const Matrix a = MatrixOf({{2.0, 3.0, 5.0}, {7.0, 11.0, 13.0}, {17.0, 19.0, 23.0}});
  EXPECT_TRUE(Equal(a.minor_matrix(0, 2), MatrixOf({{7.0, 11.0}, {17.0, 19.0}})));
  EXPECT_TRUE(Equal(a.minor_matrix(1, 0), MatrixOf({{3.0, 5.0}, {19.0, 23.0}})));
  EXPECT_TRUE(Equal(MatrixOf({{2.0, 3.0, 5.0}, {7.0, 11.0, 13.0}}).minor_matrix(1, 1), MatrixOf({{2.0, 5.0}})));
  EXPECT_TRUE(IsEmpty(MatrixOf({{2.0}}).minor_matrix(0, 0)));
}

TEST(Cofactor, IsTheMinorSignedByItsPlace) {
  const Matrix a = MatrixOf({{2.0, 3.0, 5.0}, {7.0, 11.0, 13.0}, {17.0, 19.0, 23.0}});
  EXPECT_EQ(a.cofactor(0, 0), 6.0);
  EXPECT_EQ(a.cofactor(0, 1), 60.0);
  EXPECT_EQ(a.cofactor(1, 0), 26.0);
  EXPECT_EQ(a.cofactor(1, 2), 13.0);
  EXPECT_EQ(a.cofactor(2, 0), -16.0);
}

TEST(Trace, SumsTheDiagonal) {
  EXPECT_EQ(MatrixOf({{2.0, 3.0, 5.0}, {7.0, 11.0, 13.0}, {17.0, 19.0, 23.0}}).tr(), 36.0);
  EXPECT_EQ(MatrixOf({{1e16, 0.0, 0.0}, {0.0, 3.0, 0.0}, {0.0, 0.0, -1e16}}).tr(), 4.0);  // from the top: 3 rounds up
}

TEST(Trace, OfNothingIsZero) { EXPECT_EQ(Matrix().tr(), 0.0); }

}  // namespace
}  // namespace orvanel
