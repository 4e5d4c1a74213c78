// Tests one step of the plain QR iteration, and the iteration that prints each step.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include "orvanel/matrix.h"
#include "tests/matrix/examples.h"
#include "tests/matrix/independent.h"
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

constexpr char kStepLabel[] = "X (after qr_dec()) = ";

int Count(const std::string& text, const std::string& part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

Matrix Magnitudes(const Matrix& a) {
  Matrix magnitudes(a.rows(), a.cols());
  for (int i = 0; i < a.rows(); ++i) {
    for (int j = 0; j < a.cols(); ++j) magnitudes(i, j) = std::fabs(a(i, j));
  }
  return magnitudes;
}

TEST(QrStep, IsTheProductOfTheFactorsInReverse) {
  for (const int n : {2, 3, 5, 12}) {
    Matrix x = RandomMatrix(n, n, static_cast<unsigned>(n));
    for (int i = 0; i < n; ++i) x(i, i) += 2.0 * n;  // well conditioned, so that the factors are
    const test::IndependentQrStep reference = test::QrStepByEigen(x);
    // Factors are unique but for the signs of rows of R, which show as signs of elements of the product. The
    // factors of a perturbed matrix move by the condition number.
    const double bound = 2 * QrStepError(n) * reference.condition * FrobeniusNorm(x);
    EXPECT_LE(FrobeniusNorm(Magnitudes(qr_dec(x)) - Magnitudes(reference.product)), bound) << n;
    EXPECT_LT(bound, 1e-10) << n;
  }
}

TEST(QrStep, KeepsAHessenbergForm) {
  const Matrix x = qr_dec(hessenberg(RandomMatrix(7, 7, 4)));
  for (int i = 2; i < 7; ++i) {
    for (int j = 0; j < i - 1; ++j) EXPECT_EQ(x(i, j), 0.0);
  }
}

TEST(QrStep, LeavesATriangularMatrixAsItIs) {
  const Matrix x = MatrixOf({{2.0, 3.0, 5.0}, {0.0, -7.0, 11.0}, {0.0, 0.0, 13.0}});
  EXPECT_TRUE(Equal(qr_dec(x), x));
}

TEST(QrStep, TurnsARowWithoutItsDiagonalElement) {
  EXPECT_TRUE(Equal(qr_dec(MatrixOf({{0.0, 3.0}, {2.0, 5.0}})), MatrixOf({{5.0, -2.0}, {-3.0, 0.0}})));
}

TEST(QrStep, OfAMatrixThatIsNotSquareIsEmptyWithoutAWord) {
  EXPECT_EQ(OutputOf([] { EXPECT_TRUE(IsEmpty(qr_dec(Matrix(2, 3)))); }), "");
}

TEST(QrStep, PrintsNothing) {
  EXPECT_EQ(OutputOf([] { static_cast<void>(qr_dec(RandomMatrix(4, 4, 3))); }), "");
}

TEST(QrIteration, PrintsTheHessenbergFormAndEachStep) {
  const Matrix a = RandomSymmetricMatrix(4, 12);
  Matrix last;
  const std::string output = OutputOf([&] { last = a.qr_iteration(); });
  Matrix x = hessenberg(a);
  const std::string expected = OutputOf([&] {
    std::printf("hessenberg = ");
    x.print();
    for (int step = 0; step < Count(output, kStepLabel); ++step) {
      x = qr_dec(x);
      std::printf("%s", kStepLabel);
      x.print();
    }
  });
  EXPECT_EQ(output, expected);
  EXPECT_TRUE(Equal(last, x));
}

TEST(QrIteration, BringsRealEigenvaluesOntoTheDiagonal) {
  const Matrix a = MatrixOf({{9.0, 1.5, -0.5}, {1.5, 4.0, 0.25}, {-0.5, 0.25, -1.0}});
  Matrix last;
  const int steps = Count(OutputOf([&] { last = a.qr_iteration(); }), kStepLabel);
  EXPECT_GT(steps, 1);
  EXPECT_LT(steps, kQrSteps);
  const std::vector<double> expected = test::SymmetricEigenvaluesByEigen(a);
  ASSERT_EQ(expected.size(), 3U);
  double diagonal[] = {last(0, 0), last(1, 1), last(2, 2)};
  std::sort(diagonal, diagonal + 3);
  // Symmetric: an eigenvalue moves by no more than the perturbations of the form and of all steps.
  const double bound = (FormError(3) + steps * QrStepError(3)) * FrobeniusNorm(a);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_LE(std::fabs(diagonal[i] - expected[i]), bound);
}

TEST(QrIteration, TakesAtLeastOneStepAndAtMostItsLimit) {
  EXPECT_EQ(Count(OutputOf([] {
                    static_cast<void>(MatrixOf({{2.0, 0.0}, {0.0, 3.0}}).qr_iteration());
                  }),
                  kStepLabel),
            1);
  EXPECT_EQ(Count(OutputOf([] {
                    static_cast<void>(MatrixOf({{0.0, -2.0}, {2.0, 0.0}}).qr_iteration());
                  }),
                  kStepLabel),
            kQrSteps);
}

TEST(QrIteration, OfNothingPrintsTheLabels) {
  EXPECT_EQ(OutputOf([] { EXPECT_TRUE(IsEmpty(Matrix().qr_iteration())); }), "hessenberg = X (after qr_dec()) = ");
}

}  // namespace
}  // namespace orvanel
