// Declares results of an independent implementation, Eigen. Its templates are compiled once, in independent.cpp, since
// they compile longer than all tests of matrices.
#ifndef ORVANEL_TESTS_MATRIX_INDEPENDENT_H
#define ORVANEL_TESTS_MATRIX_INDEPENDENT_H

#include <complex>
#include <vector>

#include "orvanel/matrix.h"

namespace orvanel::test {

// In an order of its own. A condition is |x| |y|, where x is the column of the matrix of eigenvectors and y the row of
// its inverse that belong to the value.
struct IndependentEigenvalues {
  std::vector<std::complex<double>> values;
  std::vector<double> conditions;
};
IndependentEigenvalues EigenvaluesByEigen(const Matrix& a);

// Of a symmetric matrix, the smallest first.
std::vector<double> SymmetricEigenvaluesByEigen(const Matrix& a);

// The product of the pivots, all in long double.
long double DeterminantByEigen(const Matrix& a);

// R Q of the factors of A = Q R, and the condition number of A: its largest singular value over its smallest.
struct IndependentQrStep {
  Matrix product;
  double condition;
};
IndependentQrStep QrStepByEigen(const Matrix& a);

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_MATRIX_INDEPENDENT_H
