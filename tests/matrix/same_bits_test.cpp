// Tests that every result has the same bits for every compiler, optimisation and C library. Other tests check whether
// they are right. A number changes only together with a line about results in the change log.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

#include "orvanel/matrix.h"
#include "tests/matrix/examples.h"

namespace orvanel {
namespace {

using test::RandomMatrix;
using test::RandomSymmetricMatrix;

// FNV-1a over the bits of the elements, row by row.
std::uint64_t Hash(const Matrix& a) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (int i = 0; i < a.rows(); ++i) {
    for (int j = 0; j < a.cols(); ++j) hash = (hash ^ std::bit_cast<std::uint64_t>(a(i, j))) * 0x100000001b3;
  }
  return hash;
}

Matrix Row(const Vector& vector) {
  Matrix row(1, vector.dim());
  row.row(0) = vector;
  return row;
}

Matrix Dominant(int n, std::uint64_t seed) { return RandomMatrix(n, n, seed) + (n + 0.5) * Matrix(n, kUnit); }

TEST(SameBits, OfTheProduct) {
  EXPECT_EQ(Hash(RandomMatrix(20, 30, 1) * RandomMatrix(30, 10, 2)), 0xa66ec3104c694aecU);
}

TEST(SameBits, OfTheInverse) { EXPECT_EQ(Hash(Dominant(24, 3).inv()), 0xc2723e8528765b7eU); }

TEST(SameBits, OfTheInverseByCofactors) { EXPECT_EQ(Hash(Dominant(6, 4).invc()), 0x2427e5dad97f2575U); }

TEST(SameBits, OfTheReflection) { EXPECT_EQ(Hash(householder(RandomMatrix(1, 20, 5))), 0xa51adf8e309a10eeU); }

TEST(SameBits, OfTheTridiagonalForm) { EXPECT_EQ(Hash(tridiag(RandomSymmetricMatrix(24, 6))), 0x5004bae847edfb87U); }

TEST(SameBits, OfTheHessenbergForm) { EXPECT_EQ(Hash(hessenberg(RandomMatrix(24, 24, 7))), 0x778ea876f551a035U); }

TEST(SameBits, OfTheQrStep) { EXPECT_EQ(Hash(qr_dec(RandomMatrix(16, 16, 8))), 0x87c2da41422de602U); }

TEST(SameBits, OfTheEigenvalues) {
  const Eigenvalues values = eigenvalues(RandomMatrix(24, 24, 9));
  EXPECT_EQ(Hash(Row(values.re)), 0x55cf211e4fc3789dU);
  EXPECT_EQ(Hash(Row(values.im)), 0x7ec874b9f7f2583bU);
}

TEST(SameBits, OfTheEigenvectors) {
  const Matrix a = RandomMatrix(10, 10, 10);
  const Eigenvalues values = eigenvalues(a);
  const Eigenvectors vectors = a.eigenvectors(values.re, values.im);
  EXPECT_EQ(Hash(vectors.re), 0x9d36adc08dee525aU);
  EXPECT_EQ(Hash(vectors.im), 0x4e71aa6e0b28dfe3U);
}

}  // namespace
}  // namespace orvanel
