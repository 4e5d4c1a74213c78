// Tests the upper Hessenberg form, and where its floor breaks the similarity.
#include <gtest/gtest.h>

#include <cmath>

#include "orvanel/matrix.h"
#include "tests/matrix/examples.h"
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

TEST(Hessenberg, FormIsZeroBelowTheSubdiagonal) {
  const Matrix h = hessenberg(RandomMatrix(9, 9, 1));
  ASSERT_EQ(h.rows(), 9);
  for (int i = 2; i < 9; ++i) {
    for (int j = 0; j < i - 1; ++j) EXPECT_EQ(h(i, j), 0.0);
  }
}

TEST(Hessenberg, FormIsSimilarByAnOrthogonalTransform) {
  for (const int n : {3, 4, 6, 8}) {
    const Matrix a = RandomMatrix(n, n, static_cast<unsigned>(10 + n));
    const test::Similarity similarity = test::SimilarityOf(a, hessenberg(a));
    EXPECT_LE(similarity.orthogonality, similarity.bound) << n;
    EXPECT_LE(similarity.residual, similarity.bound) << n;
    EXPECT_LT(similarity.bound, 1e-6) << n;
  }
}

TEST(Hessenberg, FormKeepsTraceAndNorm) {
  const int n = 64;
  const Matrix a = RandomMatrix(n, n, 2);
  const Matrix h = hessenberg(a);
  const double bound = FormError(n) * FrobeniusNorm(a);
  EXPECT_LE(std::fabs(h.tr() - a.tr()), std::sqrt(n) * bound);  // n elements of a matrix of that norm
  EXPECT_LE(std::fabs(FrobeniusNorm(h) - FrobeniusNorm(a)), bound);
}

TEST(Hessenberg, FormReflectsFromTheSubdiagonalDown) {
  // The column (3, 4) is reflected by {{-0.6, -0.8}, {-0.8, 0.6}}.
  const Matrix a = MatrixOf({{1.0, 2.0, 3.0}, {3.0, 5.0, 7.0}, {4.0, 6.0, 8.0}});
  const Matrix expected = MatrixOf({{1.0, -3.6, 0.2}, {-5.0, 13.16, -0.12}, {0.0, 0.88, -0.16}});
  EXPECT_LE(FrobeniusNorm(hessenberg(a) - expected), FormError(3) * FrobeniusNorm(a));
}

TEST(Hessenberg, SignFollowsTheLeadingElementAndZeroCountsAsPositive) {
  EXPECT_GT(hessenberg(MatrixOf({{1.5, 2.0, 3.0}, {-3.0, 5.0, 7.0}, {4.0, 6.0, 8.0}}))(1, 0), 0.0);
  EXPECT_LT(hessenberg(MatrixOf({{1.5, 2.0, 3.0}, {3.0, 5.0, 7.0}, {4.0, 6.0, 8.0}}))(1, 0), 0.0);
  EXPECT_EQ(hessenberg(MatrixOf({{1.5, 2.0, 3.0}, {0.0, 5.0, 7.0}, {4.0, 6.0, 8.0}}))(1, 0), -4.0);
}

TEST(Hessenberg, FormOfOrderBelowThreeIsACopy) {
  const Matrix a = MatrixOf({{2.0, 3.0}, {5.0, 7.0}});
  EXPECT_TRUE(Equal(hessenberg(a), a));
  EXPECT_TRUE(Equal(hessenberg(MatrixOf({{-2.5}})), MatrixOf({{-2.5}})));
  EXPECT_TRUE(IsEmpty(hessenberg(Matrix())));
}

TEST(Hessenberg, ColumnOfZerosPassesThrough) {
  const Matrix a =
      MatrixOf({{2.0, 3.0, 5.0, 7.0}, {0.0, 11.0, 13.0, 17.0}, {0.0, 0.0, 19.0, 23.0}, {0.0, 0.0, 0.0, 29.0}});
  EXPECT_TRUE(Equal(hessenberg(a), a));
}

TEST(Hessenberg, FormOfAMatrixThatIsNotSquareIsEmptyWithoutAWord) {
  EXPECT_EQ(OutputOf([] { EXPECT_TRUE(IsEmpty(hessenberg(Matrix(2, 3)))); }), "");
}

TEST(Hessenberg, FormPrintsNothing) {
  EXPECT_EQ(OutputOf([] { static_cast<void>(hessenberg(RandomMatrix(4, 4, 3))); }), "");
}

// A matrix whose first column has the given length from the subdiagonal down, in the direction (0.6, 0.8).
Matrix WithSubcolumn(double length) {
  return MatrixOf({{5.0, 2.0, 3.0}, {0.6 * length, 1.5, 2.5}, {0.8 * length, -2.0, 4.0}});
}

// By how much the form's trace and its lower block's determinant differ from what similarity to the limit of a zero
// subcolumn would give: the block {{1.5, 2.5}, {-2, 4}} has the determinant 11.
double LossOfSimilarity(double length) {
  const Matrix h = hessenberg(WithSubcolumn(length));
  return std::fabs(h(1, 1) * h(2, 2) - h(1, 2) * h(2, 1) - 11.0);
}

TEST(Hessenberg, FloorCostsTheSimilarityOfSubcolumnsBelowAboutTenToTheMinusTen) {
  // The scaling product length^2 (1 + 0.6) falls below 1e-20 at a length of 0.79057e-10.
  const double bound = FormError(3) * 2 * 11.0;  // of a determinant of about the block's norm squared
  EXPECT_LE(LossOfSimilarity(1e-7), bound);
  EXPECT_LE(LossOfSimilarity(0.7906e-10), bound);
  // At product / 1e-20 = r below 1 the determinant is multiplied by (1 - 2 r)^2.
  EXPECT_GT(LossOfSimilarity(0.7900e-10), 0.05);
  EXPECT_GT(LossOfSimilarity(0.5590e-10), 10.9);  // r = 1/2, a projection: nothing is left of the determinant
  EXPECT_GT(LossOfSimilarity(1e-11), 0.5);
  EXPECT_LE(LossOfSimilarity(1e-18), bound);  // and harmless again, for r below the roundoff
  EXPECT_LE(LossOfSimilarity(0.0), bound);
}

TEST(Hessenberg, MatrixScaledUpKeepsClearOfTheFloor) {
  const double scale = std::ldexp(1.0, 40);
  const Matrix h = hessenberg(scale * WithSubcolumn(1e-11)) / scale;
  EXPECT_LE(std::fabs(h(1, 1) * h(2, 2) - h(1, 2) * h(2, 1) - 11.0), FormError(3) * 2 * 11.0);
}

}  // namespace
}  // namespace orvanel
