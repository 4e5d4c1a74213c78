// Tests eigenvalues against closed forms and against an independent implementation.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "orvanel/matrix.h"
#include "tests/matrix/examples.h"
#include "tests/matrix/independent.h"
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

using Complex = std::complex<double>;

std::vector<Complex> EigenvaluesOf(const Matrix& a) {
  const Eigenvalues values = eigenvalues(a);
  std::vector<Complex> set;
  for (int k = 0; k < values.re.dim(); ++k) set.emplace_back(values.re[k], values.im[k]);
  return set;
}

// Takes the nearest value out of the set and returns its distance.
double TakeNearest(std::vector<Complex>& set, Complex value) {
  const auto nearest = std::min_element(
      set.begin(), set.end(), [=](Complex a, Complex b) { return std::abs(a - value) < std::abs(b - value); });
  const double distance = std::abs(*nearest - value);
  set.erase(nearest);
  return distance;
}

// That the eigenvalues are, as a set, those of the independent implementation. A perturbation E moves the eigenvalue
// lambda_k by |E| times its condition number |x_k| |y_k|, where x_k are the columns of the matrix of eigenvectors and
// y_k the rows of its inverse (first order; a factor of 2 for the rest); both sides have their E.
void ExpectSameSetAsReference(const Matrix& a, const std::string& name) {
  std::vector<Complex> set = EigenvaluesOf(a);
  ASSERT_EQ(static_cast<int>(set.size()), a.rows()) << name;
  const test::IndependentEigenvalues reference = test::EigenvaluesByEigen(a);
  for (std::size_t k = 0; k < reference.values.size(); ++k) {
    const double bound = 2 * 2 * EigenvalueError(a.rows()) * FrobeniusNorm(a) * reference.conditions[k];
    EXPECT_LE(TakeNearest(set, reference.values[k]), bound) << name << ", eigenvalue " << k;
    EXPECT_LT(bound, 1e-3 * FrobeniusNorm(a)) << name << ", eigenvalue " << k;
  }
}

TEST(Eigenvalues, OfRandomMatrices) {
  for (const int n : {1, 2, 3, 4, 5, 8, 13, 21, 34, 50, 64}) {
    ExpectSameSetAsReference(RandomMatrix(n, n, static_cast<unsigned>(n)), "random " + std::to_string(n));
  }
}

TEST(Eigenvalues, OfManySmallRandomMatrices) {
  for (unsigned seed = 0; seed < 500; ++seed) {
    const int n = 2 + static_cast<int>(seed % 5);
    ExpectSameSetAsReference(RandomMatrix(n, n, 1000 + seed), "seed " + std::to_string(seed));
  }
}

TEST(Eigenvalues, OfSymmetricMatricesAreReal) {
  for (const int n : {2, 3, 6, 17, 40, 64}) {
    const Matrix a = RandomSymmetricMatrix(n, static_cast<unsigned>(n));
    std::vector<Complex> set = EigenvaluesOf(a);
    ASSERT_EQ(static_cast<int>(set.size()), n);
    for (const double value : test::SymmetricEigenvaluesByEigen(a)) {
      // Symmetric: an eigenvalue moves by no more than the perturbation. Both sides have theirs.
      EXPECT_LE(TakeNearest(set, value), 2 * EigenvalueError(n) * FrobeniusNorm(a)) << n;
    }
  }
}

TEST(Eigenvalues, OfCompanionMatricesAreTheRootsOfThePolynomial) {
  for (const int n : {3, 7, 20, 64}) {
    Matrix companion(n, n);
    companion.row(0) = RandomMatrix(1, n, static_cast<unsigned>(n)).row(0);
    for (int i = 1; i < n; ++i) companion(i, i - 1) = 1.0;
    ExpectSameSetAsReference(companion, "companion " + std::to_string(n));
  }
}

TEST(Eigenvalues, OfCyclicPermutationsAreTheRootsOfOne) {
  for (const int n : {3, 4, 5, 6, 7, 16, 31, 64}) {
    for (const double shift : {0.0, 2.5}) {  // the plain double shift stalls on each of them
      std::vector<Complex> set = EigenvaluesOf(CyclicPermutation(n) + shift * Matrix(n, kUnit));
      ASSERT_EQ(static_cast<int>(set.size()), n) << shift;
      for (int k = 0; k < n; ++k) {
        const Complex root = std::polar(1.0, 2 * std::acos(-1.0) * k / n) + shift;
        // Normal: an eigenvalue moves by no more than the perturbation. The norm is at most (1 + shift) sqrt(n).
        EXPECT_LE(TakeNearest(set, root), EigenvalueError(n) * (1 + shift) * std::sqrt(n))
            << n << ", " << shift << ", " << k;
      }
    }
  }
}

TEST(Eigenvalues, ShiftOfAnotherKindComesAtTheTenthStep) {
  // Ten plain steps do no more than permute the permutation; the other shift breaks the cycle and four more finish.
  EXPECT_EQ(eigenvalues(CyclicPermutation(3)).steps, 15);
}

TEST(Eigenvalues, ShiftOfAnotherKindComesAtEveryTenthStep) {
  // Stays in a cycle for good when the other shift comes at steps 10 and 20 only.
  const Matrix a = MatrixOf({{0.0, 0.0, 0.0, -1.0, 0.0, 0.0, 0.0},
                             {1.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0},
                             {0.0, -1.0, 1.0, 0.0, 0.0, -1.0, 0.0},
                             {-1.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0},
                             {-1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 1.0},
                             {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0},
                             {0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0}});
  const Eigenvalues values = eigenvalues(a);
  ASSERT_EQ(values.re.dim(), 7);
  EXPECT_GT(values.steps, 30);
}

TEST(Eigenvalues, OfDefectiveMatricesAreAsNearAsTheirBlocksAllow) {
  // S J S^-1 with integers throughout, so that it is exact: J has blocks of orders 3 and 2 for 2 and -3, and 7.
  Matrix j = MatrixOf({{2.0, 1.0, 0.0, 0.0, 0.0, 0.0},
                       {0.0, 2.0, 1.0, 0.0, 0.0, 0.0},
                       {0.0, 0.0, 2.0, 0.0, 0.0, 0.0},
                       {0.0, 0.0, 0.0, -3.0, 1.0, 0.0},
                       {0.0, 0.0, 0.0, 0.0, -3.0, 0.0},
                       {0.0, 0.0, 0.0, 0.0, 0.0, 7.0}});
  Matrix s(6, kUnit);
  for (int i = 0; i < 6; ++i) {
    for (int k = 0; k < i; ++k) s(i, k) = (i + 2 * k) % 3 - 1;
  }
  const Matrix inverse = s.inv();
  ASSERT_TRUE(Equal(s * inverse, Matrix(6, kUnit)));
  const Matrix a = s * j * inverse;
  std::vector<Complex> set = EigenvaluesOf(a);
  ASSERT_EQ(set.size(), 6U);
  // For a Jordan form with blocks of order m, |move|^m / (1 + |move|)^(m - 1) <= |S^-1 E S| (Kahan, Parlett and Jiang
  // 1982): the m-th root, with 2 for the denominator and 2 because nearest neighbours may be taken in a bad order.
  const double perturbation = FrobeniusNorm(s) * FrobeniusNorm(inverse) * EigenvalueError(6) * FrobeniusNorm(a);
  for (const auto& [value, order] : {std::pair{2.0, 3}, std::pair{-3.0, 2}, std::pair{7.0, 1}}) {
    for (int k = 0; k < order; ++k) {
      EXPECT_LE(TakeNearest(set, value), 4 * std::pow(perturbation, 1.0 / order)) << value;
    }
  }
  EXPECT_LT(4 * std::cbrt(perturbation), 0.01);
}

TEST(Eigenvalues, OfBadlyScaledMatricesAsFarAsTheFloorAllows) {
  // Rows and columns scaled against each other, as D A D^-1 with a D from 1 to 2^-24.
  Matrix graded = RandomMatrix(5, 5, 77);
  for (int i = 0; i < 5; ++i) {
    for (int k = 0; k < 5; ++k) graded(i, k) = std::ldexp(graded(i, k), 6 * (k - i));
  }
  ExpectSameSetAsReference(graded, "graded");
  // All subcolumns about 1e-9 long: nearly triangular, and not far above the floor.
  Matrix low = RandomMatrix(5, 5, 78);
  for (int i = 0; i < 5; ++i) {
    for (int k = 0; k < i; ++k) low(i, k) = std::ldexp(low(i, k), -30);
  }
  ExpectSameSetAsReference(low, "low");
}

TEST(Eigenvalues, BelowTheFloorAreWrongUntilTheMatrixIsScaledUp) {
  // In effect 5 and the eigenvalues of {{1.5, 2.5}, {-2, 4}}, 2.75 +- i sqrt(11 - 2.75^2).
  const Matrix a = MatrixOf({{5.0, 2.0, 3.0}, {0.6e-11, 1.5, 2.5}, {0.8e-11, -2.0, 4.0}});
  const Complex root(2.75, std::sqrt(11.0 - 2.75 * 2.75));
  std::vector<Complex> wrong = EigenvaluesOf(a);
  EXPECT_GT(TakeNearest(wrong, root), 0.05);
  const double scale = std::ldexp(1.0, 40);
  std::vector<Complex> right = EigenvaluesOf(scale * a);
  // The subcolumn itself moves the root by its length times a condition number of about 2.
  EXPECT_LE(TakeNearest(right, scale * root) / scale, 1e-10);
}

TEST(Eigenvalues, OfADiagonalMatrixAreItsDiagonalInOrder) {
  const Eigenvalues values =
      eigenvalues(MatrixOf({{2.5, 0.0, 0.0, 0.0}, {0.0, -7.0, 0.0, 0.0}, {0.0, 0.0, 0.0, 0.0}, {0.0, 0.0, 0.0, 3.0}}));
  EXPECT_TRUE(Equal(values.re, VectorOf({2.5, -7.0, 0.0, 3.0})));
  EXPECT_TRUE(Equal(values.im, Vector(4)));
}

TEST(Eigenvalues, OfZeroAreZero) {
  EXPECT_TRUE(Equal(eigenvalues(Matrix(4, 4)).re, Vector(4)));
  EXPECT_TRUE(Equal(eigenvalues(Matrix(4, 4)).im, Vector(4)));
}

TEST(Eigenvalues, OfARotationAreAPairWithTheNegativeFirst) {
  const Eigenvalues values = eigenvalues(MatrixOf({{0.0, -1.0}, {1.0, 0.0}}));
  EXPECT_TRUE(Equal(values.re, VectorOf({0.0, 0.0})));
  EXPECT_TRUE(Equal(values.im, VectorOf({-1.0, 1.0})));
}

TEST(Eigenvalues, OfATwoByTwoBlockFollowTheFormula) {
  // x = 4, y = 1, w = 6: p = -1.5, q = 8.25, z' = -1.5 - sqrt(8.25).
  const double z = -1.5 - std::sqrt(8.25);
  EXPECT_TRUE(Equal(eigenvalues(MatrixOf({{1.0, 2.0}, {3.0, 4.0}})).re, VectorOf({4.0 + z, 4.0 - 6.0 / z})));
  // p = 0 counts as positive: x + z first.
  EXPECT_TRUE(Equal(eigenvalues(MatrixOf({{2.0, 9.0}, {1.0, 2.0}})).re, VectorOf({5.0, -1.0})));
  // z' = 0: the second root equals the first.
  EXPECT_TRUE(Equal(eigenvalues(MatrixOf({{3.0, 0.0}, {5.0, 3.0}})).re, VectorOf({3.0, 3.0})));
}

TEST(Eigenvalues, NegligibleIsWhatAddsNothingInMachinePrecision) {
  // 2^-52 beside 3 + 5 = 8 adds nothing, and so the diagonal stands; 2^-49 times 2^49 does.
  const double tiny = 0x1p-52;
  EXPECT_TRUE(Equal(eigenvalues(MatrixOf({{3.0, 0x1p52}, {tiny, 5.0}})).re, VectorOf({3.0, 5.0})));
  const double small = 0x1p-49;
  EXPECT_FALSE(Equal(eigenvalues(MatrixOf({{3.0, 0x1p49}, {small, 5.0}})).re, VectorOf({3.0, 5.0})));
}

TEST(Eigenvalues, BesideAZeroDiagonalNegligibleIsMeasuredByTheNorm) {
  // 2^-53 beside a norm of 4 adds nothing: a pair +-sqrt(2^-51) if it counted, 0 and 0 because it does not.
  EXPECT_TRUE(Equal(eigenvalues(MatrixOf({{0.0, 4.0}, {0x1p-53, 0.0}})).re, Vector(2)));
  EXPECT_FALSE(Equal(eigenvalues(MatrixOf({{0.0, 4.0}, {0x1p-48, 0.0}})).re, Vector(2)));
}

TEST(Eigenvalues, NormCountsTheSubdiagonal) {
  // 2^-44 adds nothing to a norm of 2^10, which is all in the subdiagonal; to 7 and a bit, the rest, it would.
  const Matrix a =
      MatrixOf({{0.0, 0x1p-10, 0.0, 0.0}, {0x1p-44, 0.0, 0.0, 0.0}, {0.0, 0.0, 2.0, 0.0}, {0.0, 0.0, 0x1p10, 5.0}});
  const Eigenvalues values = eigenvalues(a);
  ASSERT_EQ(values.re.dim(), 4);
  EXPECT_EQ(values.re[0], 0.0);
  EXPECT_EQ(values.re[1], 0.0);
}

TEST(Eigenvalues, KeepTheHessenbergForm) {
  const Matrix a = RandomMatrix(5, 5, 3);
  EXPECT_TRUE(Equal(eigenvalues(a).hessenberg, hessenberg(a)));
}

TEST(Eigenvalues, PrintNothing) {
  EXPECT_EQ(OutputOf([] { static_cast<void>(eigenvalues(RandomMatrix(5, 5, 3))); }), "");
}

TEST(Eigenvalues, OfAMatrixThatIsNotSquareAreEmpty) {
  const Eigenvalues values = eigenvalues(Matrix(3, 2));
  EXPECT_TRUE(IsEmpty(values.hessenberg));
  EXPECT_EQ(values.re.dim(), 0);
  EXPECT_EQ(values.im.dim(), 0);
}

TEST(Eigenvalues, WithoutConvergenceAreEmpty) {
  Matrix a = RandomMatrix(4, 4, 5);
  a(2, 1) = std::numeric_limits<double>::quiet_NaN();
  const Eigenvalues values = eigenvalues(a);
  EXPECT_EQ(values.steps, 101);  // the count is looked at before it is raised
  EXPECT_EQ(values.hessenberg.rows(), 4);
  EXPECT_EQ(values.re.dim(), 0);
  EXPECT_EQ(values.im.dim(), 0);
}

TEST(Eigen, PrintsTheFormAndBothVectors) {
  Matrix table;
  const std::string output = OutputOf([&] {
    table = MatrixOf({{2.0, 3.0, 5.0}, {0.0, 1.5, -2.0}, {0.0, 2.0, 1.5}}).eigen();
  });
  EXPECT_EQ(output,
            "copied T =     2.0000    3.0000    5.0000\n"
            "    0.0000    1.5000   -2.0000\n"
            "    0.0000    2.0000    1.5000\n"
            "\neigen values(Re) =     2.0000    1.5000    1.5000"
            "\neigen values(Im) =     0.0000   -2.0000    2.0000");
  EXPECT_TRUE(Equal(table, MatrixOf({{2.0, 0.0}, {1.5, -2.0}, {1.5, 2.0}})));
}

TEST(Eigen, PrintsTheReducedMatrix) {
  const std::string output = OutputOf([] {
    static_cast<void>(MatrixOf({{1.0, 2.0, 3.0}, {3.0, 5.0, 7.0}, {4.0, 6.0, 8.0}}).eigen());
  });
  EXPECT_EQ(output.substr(0, output.find("\neigen")),
            "copied T =     1.0000   -3.6000    0.2000\n"
            "   -5.0000   13.1600   -0.1200\n"
            "    0.0000    0.8800   -0.1600\n");
}

TEST(Eigen, ReturnsTheEigenvaluesInTwoColumns) {
  const Matrix a = RandomMatrix(6, 6, 8);
  const Eigenvalues values = eigenvalues(a);
  Matrix table;
  static_cast<void>(OutputOf([&] { table = a.eigen(); }));
  ASSERT_EQ(table.rows(), 6);
  ASSERT_EQ(table.cols(), 2);
  for (int k = 0; k < 6; ++k) {
    EXPECT_EQ(table(k, 0), values.re[k]);
    EXPECT_EQ(table(k, 1), values.im[k]);
  }
}

TEST(Eigen, WithoutConvergencePrintsTheFormAloneAndIsEmpty) {
  Matrix a(3, 3);
  a.fill(std::numeric_limits<double>::quiet_NaN());
  Matrix table(9, 9);
  const std::string output = OutputOf([&] { table = a.eigen(); });
  EXPECT_EQ(output.substr(0, 11), "copied T = ");
  EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 3);
  EXPECT_EQ(output.find("eigen values"), std::string::npos);
  EXPECT_TRUE(IsEmpty(table));
}

TEST(Eigen, OfAMatrixThatIsNotSquareIsEmptyWithoutAWord) {
  Matrix table(9, 9);
  EXPECT_EQ(OutputOf([&] { table = Matrix(2, 3).eigen(); }), "");
  EXPECT_TRUE(IsEmpty(table));
}

TEST(Eigen, OfNothingPrintsTheLabels) {
  EXPECT_EQ(OutputOf([] { EXPECT_TRUE(Equal(Matrix().eigen(), Matrix(0, 2))); }),
            "copied T = \neigen values(Re) = \neigen values(Im) = ");
}

TEST(Sign, CarriesTheSignOfTheSecondOntoTheFirst) {
  EXPECT_EQ(sign(2.5, 3.0), 2.5);
  EXPECT_EQ(sign(-2.5, 3.0), 2.5);
  EXPECT_EQ(sign(2.5, -3.0), -2.5);
  EXPECT_EQ(sign(-2.5, -3.0), -2.5);
  EXPECT_EQ(sign(-2.5, 0.0), 2.5);
  EXPECT_EQ(sign(-2.5, -0.0), 2.5);
}

}  // namespace
}  // namespace orvanel
