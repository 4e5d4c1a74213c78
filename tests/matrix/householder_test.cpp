// Tests the reflection of a row, and the tridiagonal form.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <vector>

#include "orvanel/matrix.h"
#include "tests/matrix/examples.h"
#include "tests/matrix/independent.h"
#include "tests/matrix/similarity.h"
#include "tests/support/captured_stdout.h"

namespace orvanel {
namespace {

using test::Equal;
using test::FrobeniusNorm;
using test::IsEmpty;
using test::MatrixOf;
using test::OutputOf;
using test::RandomMatrix;
using test::RandomSymmetricMatrix;
using test::Transposed;

TEST(Householder, MapsTheRowOntoTheFirstUnitVectorAgainstItsSign) {
  EXPECT_LE(FrobeniusNorm(householder(MatrixOf({{3.0, 4.0}})) - MatrixOf({{-0.6, -0.8}, {-0.8, 0.6}})),
            2 * ReflectionError(2));
  EXPECT_LE(FrobeniusNorm(householder(MatrixOf({{-3.0, 4.0}})) - MatrixOf({{-0.6, 0.8}, {0.8, 0.6}})),
            2 * ReflectionError(2));
}

TEST(Householder, IsASymmetricOrthogonalReflection) {
  for (const int n : {1, 2, 3, 7, 20}) {
    const Matrix x = RandomMatrix(1, n, static_cast<unsigned>(n));
    const Matrix p = householder(x);
    ASSERT_EQ(p.rows(), n);
    ASSERT_EQ(p.cols(), n);
    const double bound = n * ReflectionError(n);  // n^2 elements, hence n in the norm
    EXPECT_LE(FrobeniusNorm(p - Transposed(p)), bound);
    EXPECT_LE(FrobeniusNorm(p * p - Matrix(n, kUnit)), 3 * bound);  // twice, and the product's own roundings

    Matrix image(n, 1);
    image(0, 0) = -sign(FrobeniusNorm(x), x(0, 0));
    EXPECT_LE(FrobeniusNorm(p * Transposed(x) - image), 2 * bound * FrobeniusNorm(x));
  }
}

TEST(Householder, OfAZeroLeadingElementCountsItAsPositive) {
  EXPECT_TRUE(Equal(householder(MatrixOf({{0.0, 2.5}})), MatrixOf({{0.0, -1.0}, {-1.0, 0.0}})));
}

TEST(Householder, OfZerosIsTheIdentity) { EXPECT_TRUE(Equal(householder(Matrix(1, 3)), Matrix(3, kUnit))); }

TEST(Householder, OfNoColumnsIsEmpty) {
  EXPECT_EQ(OutputOf([] { EXPECT_TRUE(IsEmpty(householder(Matrix(1, 0)))); }), "");
}

TEST(Householder, DoesNotDependOnTheLengthOfTheRow) {
  const Matrix expected = householder(MatrixOf({{3.0, 4.0, -12.0}}));
  EXPECT_TRUE(Equal(householder(std::ldexp(1.0, 1000) * MatrixOf({{3.0, 4.0, -12.0}})), expected));
  EXPECT_TRUE(Equal(householder(std::ldexp(1.0, -1060) * MatrixOf({{3.0, 4.0, -12.0}})), expected));
}

TEST(Tridiagonal, FormIsSymmetricAndZeroOutsideTheBand) {
  const Matrix form = tridiag(RandomSymmetricMatrix(9, 5));
  ASSERT_EQ(form.rows(), 9);
  for (int i = 0; i < 9; ++i) {
    for (int j = 0; j < 9; ++j) {
      EXPECT_EQ(form(i, j), form(j, i));
      if (std::abs(i - j) > 1) {
        EXPECT_EQ(form(i, j), 0.0);
      }
    }
  }
}

TEST(Tridiagonal, FormIsSimilarByAnOrthogonalTransform) {
  for (const int n : {2, 3, 4, 6, 7}) {
    const Matrix a = RandomSymmetricMatrix(n, static_cast<unsigned>(40 + n));
    const test::Similarity similarity = test::SimilarityOf(a, tridiag(a));
    EXPECT_LE(similarity.orthogonality, similarity.bound) << n;
    EXPECT_LE(similarity.residual, similarity.bound) << n;
    EXPECT_LT(similarity.bound, 1e-6) << n;
  }
}

TEST(Tridiagonal, FormHasTheEigenvaluesOfTheMatrix) {
  const int n = 40;
  const Matrix a = RandomSymmetricMatrix(n, 6);
  const std::vector<double> of_matrix = test::SymmetricEigenvaluesByEigen(a);
  const std::vector<double> of_form = test::SymmetricEigenvaluesByEigen(tridiag(a));
  // Symmetric: an eigenvalue moves by no more than the perturbation; the reference reduces by reflections too, twice.
  const double bound = 3 * FormError(n) * FrobeniusNorm(a);
  ASSERT_EQ(of_matrix.size(), static_cast<std::size_t>(n));
  ASSERT_EQ(of_form.size(), of_matrix.size());
  for (std::size_t k = 0; k < of_matrix.size(); ++k) EXPECT_LE(std::fabs(of_matrix[k] - of_form[k]), bound) << k;
}

TEST(Tridiagonal, FormOfThreeByThreeIsTheReflectedMatrix) {
  // The column (3, 4) is reflected by {{-0.6, -0.8}, {-0.8, 0.6}}.
  const Matrix a = MatrixOf({{2.0, 3.0, 4.0}, {3.0, 5.0, 7.0}, {4.0, 7.0, 11.0}});
  const Matrix expected = MatrixOf({{2.0, -5.0, 0.0}, {-5.0, 15.56, -0.92}, {0.0, -0.92, 0.44}});
  EXPECT_LE(FrobeniusNorm(tridiag(a) - expected), FormError(3) * FrobeniusNorm(a));
}

TEST(Tridiagonal, FormOfOrderBelowThreeIsTheMatrix) {
  const Matrix a = MatrixOf({{2.0, -3.0}, {-3.0, 7.0}});
  EXPECT_TRUE(Equal(tridiag(a), a));
  EXPECT_TRUE(Equal(tridiag(MatrixOf({{-2.5}})), MatrixOf({{-2.5}})));
  EXPECT_TRUE(IsEmpty(tridiag(Matrix())));
}

TEST(Tridiagonal, FormOfADiagonalMatrixIsItself) {
  const Matrix a = MatrixOf({{2.0, 0.0, 0.0}, {0.0, 3.0, 0.0}, {0.0, 0.0, -5.0}});
  EXPECT_TRUE(Equal(tridiag(a), a));
}

TEST(Tridiagonal, FormReadsTheLowerHalfOnly) {
  Matrix a = RandomSymmetricMatrix(5, 7);
  const Matrix expected = tridiag(a);
  a(1, 3) = 99.0;
  a(0, 4) = -99.0;
  EXPECT_TRUE(Equal(tridiag(a), expected));
}

TEST(Tridiagonal, FormKeepsClearOfOverflow) {
  const double large = std::ldexp(1.0, 900);
  const Matrix a = RandomSymmetricMatrix(5, 8);
  EXPECT_TRUE(Equal(tridiag(large * a), large * tridiag(a)));
}

TEST(Tridiagonal, FormPrintsNothing) {
  EXPECT_EQ(OutputOf([] {
              static_cast<void>(tridiag(RandomSymmetricMatrix(4, 9)));
              static_cast<void>(householder(RandomMatrix(1, 4, 10)));
            }),
            "");
}

}  // namespace
}  // namespace orvanel
