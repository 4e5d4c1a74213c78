// Computes the determinant by expansion along the first row, its minors, and the trace.
#include "matrix/messages.h"
#include "orvanel/matrix.h"

namespace orvanel {
namespace {

bool IsSquare(const Matrix& matrix, Text headline) {
  if (matrix.rows() == matrix.cols()) return true;
  Say(headline);
  Say(Text::kNotSquare, {matrix.rows(), matrix.cols()});
  return false;
}

}  // namespace

Matrix Matrix::minor_matrix(int i, int j) const {
  Matrix minor(rows() - 1, cols() - 1);
  for (int r = 0; r < minor.rows(); ++r) {
    for (int c = 0; c < minor.cols(); ++c) minor(r, c) = (*this)(r < i ? r : r + 1, c < j ? c : c + 1);
  }
  return minor;
}

double Matrix::cofactor(int i, int j) const {
  const double minor = minor_matrix(i, j).det();
  return (i + j) % 2 == 0 ? minor : -minor;
}

double Matrix::det() const {
  if (!IsSquare(*this, Text::kDeterminant)) return 0.0;
  if (rows() < 1) return 0.0;
  if (rows() == 1) return (*this)(0, 0);
  double sum = 0.0;
  for (int j = 0; j < cols(); ++j) sum += (*this)(0, j) * cofactor(0, j);
  return sum;
}

double Matrix::tr() const {
  if (!IsSquare(*this, Text::kTrace)) return 0.0;
  double sum = 0.0;
  for (int i = 0; i < rows(); ++i) sum += (*this)(i, i);
  return sum;
}

}  // namespace orvanel
