// Tests the two inverses and the limits at which they fail.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "orvanel/matrix.h"
#include "tests/matrix/examples.h"
#include "tests/support/captured_stdout.h"

namespace orvanel {
namespace {

using test::Equal;
using test::IsEmpty;
using test::MatrixOf;
using test::OutputOf;

const double kNan = std::numeric_limits<double>::quiet_NaN();

double Below(double x) { return std::nextafter(x, -INFINITY); }
double Above(double x) { return std::nextafter(x, INFINITY); }

// Whether inv() found a pivot too small: the 1 x 1 zero matrix, without a word.
bool GivesUp(const Matrix& a) {
  Matrix inverse;
  const bool silent = OutputOf([&] { inverse = a.inv(); }).empty();
  return silent && Equal(inverse, Matrix(1, 1));
}

Matrix Diagonal(double first, double second) { return MatrixOf({{first, 0.0}, {0.0, second}}); }

// Elements from -1 to 1 with a diagonal that outweighs each row.
Matrix DiagonallyDominant(int n, unsigned seed) {
  Matrix a = test::RandomMatrix(n, n, seed);
  for (int i = 0; i < n; ++i) a(i, i) += i % 2 == 0 ? n + 0.5 : -n - 0.5;
  return a;
}

TEST(Inverse, OfTwoByTwoIsExactWhereTheArithmeticIs) {
  EXPECT_TRUE(Equal(MatrixOf({{2.0, 3.0}, {4.0, 8.0}}).inv(), MatrixOf({{2.0, -0.75}, {-1.0, 0.5}})));
}

TEST(Inverse, OfOneElementIsItsReciprocal) { EXPECT_TRUE(Equal(MatrixOf({{-4.0}}).inv(), MatrixOf({{-0.25}}))); }

TEST(Inverse, OfNothingIsNothing) { EXPECT_TRUE(IsEmpty(Matrix().inv())); }

TEST(Inverse, TimesTheMatrixIsTheIdentity) {
  for (const int n : {1, 2, 3, 5, 8, 13, 32}) {
    const Matrix a = DiagonallyDominant(n, static_cast<unsigned>(n));
    const Matrix inverse = a.inv();
    ASSERT_EQ(inverse.rows(), n);
    const double bound = InverseError(n) * test::RowSumNorm(a) * test::RowSumNorm(inverse);
    EXPECT_LE(test::RowSumNorm(a * inverse - Matrix(n, kUnit)), bound) << n;
    EXPECT_LE(test::RowSumNorm(inverse * a - Matrix(n, kUnit)), bound) << n;
  }
}

TEST(Inverse, DividesByThePivotAndTakesTheFactorBeforeTheUpdate) {
  const Matrix inverse = MatrixOf({{49.0, 5.0}, {3.0, 7.0}}).inv();
  const double upper = 5.0 / 49.0;
  const double pivot = 7.0 - 3.0 * upper;
  const double left = (0.0 - 3.0 * (1.0 / 49.0)) / pivot;
  EXPECT_EQ(inverse(1, 0), left);
  EXPECT_EQ(inverse(1, 1), 1.0 / pivot);
  EXPECT_EQ(inverse(0, 0), 1.0 / 49.0 - upper * left);
  EXPECT_EQ(inverse(0, 1), 0.0 - upper * (1.0 / pivot));
}

TEST(Inverse, NeverExchangesRows) { EXPECT_TRUE(GivesUp(MatrixOf({{0.0, 1.0}, {1.0, 0.0}}))); }

TEST(Inverse, TakesAPivotFromTheUpperLimitOn) {
  EXPECT_TRUE(GivesUp(Diagonal(1e-6, 2.0)));
  EXPECT_TRUE(GivesUp(Diagonal(Below(1e-5), 2.0)));
  EXPECT_TRUE(Equal(Diagonal(1e-5, 2.0).inv(), Diagonal(1.0 / 1e-5, 0.5)));
  EXPECT_TRUE(Equal(Diagonal(Above(1e-5), 2.0).inv(), Diagonal(1.0 / Above(1e-5), 0.5)));
}

TEST(Inverse, TakesAPivotBelowTheLowerLimitOnly) {
  EXPECT_TRUE(GivesUp(Diagonal(-1e-6, 2.0)));
  EXPECT_TRUE(GivesUp(Diagonal(Above(-1e-5), 2.0)));
  EXPECT_TRUE(GivesUp(Diagonal(-1e-5, 2.0)));
  EXPECT_TRUE(Equal(Diagonal(Below(-1e-5), 2.0).inv(), Diagonal(1.0 / Below(-1e-5), 0.5)));
}

TEST(Inverse, LooksAtEveryPivotAfterItsElimination) {
  EXPECT_TRUE(GivesUp(Diagonal(2.0, 1e-6)));
  EXPECT_TRUE(GivesUp(MatrixOf({{2.0, 3.0}, {4.0, 6.0}})));
  EXPECT_FALSE(GivesUp(MatrixOf({{2.0, 3.0}, {4.0, 0.0}})));
}

TEST(Inverse, GivesUpAtAPivotThatIsNotANumber) {
  EXPECT_TRUE(GivesUp(Diagonal(kNan, 2.0)));
  EXPECT_TRUE(GivesUp(Diagonal(2.0, kNan)));
  EXPECT_TRUE(GivesUp(MatrixOf({{kNan}})));
}

TEST(InverseByCofactors, IsTheAdjugateOverTheDeterminant) {
  EXPECT_TRUE(Equal(MatrixOf({{2.0, 3.0}, {4.0, 8.0}}).invc(), MatrixOf({{2.0, -0.75}, {-1.0, 0.5}})));
  const Matrix exchange = MatrixOf({{0.0, 1.0}, {1.0, 0.0}});
  EXPECT_TRUE(Equal(exchange.invc(), exchange));
}

TEST(InverseByCofactors, TimesTheMatrixIsTheIdentity) {
  for (int n = 2; n <= 6; ++n) {
    const Matrix a = DiagonallyDominant(n, static_cast<unsigned>(100 + n));
    const Matrix inverse = a.invc();
    ASSERT_EQ(inverse.rows(), n);
    // A cofactor and the determinant have that of an expansion, of which the bound leaves more unused than the
    // quotient and the product with the matrix add.
    const double roundings = DeterminantError(n) / std::fabs(a.det());
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) {
        double sum = i == j ? -1.0 : 0.0;
        double bound = 0.0;
        for (int k = 0; k < n; ++k) {
          sum += a(i, k) * inverse(k, j);
          bound += std::fabs(a(i, k)) * (test::PermanentOfMagnitudes(a.minor_matrix(j, k)) +
                                         std::fabs(inverse(k, j)) * test::PermanentOfMagnitudes(a));
        }
        EXPECT_LE(std::fabs(sum), roundings * bound) << n << ": " << i << ", " << j;
        EXPECT_LT(roundings * bound, 1e-9);
      }
    }
  }
}

TEST(InverseByCofactors, TakesADeterminantAtEitherLimit) {
  EXPECT_TRUE(Equal(Diagonal(1e-5, 1.0).invc(), Diagonal(1.0 / 1e-5, 1.0)));
  EXPECT_TRUE(Equal(Diagonal(-1e-5, 1.0).invc(), Diagonal(1.0 / -1e-5, 1.0)));
  EXPECT_TRUE(Equal(Diagonal(Above(1e-5), 1.0).invc(), Diagonal(1.0 / Above(1e-5), 1.0)));
  EXPECT_TRUE(Equal(Diagonal(Below(-1e-5), 1.0).invc(), Diagonal(1.0 / Below(-1e-5), 1.0)));
}

TEST(InverseByCofactors, RefusesADeterminantBetweenTheLimits) {
  for (const double determinant : {Below(1e-5), Above(-1e-5), 0.0, -0.0}) {
    Matrix inverse(9, 9);
    EXPECT_NE(OutputOf([&] { inverse = Diagonal(determinant, 1.0).invc(); }), "") << determinant;
    EXPECT_TRUE(IsEmpty(inverse)) << determinant;
  }
}

TEST(InverseByCofactors, OfADeterminantThatIsNotANumberIsNotANumber) {
  Matrix inverse;
  EXPECT_EQ(OutputOf([&] { inverse = Diagonal(kNan, 2.0).invc(); }), "");
  ASSERT_EQ(inverse.rows(), 2);
  EXPECT_TRUE(std::isnan(inverse(0, 0)));
}

TEST(InverseByCofactors, OfOneElementIsZero) {
  Matrix inverse;
  EXPECT_EQ(OutputOf([&] { inverse = MatrixOf({{4.0}}).invc(); }), "");
  EXPECT_TRUE(Equal(inverse, MatrixOf({{0.0}})));
}

TEST(InverseByCofactors, OfAMatrixThatIsNotSquareIsEmptyWithoutAWord) {
  Matrix inverse(9, 9);
  EXPECT_EQ(OutputOf([&] { inverse = Matrix(2, 3).invc(); }), "");
  EXPECT_TRUE(IsEmpty(inverse));
}

TEST(InverseByCofactors, OfNothingIsRefused) {
  EXPECT_NE(OutputOf([] { EXPECT_TRUE(IsEmpty(Matrix().invc())); }), "");
}

}  // namespace
}  // namespace orvanel
