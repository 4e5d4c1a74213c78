// Tests properties of eigenvectors: residual, length, direction, and their number.
#include <gtest/gtest.h>

#include <Eigen/Dense>
#include <cmath>
#include <complex>
#include <limits>
#include <string>

#include "orvanel/matrix.h"
#include "tests/matrix/examples.h"
#include "tests/matrix/to_eigen.h"
#include "tests/support/captured_stdout.h"

namespace orvanel {
namespace {

using test::CyclicPermutation;
using test::Equal;
using test::FrobeniusNorm;
using test::IsEmpty;
using test::MatrixOf;
using test::OutputOf;
using test::RandomMatrix;
using test::RandomSymmetricMatrix;
using test::VectorOf;

// Inverse iteration from a start vector that has something of every direction finds a residual within sqrt(n) of the
// smallest possible, which the error of the eigenvalue bounds.
double ResidualError(int n) { return std::sqrt(n) * EigenvalueError(n); }

// Of a vector of two or three elements whose eigenvalue is exact: solution, two normalisations and the turn onto the
// real axis, each with at most four roundings of an element.
constexpr double kSmallVectorError = 16 * kRoundoff;

Eigenvectors VectorsOf(const Matrix& a) {
  const Eigenvalues values = eigenvalues(a);
  return a.eigenvectors(values.re, values.im);
}

Eigen::VectorXcd ColumnOf(const Eigenvectors& vectors, int k) {
  Eigen::VectorXcd column(vectors.re.rows());
  for (int i = 0; i < vectors.re.rows(); ++i) column(i) = {vectors.re(i, k), vectors.im(i, k)};
  return column;
}

double ResidualOf(const Matrix& a, std::complex<double> value, const Eigen::VectorXcd& vector) {
  const Eigen::MatrixXcd m = test::ToEigen(a).cast<std::complex<double>>();
  return (m * vector - value * vector).norm();
}

void ExpectEigenvectors(const Matrix& a, const std::string& name) {
  const Eigenvalues values = eigenvalues(a);
  const Eigenvectors vectors = a.eigenvectors(values.re, values.im);
  const int n = a.rows();
  ASSERT_EQ(vectors.re.rows(), n) << name;
  ASSERT_EQ(vectors.re.cols(), n) << name;
  ASSERT_EQ(vectors.im.cols(), n) << name;
  for (int k = 0; k < n; ++k) {
    const Eigen::VectorXcd w = ColumnOf(vectors, k);
    EXPECT_LE(ResidualOf(a, {values.re[k], values.im[k]}, w), ResidualError(n) * FrobeniusNorm(a)) << name << ", " << k;
    EXPECT_LE(std::fabs(w.norm() - 1.0), (n + 4) * kRoundoff) << name << ", " << k;
    Eigen::Index largest = 0;
    w.cwiseAbs().maxCoeff(&largest);
    EXPECT_GT(w(largest).real(), 0.0) << name << ", " << k;
    EXPECT_LE(std::fabs(w(largest).imag()), kSmallVectorError) << name << ", " << k;  // another may be as large
  }
}

TEST(Eigenvectors, OfRandomMatrices) {
  for (const int n : {1, 2, 3, 5, 8, 21, 40}) {
    ExpectEigenvectors(RandomMatrix(n, n, static_cast<unsigned>(n)), "random " + std::to_string(n));
  }
}

TEST(Eigenvectors, OfSymmetricMatricesAreRealAndOrthogonal) {
  const Matrix a = RandomSymmetricMatrix(12, 3);
  ExpectEigenvectors(a, "symmetric");
  const Eigenvectors vectors = VectorsOf(a);
  EXPECT_TRUE(Equal(vectors.im, Matrix(12, 12)));
  // Eigenvalues of this matrix are at least 0.1 apart: a residual r turns a vector by r / 0.1 at most.
  const Matrix product = test::Transposed(vectors.re) * vectors.re;
  EXPECT_LE(FrobeniusNorm(product - Matrix(12, kUnit)), 12 * 2 * ResidualError(12) * FrobeniusNorm(a) / 0.1);
}

TEST(Eigenvectors, OfACyclicPermutation) { ExpectEigenvectors(CyclicPermutation(9), "cyclic"); }

TEST(Eigenvectors, OfATwoByTwoMatrixByHand) {
  // Eigenvalues 7 and 2 with the vectors (2, 1) and (1, -2).
  const Eigenvectors vectors = MatrixOf({{6.0, 2.0}, {2.0, 3.0}}).eigenvectors(VectorOf({7.0, 2.0}), Vector(2));
  const double unit = 1.0 / std::sqrt(5.0);
  EXPECT_LE(FrobeniusNorm(vectors.re - MatrixOf({{2 * unit, -unit}, {unit, 2 * unit}})), kSmallVectorError);
  EXPECT_TRUE(Equal(vectors.im, Matrix(2, 2)));
}

TEST(Eigenvectors, OfAConjugatePairAreConjugate) {
  const Eigenvectors vectors = MatrixOf({{0.0, -4.0}, {1.0, 0.0}}).eigenvectors(Vector(2), VectorOf({-2.0, 2.0}));
  // (2, +-i) / sqrt(5), the largest element real.
  const double unit = 1.0 / std::sqrt(5.0);
  EXPECT_LE(FrobeniusNorm(vectors.re - MatrixOf({{2 * unit, 2 * unit}, {0.0, 0.0}})), kSmallVectorError);
  EXPECT_LE(FrobeniusNorm(vectors.im - MatrixOf({{0.0, 0.0}, {unit, -unit}})), kSmallVectorError);
  EXPECT_EQ(vectors.im(0, 0), 0.0);
}

TEST(Eigenvectors, OfEqualEigenvaluesAreOrthogonalWhereTheyExist) {
  // The identity, and a matrix that is not symmetric with a plane of vectors for the eigenvalue 2.
  for (const Matrix& a : {Matrix(3, kUnit), MatrixOf({{2.0, 0.0, 5.0}, {0.0, 2.0, 7.0}, {0.0, 0.0, 3.0}})}) {
    ExpectEigenvectors(a, "repeated");
    const Eigenvectors vectors = VectorsOf(a);
    EXPECT_LE(std::abs(ColumnOf(vectors, 0).dot(ColumnOf(vectors, 1))), kSmallVectorError);
  }
}

TEST(Eigenvectors, OfNearlyEqualEigenvaluesAreOrthogonalWhereTheyExist) {
  // 3 and 3 + 2^-16 are nearer to each other than 1e-5 of the largest element. Left to themselves their vectors would
  // be off by the roundings of the matrix over that distance, by 1e-11.
  const Matrix turn = householder(MatrixOf({{2.0, -3.0, 5.0}}));
  const Matrix a = turn * MatrixOf({{3.0, 0.0, 0.0}, {0.0, 3.0 + 0x1p-16, 0.0}, {0.0, 0.0, -7.0}}) * turn;
  ExpectEigenvectors(a, "nearly equal");
  const Eigenvectors vectors = VectorsOf(a);
  for (int k = 0; k < 3; ++k) {
    for (int j = 0; j < k; ++j) {
      const double product = std::abs(ColumnOf(vectors, j).dot(ColumnOf(vectors, k)));
      EXPECT_LE(product, 2 * kSmallVectorError) << j << ", " << k;
    }
  }
}

TEST(Eigenvectors, OfADefectiveMatrixRepeat) {
  const Matrix a = MatrixOf({{2.0, 1.0}, {0.0, 2.0}});
  const Eigenvectors vectors = VectorsOf(a);
  EXPECT_LE(FrobeniusNorm(vectors.re - MatrixOf({{1.0, 1.0}, {0.0, 0.0}})), kSmallVectorError);
}

TEST(Eigenvectors, OfALongJordanBlockStayFinite) {
  Matrix a = 2.5 * Matrix(40, kUnit);
  for (int i = 0; i + 1 < 40; ++i) a(i, i + 1) = 1.5;
  ExpectEigenvectors(a, "Jordan block");
}

TEST(Eigenvectors, DoNotDependOnTheScale) {
  const Matrix a = RandomMatrix(4, 4, 31);
  const Eigenvalues values = eigenvalues(a);
  const Eigenvectors expected = a.eigenvectors(values.re, values.im);
  for (const double scale : {std::ldexp(1.0, 1000), std::ldexp(1.0, -900)}) {
    const Eigenvectors vectors = (scale * a).eigenvectors(scale * values.re, scale * values.im);
    EXPECT_TRUE(Equal(vectors.re, expected.re));
    EXPECT_TRUE(Equal(vectors.im, expected.im));
  }
}

TEST(Eigenvectors, OfSomeEigenvaluesOnlyAreThatMany) {
  const Eigenvectors vectors = MatrixOf({{6.0, 2.0}, {2.0, 3.0}}).eigenvectors(VectorOf({2.0}), Vector(1));
  EXPECT_EQ(vectors.re.rows(), 2);
  EXPECT_EQ(vectors.re.cols(), 1);
  EXPECT_GT(vectors.re(1, 0), 0.8);
}

TEST(Eigenvectors, OfWhatIsNoEigenvalueAreZero) {
  const Matrix a = MatrixOf({{6.0, 2.0}, {2.0, 3.0}});
  // 6 is the largest element: residuals of 0.9e-10 and 1.1e-10 of it lie on either side of the promise.
  const Eigenvectors vectors = a.eigenvectors(VectorOf({7.0 + 0.9e-10 * 6, 7.0 + 1.1e-10 * 6, 4.0}), Vector(3));
  EXPECT_GT(vectors.re(0, 0), 0.8);
  for (int k = 1; k < 3; ++k) {
    EXPECT_EQ(vectors.re(0, k), 0.0);
    EXPECT_EQ(vectors.re(1, k), 0.0);
  }
}

TEST(Eigenvectors, OfZeroAreOrthogonalUnitVectors) {
  const Eigenvectors vectors = Matrix(3, 3).eigenvectors(Vector(3), Vector(3));
  EXPECT_LE(FrobeniusNorm(test::Transposed(vectors.re) * vectors.re - Matrix(3, kUnit)), 3 * kSmallVectorError);
}

TEST(Eigenvectors, OfWhatIsNotANumberAreZero) {
  Matrix a = MatrixOf({{6.0, 2.0}, {2.0, 3.0}});
  a(1, 0) = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(Equal(a.eigenvectors(VectorOf({7.0, 2.0}), Vector(2)).re, Matrix(2, 2)));
}

TEST(Eigenvectors, OfSizesThatDoNotFitAreEmptyWithoutAWord) {
  EXPECT_EQ(OutputOf([] {
              EXPECT_TRUE(IsEmpty(Matrix(2, 3).eigenvectors(Vector(2), Vector(2)).re));
              EXPECT_TRUE(IsEmpty(Matrix(2, 2).eigenvectors(Vector(2), Vector(1)).re));
              EXPECT_TRUE(IsEmpty(Matrix().eigenvectors(Vector(), Vector()).re));
            }),
            "");
}

TEST(Eigenvectors, OfNoRowsHaveNoRows) {
  const Eigenvectors vectors = Matrix(0, 0).eigenvectors(Vector(3), Vector(3));
  EXPECT_EQ(vectors.re.rows(), 0);
  EXPECT_EQ(vectors.im.rows(), 0);
}

TEST(Eigenvectors, PrintNothing) {
  EXPECT_EQ(OutputOf([] { static_cast<void>(VectorsOf(RandomMatrix(5, 5, 3))); }), "");
}

}  // namespace
}  // namespace orvanel
