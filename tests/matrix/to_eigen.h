// Converts a matrix to one of Eigen.
#ifndef ORVANEL_TESTS_MATRIX_TO_EIGEN_H
#define ORVANEL_TESTS_MATRIX_TO_EIGEN_H

#include <Eigen/Core>

#include "orvanel/matrix.h"

namespace orvanel::test {

inline Eigen::MatrixXd ToEigen(const Matrix& a) {
  Eigen::MatrixXd e(a.rows(), a.cols());
  for (int i = 0; i < a.rows(); ++i) {
    for (int j = 0; j < a.cols(); ++j) e(i, j) = a(i, j);
  }
  return e;
}

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_MATRIX_TO_EIGEN_H
