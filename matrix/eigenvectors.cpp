// Computes eigenvectors by inverse iteration.
//
// A complex vector u + i v is stored as the real one (u, v) of twice the dim, so that real arithmetic is enough for
// complex eigenvalues. The complex matrix M + i N acts on it as the real matrix [[M, -N], [N, M]].
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "orvanel/matrix.h"

namespace orvanel {
namespace {

// All for a matrix that is scaled to a largest element of 1.
constexpr double kResidual = 1e-10;       // largest residual of an eigenvector
constexpr double kCluster = 1e-5;         // eigenvalues closer to each other get orthogonal vectors
constexpr double kSmallestPivot = 1e-30;  // replaces smaller pivots: A - lambda I is singular
constexpr double kTooLong = 1e100;        // a solution with larger elements is scaled down, far below overflow
constexpr int kMaxSteps = 100;

double Length(const Vector& x) { return std::sqrt(x * x); }

double LargestMagnitude(const Matrix& a) {
  double largest = 0.0;
  for (int i = 0; i < a.rows(); ++i) {
    for (int j = 0; j < a.cols(); ++j) largest = std::max(largest, std::fabs(a(i, j)));
  }
  return largest;
}

// i times x.
Vector Turned(const Vector& x) {
  const int n = x.dim() / 2;
  Vector turned(2 * n);
  for (int i = 0; i < n; ++i) {
    turned[i] = -x[n + i];
    turned[n + i] = x[i];
  }
  return turned;
}

// A - (re + i im) I.
Matrix Shifted(const Matrix& a, double re, double im) {
  const int n = a.rows();
  Matrix shifted(2 * n, 2 * n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) shifted(i, j) = shifted(n + i, n + j) = a(i, j) - (i == j ? re : 0.0);
    shifted(i, n + i) = im;
    shifted(n + i, i) = -im;
  }
  return shifted;
}

// L U = P M by elimination with row exchanges.
class Factors {
 public:
  explicit Factors(Matrix m);

  // The direction of M^-1 x: solutions near overflow are scaled down on the way.
  Vector Solve(const Vector& x) const;

 private:
  Matrix lu_;               // L without its diagonal of ones below, U from the diagonal up
  std::vector<int> order_;  // row i of P M is row order_[i] of M
};

Factors::Factors(Matrix m) : lu_(std::move(m)) {
  const int n = lu_.rows();
  for (int i = 0; i < n; ++i) order_.push_back(i);
  for (int k = 0; k < n; ++k) {
    int largest = k;
    for (int i = k + 1; i < n; ++i) {
      if (std::fabs(lu_(i, k)) > std::fabs(lu_(largest, k))) largest = i;
    }
    std::swap(lu_.row(k), lu_.row(largest));
    std::swap(order_[static_cast<std::size_t>(k)], order_[static_cast<std::size_t>(largest)]);
    if (std::fabs(lu_(k, k)) < kSmallestPivot) lu_(k, k) = kSmallestPivot;
    for (int i = k + 1; i < n; ++i) {
      lu_(i, k) /= lu_(k, k);
      for (int j = k + 1; j < n; ++j) lu_(i, j) -= lu_(i, k) * lu_(k, j);
    }
  }
}

Vector Factors::Solve(const Vector& x) const {
  const int n = x.dim();
  Vector y(n);
  for (int i = 0; i < n; ++i) {
    y[i] = x[order_[static_cast<std::size_t>(i)]];
    for (int j = 0; j < i; ++j) y[i] -= lu_(i, j) * y[j];
  }
  for (int i = n - 1; i >= 0; --i) {
    y[i] /= lu_(i, i);
    if (std::fabs(y[i]) > kTooLong) y = y / std::fabs(y[i]);
    for (int j = 0; j < i; ++j) y[j] -= lu_(j, i) * y[i];
  }
  return y;
}

// x without its components along the directions, normalised like them. Removed twice, since the rest may be small and
// inexact.
Vector WithoutPartAlong(const std::vector<Vector>& directions, Vector x) {
  for (int pass = 0; pass < 2; ++pass) {
    for (const Vector& w : directions) {
      const Vector turned = Turned(w);
      x = x - (w * x) * w - (turned * x) * turned;
    }
    x = x / Length(x);
  }
  return x;
}

// The start vector: irregular, so that it has a component in every direction; the same everywhere; different for each
// number.
Vector StartVector(int n, std::size_t number) {
  std::mt19937 engine(static_cast<std::mt19937::result_type>(number));
  Vector start(2 * n);
  for (int i = 0; i < n; ++i) start[i] = static_cast<double>(engine()) / std::mt19937::max();
  return start;
}

struct Candidate {
  Vector w;
  double residual = std::numeric_limits<double>::infinity();  // |M w|

  bool IsEigenvector() const { return residual <= kResidual; }
};

double ResidualOf(const Matrix& m, const Vector& w) {
  Vector residual(m.rows());
  for (int i = 0; i < m.rows(); ++i) residual[i] = m.row(i) * w;
  return Length(residual);
}

// The best vector that is orthogonal to the given ones; stops if a step does not halve the residual.
Candidate Iterate(const Matrix& m, const Factors& factors, const std::vector<Vector>& orthogonal_to) {
  Candidate best;
  Vector w = StartVector(m.rows() / 2, orthogonal_to.size());
  for (int step = 0; step < kMaxSteps; ++step) {
    w = WithoutPartAlong(orthogonal_to, factors.Solve(w));
    const double residual = ResidualOf(m, w);
    const bool settled = !(residual < 0.5 * best.residual);  // or not a number
    if (residual < best.residual) best = {w, residual};
    if (settled) break;
  }
  return best;
}

// Scales to length 1, and rotates the largest element (the first among equals) to the positive real axis.
Vector Normalised(const Vector& w) {
  const int n = w.dim() / 2;
  int largest = 0;
  double square = 0.0;
  for (int i = 0; i < n; ++i) {
    const double candidate = w[i] * w[i] + w[n + i] * w[n + i];
    if (candidate > square) {
      square = candidate;
      largest = i;
    }
  }
  const double magnitude = std::sqrt(square);
  Vector result = (w[largest] / magnitude) * w - (w[n + largest] / magnitude) * Turned(w);
  result[largest] = magnitude;
  result[n + largest] = 0.0;
  return result;
}

}  // namespace

Eigenvectors Matrix::eigenvectors(const Vector& re, const Vector& im) const {
  const int n = rows();
  if (n != cols() || re.dim() != im.dim()) return {};
  const double largest = LargestMagnitude(*this);
  const double scale = largest == 0.0 ? 1.0 : largest;
  const Matrix scaled = *this / scale;
  const Vector a = re / scale;
  const Vector b = im / scale;

  Eigenvectors vectors{Matrix(n, re.dim()), Matrix(n, re.dim())};
  if (n == 0) return vectors;                 // nothing to normalise
  std::vector<std::pair<int, Vector>> found;  // with the number of the eigenvalue
  for (int k = 0; k < re.dim(); ++k) {
    std::vector<Vector> cluster;
    for (const auto& [j, w] : found) {
      if (std::sqrt((a[j] - a[k]) * (a[j] - a[k]) + (b[j] - b[k]) * (b[j] - b[k])) < kCluster) cluster.push_back(w);
    }
    const Matrix m = Shifted(scaled, a[k], b[k]);
    const Factors factors(m);
    Candidate candidate = Iterate(m, factors, cluster);
    if (!candidate.IsEigenvector()) candidate = Iterate(m, factors, {});  // fewer vectors than values
    if (!candidate.IsEigenvector()) continue;
    const Vector w = Normalised(candidate.w);
    for (int i = 0; i < n; ++i) {
      vectors.re(i, k) = w[i];
      vectors.im(i, k) = w[n + i];
    }
    found.emplace_back(k, w);
  }
  return vectors;
}

}  // namespace orvanel
