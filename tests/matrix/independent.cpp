// Calls the eigenvalues, determinants and factors of Eigen.
#include "tests/matrix/independent.h"

#include <Eigen/Dense>

#include "tests/matrix/to_eigen.h"

namespace orvanel::test {

IndependentEigenvalues EigenvaluesByEigen(const Matrix& a) {
  const Eigen::EigenSolver<Eigen::MatrixXd> solver(ToEigen(a));
  const Eigen::MatrixXcd vectors = solver.eigenvectors();
  const Eigen::MatrixXcd inverse = vectors.inverse();
  IndependentEigenvalues result;
  for (int k = 0; k < a.rows(); ++k) {
    result.values.push_back(solver.eigenvalues()(k));
    result.conditions.push_back(vectors.col(k).norm() * inverse.row(k).norm());
  }
  return result;
}

std::vector<double> SymmetricEigenvaluesByEigen(const Matrix& a) {
  const Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> solver(ToEigen(a), Eigen::EigenvaluesOnly);
  return {solver.eigenvalues().data(), solver.eigenvalues().data() + a.rows()};
}

long double DeterminantByEigen(const Matrix& a) {
  using LongMatrix = Eigen::Matrix<long double, Eigen::Dynamic, Eigen::Dynamic>;
  return LongMatrix(ToEigen(a).cast<long double>()).partialPivLu().determinant();
}

IndependentQrStep QrStepByEigen(const Matrix& a) {
  const Eigen::HouseholderQR<Eigen::MatrixXd> qr(ToEigen(a));
  const Eigen::MatrixXd q = qr.householderQ();
  const Eigen::MatrixXd r = qr.matrixQR().triangularView<Eigen::Upper>();
  const Eigen::MatrixXd product = r * q;
  const Eigen::VectorXd singular = Eigen::JacobiSVD<Eigen::MatrixXd>(ToEigen(a)).singularValues();
  const int n = a.rows();
  IndependentQrStep result{Matrix(n, n), singular(0) / singular(n - 1)};
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) result.product(i, j) = product(i, j);
  }
  return result;
}

}  // namespace orvanel::test
