// Computes eigenvalues by the QR iteration with double shifts on the Hessenberg form.
//
// The active block of h is rows and columns first .. last. The next eigenvalue appears at last. A negligible
// subdiagonal element separates the block at first.
#include <algorithm>
#include <cmath>

#include "base/standard_output.h"
#include "matrix/hessenberg.h"
#include "orvanel/matrix.h"

namespace orvanel {
namespace {

constexpr int kMaxSteps = 100;         // for one eigenvalue
constexpr int kExceptionalEvery = 10;  // steps; a shift of another kind breaks a cycle

// The input of a double shift from the trailing 2 x 2 block: its diagonal, the last element first, and the product of
// the other two.
struct Shift {
  double x;
  double y;
  double w;
};

// The elements of a column that a reflection maps to one; r is 0 if there are only two.
struct Column {
  double p;
  double q;
  double r;
};

double Magnitude(const Column& c) { return std::fabs(c.p) + std::fabs(c.q) + std::fabs(c.r); }

Column Divided(const Column& c, double divisor) { return {c.p / divisor, c.q / divisor, c.r / divisor}; }

int FirstOfBlock(const Matrix& h, int last, double norm) {
  int first = last;
  while (first > 0 && !IsNegligible(h, first, norm)) --first;
  return first;
}

Shift ShiftOf(const Matrix& h, int last) {
  return {h(last, last), h(last - 1, last - 1), h(last, last - 1) * h(last - 1, last)};
}

// The roots of the block last - 1 .. last; the exceptional shifts have subtracted t from the diagonal.
void TakeTwoRoots(const Matrix& h, int last, double t, Eigenvalues& values) {
  const Shift block = ShiftOf(h, last);
  const double p = 0.5 * (block.y - block.x);
  const double q = p * p + block.w;
  const double z = std::sqrt(std::fabs(q));
  if (q >= 0.0) {
    const double larger = p + sign(z, p);
    values.re[last - 1] = block.x + t + larger;
    values.re[last] = larger == 0.0 ? values.re[last - 1] : block.x + t - block.w / larger;
  } else {
    values.re[last - 1] = values.re[last] = block.x + p + t;
    values.im[last - 1] = -z;
    values.im[last] = z;
  }
}

Shift ExceptionalShift(Matrix& h, int last, double& t) {
  const double x = h(last, last);
  t += x;
  for (int i = 0; i <= last; ++i) h(i, i) -= x;
  const double s = std::fabs(h(last, last - 1)) + std::fabs(h(last - 1, last - 2));
  return {0.75 * s, 0.75 * s, -0.4375 * s * s};
}

// The first column of the doubly shifted square of the block that starts in row m, scaled to magnitude 1.
Column FirstColumn(const Matrix& h, int m, const Shift& shift) {
  const double z = h(m, m);
  const double r = shift.x - z;
  const double s = shift.y - z;
  const Column c{(r * s - shift.w) / h(m + 1, m) + h(m, m + 1), h(m + 1, m + 1) - z - r - s, h(m + 2, m + 1)};
  return Divided(c, Magnitude(c));
}

// The row to start the sweep from: the lowest one where two consecutive small subdiagonal elements allow the sweep to
// start below the top of the block. Sets its first column.
int FindStart(const Matrix& h, int first, int last, const Shift& shift, Column& c) {
  int m = last - 2;
  for (;; --m) {
    c = FirstColumn(h, m, shift);
    if (m == first) return m;
    const double u = std::fabs(h(m, m - 1)) * (std::fabs(c.q) + std::fabs(c.r));
    const double v = std::fabs(c.p) * (std::fabs(h(m - 1, m - 1)) + std::fabs(h(m, m)) + std::fabs(h(m + 1, m + 1)));
    if (u + v == v) return m;
  }
}

// The reflection of rows and columns k .. k + 2 (k + 1 at the end of the block) that maps c to its first element. This
// becomes s = +-|c|, not 0, with the element's sign. It is applied from the left to columns k .. last, from the right
// to rows first .. k + 3.
void Reflect(Matrix& h, int first, int last, int k, const Column& c, double s) {
  const bool three = k < last - 1;
  const double p = c.p + s;
  const Column across{p / s, c.q / s, c.r / s};
  const Column along{1.0, c.q / p, c.r / p};
  for (int j = k; j <= last; ++j) {
    const double sum = h(k, j) + along.q * h(k + 1, j) + (three ? along.r * h(k + 2, j) : 0.0);
    h(k, j) -= sum * across.p;
    h(k + 1, j) -= sum * across.q;
    if (three) h(k + 2, j) -= sum * across.r;
  }
  for (int i = first; i <= std::min(last, k + 3); ++i) {
    const double sum = across.p * h(i, k) + across.q * h(i, k + 1) + (three ? across.r * h(i, k + 2) : 0.0);
    h(i, k) -= sum;
    h(i, k + 1) -= sum * along.q;
    if (three) h(i, k + 2) -= sum * along.r;
  }
}

// Chases the bulge that c creates at row start down to the end of the block. The result is a Hessenberg form.
void Sweep(Matrix& h, int first, int start, int last, Column c) {
  for (int k = start; k < last; ++k) {
    const bool three = k < last - 1;
    double magnitude = 1.0;
    if (k > start) {
      c = {h(k, k - 1), h(k + 1, k - 1), three ? h(k + 2, k - 1) : 0.0};
      magnitude = Magnitude(c);
      if (magnitude == 0.0) continue;
      c = Divided(c, magnitude);
    }
    const double s = sign(std::sqrt(c.p * c.p + c.q * c.q + c.r * c.r), c.p);
    if (k > start) {
      h(k, k - 1) = -s * magnitude;
      h(k + 1, k - 1) = 0.0;
      if (three) h(k + 2, k - 1) = 0.0;
    } else if (start > first) {
      h(k, k - 1) = -h(k, k - 1);  // the reflection of an element whose neighbours below are negligible
    }
    Reflect(h, first, last, k, c, s);
  }
}

// Computes re, im and steps from the Hessenberg form h, which is overwritten. False: no convergence.
bool Iterate(Matrix h, Eigenvalues& values) {
  const double norm = HessenbergNorm(h);
  double t = 0.0;
  int steps = 0;
  for (int last = h.rows() - 1; last >= 0;) {
    const int first = FirstOfBlock(h, last, norm);
    if (last - first < 2) {
      if (last == first) {
        values.re[last] = h(last, last) + t;
      } else {
        TakeTwoRoots(h, last, t, values);
      }
      last = first - 1;
      steps = 0;
      continue;
    }
    if (steps > kMaxSteps) return false;
    const bool exceptional = steps > 0 && steps % kExceptionalEvery == 0;
    const Shift shift = exceptional ? ExceptionalShift(h, last, t) : ShiftOf(h, last);
    ++steps;
    values.steps = std::max(values.steps, steps);
    Column c{};
    const int start = FindStart(h, first, last, shift, c);
    Sweep(h, first, start, last, c);
  }
  return true;
}

}  // namespace

double sign(double a, double b) { return b >= 0.0 ? std::fabs(a) : -std::fabs(a); }

Eigenvalues eigenvalues(const Matrix& a) {
  Eigenvalues values{hessenberg(a), Vector(a.rows()), Vector(a.rows()), 0};
  if (a.rows() != a.cols() || !Iterate(values.hessenberg, values)) {
    values.re.clear();
    values.im.clear();
  }
  return values;
}

Matrix Matrix::eigen() const {
  if (rows() != cols()) return Matrix();
  const Eigenvalues values = eigenvalues(*this);
  WriteOutput("copied T = ");
  values.hessenberg.print();
  if (values.re.dim() != rows()) return Matrix();
  WriteOutput("\neigen values(Re) = ");
  values.re.print();
  WriteOutput("\neigen values(Im) = ");
  values.im.print();
  Matrix table(rows(), 2);
  for (int i = 0; i < rows(); ++i) {
    table(i, 0) = values.re[i];
    table(i, 1) = values.im[i];
  }
  return table;
}

}  // namespace orvanel
