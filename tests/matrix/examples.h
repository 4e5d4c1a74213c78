// Makes matrices for tests, and measures them.
#ifndef ORVANEL_TESTS_MATRIX_EXAMPLES_H
#define ORVANEL_TESTS_MATRIX_EXAMPLES_H

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <random>

#include "orvanel/matrix.h"

namespace orvanel::test {

inline Vector VectorOf(std::initializer_list<double> elements) {
  Vector vector(static_cast<int>(elements.size()));
  int i = 0;
  for (const double element : elements) vector[i++] = element;
  return vector;
}

inline Matrix MatrixOf(std::initializer_list<std::initializer_list<double>> rows) {
  Matrix matrix(static_cast<int>(rows.size()), static_cast<int>(rows.begin()->size()));
  int i = 0;
  for (const auto& row : rows) matrix.row(i++) = VectorOf(row);
  return matrix;
}

// Elements from -1 to 1, the same on every platform (which the library's distributions are not).
inline Matrix RandomMatrix(int rows, int cols, std::uint64_t seed) {
  std::mt19937_64 engine(seed);
  Matrix matrix(rows, cols);
  for (int i = 0; i < rows; ++i) {
    for (int j = 0; j < cols; ++j) matrix(i, j) = static_cast<double>(engine() >> 11) * 0x1p-52 - 1.0;
  }
  return matrix;
}

inline Matrix Transposed(const Matrix& a) {
  Matrix t(a.cols(), a.rows());
  for (int i = 0; i < t.rows(); ++i) {
    for (int j = 0; j < t.cols(); ++j) t(i, j) = a(j, i);
  }
  return t;
}

inline Matrix RandomSymmetricMatrix(int n, std::uint64_t seed) {
  const Matrix a = RandomMatrix(n, n, seed);
  return a + Transposed(a);
}

// Maps unit vector j onto unit vector j + 1: its eigenvalues are the n-th roots of one.
inline Matrix CyclicPermutation(int n) {
  Matrix a(n, n);
  for (int j = 0; j < n; ++j) a((j + 1) % n, j) = 1.0;
  return a;
}

// The root of the sum of all squares.
inline double FrobeniusNorm(const Matrix& a) {
  double sum = 0.0;
  for (int i = 0; i < a.rows(); ++i) {
    for (int j = 0; j < a.cols(); ++j) sum += a(i, j) * a(i, j);
  }
  return std::sqrt(sum);
}

// The largest sum of magnitudes in a row.
inline double RowSumNorm(const Matrix& a) {
  double largest = 0.0;
  for (int i = 0; i < a.rows(); ++i) {
    double sum = 0.0;
    for (int j = 0; j < a.cols(); ++j) sum += std::fabs(a(i, j));
    largest = std::fmax(largest, sum);
  }
  return largest;
}

// The sum over all permutations of the products of magnitudes: what the expansion of a determinant adds up, without its
// signs.
inline double PermanentOfMagnitudes(const Matrix& a) {
  if (a.rows() == 0) return 1.0;
  double sum = 0.0;
  for (int j = 0; j < a.cols(); ++j) sum += std::fabs(a(0, j)) * PermanentOfMagnitudes(a.minor_matrix(0, j));
  return sum;
}

// Same shape and, by ==, same elements.
inline bool Equal(const Matrix& a, const Matrix& b) {
  if (a.rows() != b.rows() || a.cols() != b.cols()) return false;
  for (int i = 0; i < a.rows(); ++i) {
    for (int j = 0; j < a.cols(); ++j) {
      if (a(i, j) != b(i, j)) return false;
    }
  }
  return true;
}

inline bool Equal(const Vector& a, const Vector& b) {
  if (a.dim() != b.dim()) return false;
  for (int i = 0; i < a.dim(); ++i) {
    if (a[i] != b[i]) return false;
  }
  return true;
}

inline bool IsEmpty(const Matrix& a) { return a.rows() == 0 && a.cols() == 0; }

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_MATRIX_EXAMPLES_H
