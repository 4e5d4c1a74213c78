// Computes the two inverses: by elimination and by cofactors.
#include "matrix/messages.h"
#include "orvanel/matrix.h"

namespace orvanel {
namespace {

constexpr double kLimit = 1e-5;  // absolute: neither rule depends on the size of the entries

// Usable pivots exclude the lower bound and include the upper one; NaN is not usable.
bool IsUsablePivot(double pivot) { return pivot >= kLimit || pivot < -kLimit; }

// Usable determinants include both bounds and NaN.
bool IsTooSmallDeterminant(double determinant) { return -kLimit < determinant && determinant < kLimit; }

// The matrix with the identity to its right.
Matrix Augmented(const Matrix& matrix) {
  const int n = matrix.rows();
  Matrix work(n, 2 * n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) work(i, j) = matrix(i, j);
    work(i, n + i) = 1.0;
  }
  return work;
}

Matrix RightHalf(const Matrix& work) {
  const int n = work.rows();
  Matrix half(n, n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) half(i, j) = work(i, n + j);
  }
  return half;
}

}  // namespace

Matrix Matrix::inv() const {
  if (rows() != cols()) {
    Say(Text::kInverse);
    Say(Text::kNotSquare, {rows(), cols()});
    return Matrix();
  }
  Matrix work = Augmented(*this);
  for (int i = 0; i < rows(); ++i) {
    const double pivot = work(i, i);
    if (!IsUsablePivot(pivot)) return Matrix(1, 1);
    work.row(i) = work.row(i) / pivot;
    for (int k = 0; k < rows(); ++k) {
      if (k != i) work.row(k) -= work(k, i) * work.row(i);
    }
  }
  return RightHalf(work);
}

Matrix Matrix::invc() const {
  if (rows() != cols()) return Matrix();
  const double determinant = det();
  if (IsTooSmallDeterminant(determinant)) {
    Say(Text::kInverseByCofactors);
    Say(Text::kNotRegular, {rows(), cols()});
    return Matrix();
  }
  Matrix inverse(rows(), cols());
  for (int i = 0; i < rows(); ++i) {
    for (int j = 0; j < cols(); ++j) inverse(j, i) = cofactor(i, j) / determinant;
  }
  return inverse;
}

}  // namespace orvanel
