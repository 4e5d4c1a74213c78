// Computes the Householder reflection of a row, and the tridiagonal form by a sequence of reflections.
#include <algorithm>
#include <cmath>

#include "matrix/messages.h"
#include "orvanel/matrix.h"

namespace orvanel {
namespace {

// The reflection I - v v^T / |v_0| that maps x onto image * (1, 0, 0, ...).
struct Mirror {
  Vector v;
  double image;
};

// v is the normalised x with the sign of its first element added to this element, so that v^T v = 2 |v_0|. Dividing by
// the largest element first prevents overflow of the squares. x must have an element that is not 0.
Mirror MakeMirror(const Vector& x) {
  double largest = 0.0;
  for (int i = 0; i < x.dim(); ++i) largest = std::max(largest, std::fabs(x[i]));
  const Vector scaled = x / largest;
  const double length = std::sqrt(scaled * scaled);
  Mirror mirror{scaled / length, -sign(length * largest, x[0])};
  mirror.v[0] += sign(1.0, x[0]);
  return mirror;
}

bool IsZero(const Vector& x) {
  for (int i = 0; i < x.dim(); ++i) {
    if (x[i] != 0.0) return false;
  }
  return true;
}

// Column k of a below the diagonal.
Vector Below(const Matrix& a, int k) {
  Vector column(a.rows() - k - 1);
  for (int i = 0; i < column.dim(); ++i) column[i] = a(k + 1 + i, k);
  return column;
}

// P B P for the symmetric trailing block B of a behind column k, as the symmetric update B - v q^T - q v^T. Only the
// lower triangle is read and written.
void ReflectBlock(const Vector& v, Matrix& a, int k) {
  const int n = v.dim();
  const double divisor = std::fabs(v[0]);
  Vector p(n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) p[i] += a(k + 1 + std::max(i, j), k + 1 + std::min(i, j)) * v[j];
  }
  p = p / divisor;
  const Vector q = p - (0.5 * (v * p) / divisor) * v;
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j) a(k + 1 + i, k + 1 + j) -= v[i] * q[j] + q[i] * v[j];
  }
}

// The symmetric tridiagonal matrix with the diagonal and the subdiagonal of a.
Matrix Band(const Matrix& a) {
  Matrix band(a.rows(), a.cols());
  for (int i = 0; i < a.rows(); ++i) {
    band(i, i) = a(i, i);
    if (i > 0) band(i, i - 1) = band(i - 1, i) = a(i, i - 1);
  }
  return band;
}

}  // namespace

Matrix householder(const Matrix& x) {
  if (x.rows() != 1) {
    Say(Text::kHouseholder);
    Say(Text::kNotOneRow, {x.rows(), x.cols()});
    return Matrix();
  }
  Matrix reflection(x.cols(), kUnit);
  if (IsZero(x.row(0))) return reflection;
  const Vector v = MakeMirror(x.row(0)).v;
  for (int i = 0; i < v.dim(); ++i) reflection.row(i) -= (v[i] / std::fabs(v[0])) * v;
  return reflection;
}

Matrix tridiag(const Matrix& a) {
  if (a.rows() != a.cols()) {
    Say(Text::kTridiagonal);
    Say(Text::kFormNotSquare, {a.rows(), a.cols()});
    return Matrix();
  }
  Matrix work = a;
  for (int k = 0; k + 2 < work.rows(); ++k) {
    const Vector column = Below(work, k);
    if (IsZero(column)) continue;
    const Mirror mirror = MakeMirror(column);
    work(k + 1, k) = mirror.image;
    ReflectBlock(mirror.v, work, k);
  }
  return Band(work);
}

}  // namespace orvanel
