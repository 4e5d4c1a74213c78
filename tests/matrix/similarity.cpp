// Computes the orthogonal transform from a matrix to its form, in long double.
#include "tests/matrix/similarity.h"

#include <Eigen/Dense>
#include <cmath>

#include "tests/matrix/to_eigen.h"

namespace orvanel::test {

// With its first column given, A and H determine the orthogonal Q of A Q = Q H column by column; Q is computed so in
// more precision. A column's error grows by up to 1 + 2 |A| / |h| when the subdiagonal element h gives the next.
Similarity SimilarityOf(const Matrix& a, const Matrix& h) {
  using LongMatrix = Eigen::Matrix<long double, Eigen::Dynamic, Eigen::Dynamic>;
  const int n = a.rows();
  const LongMatrix exact_a = ToEigen(a).cast<long double>();
  const LongMatrix exact_h = ToEigen(h).cast<long double>();
  const long double norm = exact_a.norm();
  LongMatrix q = LongMatrix::Zero(n, n);
  q(0, 0) = 1.0L;
  long double growth = 1.0L;
  for (int k = 0; k + 1 < n; ++k) {
    q.col(k + 1) = (exact_a * q.col(k) - q * exact_h.col(k)) / exact_h(k + 1, k);
    growth *= 1.0L + 2.0L * norm / std::fabs(exact_h(k + 1, k));
  }
  const LongMatrix identity = LongMatrix::Identity(n, n);
  return {static_cast<double>((q.transpose() * q - identity).norm()),
          static_cast<double>((exact_a * q - q * exact_h).norm() / norm), static_cast<double>(growth) * FormError(n)};
}

}  // namespace orvanel::test
