// Computes one step of the plain QR iteration, and the iteration that prints each step.
#include <algorithm>
#include <cmath>
#include <vector>

#include "base/standard_output.h"
#include "matrix/hessenberg.h"
#include "matrix/messages.h"
#include "orvanel/matrix.h"

namespace orvanel {
namespace {

// Rotates rows (from the left) or columns (from the right) upper and lower.
struct Rotation {
  int upper;
  int lower;
  double cosine;
  double sine;
};

// The rotation with row upper that makes element (lower, column) of x 0. The element is not 0 before.
Rotation RotationFor(const Matrix& x, int column, int lower) {
  const double larger = std::max(std::fabs(x(column, column)), std::fabs(x(lower, column)));
  const double above = x(column, column) / larger;
  const double below = x(lower, column) / larger;
  const double length = std::sqrt(above * above + below * below);
  return {column, lower, above / length, below / length};
}

void TurnRows(const Rotation& turn, Matrix& x) {
  const Vector upper = x.row(turn.upper);
  const Vector lower = x.row(turn.lower);
  x.row(turn.upper) = turn.cosine * upper + turn.sine * lower;
  x.row(turn.lower) = turn.cosine * lower - turn.sine * upper;
}

void TurnColumns(const Rotation& turn, Matrix& x) {
  for (int i = 0; i < x.rows(); ++i) {
    const double upper = x(i, turn.upper);
    const double lower = x(i, turn.lower);
    x(i, turn.upper) = turn.cosine * upper + turn.sine * lower;
    x(i, turn.lower) = turn.cosine * lower - turn.sine * upper;
  }
}

bool IsTriangular(const Matrix& h) {
  const double norm = HessenbergNorm(h);
  for (int l = 1; l < h.rows(); ++l) {
    if (!IsNegligible(h, l, norm)) return false;
  }
  return true;
}

}  // namespace

Matrix qr_dec(const Matrix& x) {
  if (x.rows() != x.cols()) return Matrix();
  Matrix r = x;
  std::vector<Rotation> q;
  for (int column = 0; column + 1 < r.cols(); ++column) {
    for (int lower = column + 1; lower < r.rows(); ++lower) {
      if (r(lower, column) == 0.0) continue;
      q.push_back(RotationFor(r, column, lower));
      TurnRows(q.back(), r);
      r(lower, column) = 0.0;
    }
  }
  for (const Rotation& turn : q) TurnColumns(turn, r);
  return r;
}

Matrix Matrix::qr_iteration() const {
  if (rows() != cols()) {
    Say(Text::kEigen);
    Say(Text::kFormNotSquare, {rows(), cols()});
    return Matrix();
  }
  Matrix x = hessenberg(*this);
  WriteOutput("hessenberg = ");
  x.print();
  for (int step = 0; step < kQrSteps; ++step) {
    x = qr_dec(x);
    WriteOutput("X (after qr_dec()) = ");
    x.print();
    if (IsTriangular(x)) break;
  }
  return x;
}

}  // namespace orvanel
