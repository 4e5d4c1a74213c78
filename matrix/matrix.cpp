// Implements matrices: construction, assignment, arithmetic and shape checks.
#include "orvanel/matrix.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "base/standard_output.h"
#include "matrix/messages.h"

namespace orvanel {
namespace {

bool SameShape(const Matrix& left, const Matrix& right) {
  return left.rows() == right.rows() && left.cols() == right.cols();
}

bool IsOneByOne(const Matrix& matrix) { return matrix.rows() == 1 && matrix.cols() == 1; }

void SayOperands(Text headline, const Matrix& left, const Matrix& right) {
  Say(headline);
  Say(Text::kMatrixLeft, {left.rows(), left.cols()});
  Say(Text::kMatrixRight, {right.rows(), right.cols()});
}

void SayCompound(Text headline, const Matrix& left, const Matrix& right) {
  Say(headline);
  Say(Text::kMatrixThis, {left.rows(), left.cols()});
  Say(Text::kMatrixOperand, {right.rows(), right.cols()});
}

}  // namespace

// A separate array: a string literal might share its address with an equal one of the caller.
const char kUnit[] = "unit";

Matrix::Matrix(int rows, int cols) { Matrix::resize(rows, cols); }

Matrix::Matrix(int n, const char* kind) : Matrix(n, n) {
  if (kind == kUnit) Matrix::unit();
}

Matrix::Matrix(Matrix&& other) noexcept : rows_(std::exchange(other.rows_, {})), cols_(std::exchange(other.cols_, 0)) {}

Matrix& Matrix::operator=(Matrix&& other) noexcept {
  rows_ = std::exchange(other.rows_, {});
  cols_ = std::exchange(other.cols_, 0);
  return *this;
}

Matrix& Matrix::operator+=(const Matrix& right) {
  if (!SameShape(*this, right)) {
    SayCompound(Text::kMatrixPlusAssign, *this, right);
    return *this;
  }
  for (int i = 0; i < rows(); ++i) row(i) += right.row(i);
  return *this;
}

Matrix& Matrix::operator-=(const Matrix& right) {
  if (!SameShape(*this, right)) {
    SayCompound(Text::kMatrixMinusAssign, *this, right);
    return *this;
  }
  for (int i = 0; i < rows(); ++i) row(i) -= right.row(i);
  return *this;
}

Matrix::operator double() const {
  if (!IsOneByOne(*this)) {
    Say(Text::kCast);
    Say(Text::kCastOperand, {rows(), cols()});
    return 0.0;
  }
  return (*this)(0, 0);
}

void Matrix::print() const {
  for (const Vector& row : rows_) {
    row.print();
    WriteOutput("\n");
  }
}

void Matrix::clear() {
  rows_ = std::vector<Vector>();
  cols_ = 0;
}

void Matrix::resize(int rows, int cols) {
  cols_ = std::max(cols, 0);
  rows_.resize(static_cast<std::size_t>(std::max(rows, 0)));
  for (Vector& row : rows_) row.resize(cols_);
}

void Matrix::fill(double value) {
  for (Vector& row : rows_) row.fill(value);
}

void Matrix::unit() {
  if (rows() != cols()) return;
  fill(0.0);
  for (int i = 0; i < rows(); ++i) (*this)(i, i) = 1.0;
}

Matrix operator*(const Matrix& left, const Matrix& right) {
  if (left.cols() != right.rows()) {
    SayOperands(Text::kMatrixProduct, left, right);
    return Matrix();
  }
  Matrix product(left.rows(), right.cols());
  for (int i = 0; i < product.rows(); ++i) {
    for (int k = 0; k < left.cols(); ++k) product.row(i) += left(i, k) * right.row(k);
  }
  return product;
}

Matrix operator+(const Matrix& left, const Matrix& right) {
  if (!SameShape(left, right)) {
    SayOperands(Text::kMatrixSum, left, right);
    return Matrix();
  }
  Matrix sum = left;
  sum += right;
  return sum;
}

Matrix operator-(const Matrix& left, const Matrix& right) {
  if (!SameShape(left, right)) {
    SayOperands(Text::kMatrixDifference, left, right);
    return Matrix();
  }
  Matrix difference = left;
  difference -= right;
  return difference;
}

Matrix operator*(const Matrix& matrix, double factor) {
  Matrix product = matrix;
  for (int i = 0; i < product.rows(); ++i) product.row(i) = product.row(i) * factor;
  return product;
}

Matrix operator*(double factor, const Matrix& matrix) { return matrix * factor; }

Matrix operator/(const Matrix& matrix, double divisor) {
  Matrix quotient = matrix;
  for (int i = 0; i < quotient.rows(); ++i) quotient.row(i) = quotient.row(i) / divisor;
  return quotient;
}

Matrix operator/(const Matrix& matrix, const Matrix& divisor) {
  if (!IsOneByOne(divisor)) {
    Say(Text::kMatrixQuotient);
    return Matrix();
  }
  return matrix / divisor(0, 0);
}

}  // namespace orvanel
