// Fuzzes operations on vectors and matrices of any sizes: results have the promised shapes, or are neutral.
#include "orvanel/matrix.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "tests/fuzz/input.h"
#include "tests/fuzz/require.h"

using namespace orvanel;
using orvanel::fuzz::Input;

namespace {

constexpr int kMaxRows = 7;  // the determinant takes n! steps

Matrix AnyMatrix(Input& input) {
  const int rows = input.Below(kMaxRows + 1) - 1;
  const int cols = input.Below(4) == 0 ? input.Below(kMaxRows) : rows;
  Matrix matrix(rows, cols);
  ORVANEL_REQUIRE(matrix.rows() == (rows < 0 ? 0 : rows) && matrix.cols() == (cols < 0 ? 0 : cols));
  for (int i = 0; i < matrix.rows(); ++i) {
    for (int j = 0; j < matrix.cols(); ++j) matrix(i, j) = input.Double();
  }
  return matrix;
}

Vector AnyVector(Input& input) {
  Vector vector(input.Below(6) - 1);
  for (int i = 0; i < vector.dim(); ++i) vector[i] = input.Double();
  return vector;
}

bool IsShaped(const Matrix& matrix, int rows, int cols) { return matrix.rows() == rows && matrix.cols() == cols; }
bool IsSquare(const Matrix& matrix) { return matrix.rows() == matrix.cols(); }
bool AreAlike(const Matrix& a, const Matrix& b) { return IsShaped(a, b.rows(), b.cols()); }

void OnVectors(Input& input) {
  Vector a = AnyVector(input), b = AnyVector(input);
  const bool fit = a.dim() == b.dim();
  ORVANEL_REQUIRE((a + b).dim() == (fit ? a.dim() : 0));
  ORVANEL_REQUIRE((a - b).dim() == (fit ? a.dim() : 0));
  ORVANEL_REQUIRE((a % b).dim() == (fit && a.dim() == 3 ? 3 : 0));
  const double product = a * b;
  ORVANEL_REQUIRE(fit || product == 0.0);
  a += b;
  const Vector& same = a;
  a -= same;
  ORVANEL_REQUIRE((a * input.Double()).dim() == a.dim() && (a / input.Double()).dim() == a.dim());
  a.copy(b);
  a.print();
  a.resize(input.Below(9) - 1);
  a.clear();
  ORVANEL_REQUIRE(a.dim() == 0);
}

void OnTwoMatrices(Input& input) {
  Matrix a = AnyMatrix(input), b = AnyMatrix(input);
  const bool alike = AreAlike(a, b);
  const Matrix sum = a + b, difference = a - b, product = a * b;
  ORVANEL_REQUIRE(alike ? AreAlike(sum, a) && AreAlike(difference, a) : IsShaped(sum, 0, 0));
  ORVANEL_REQUIRE(a.cols() == b.rows() ? IsShaped(product, a.rows(), b.cols()) : IsShaped(product, 0, 0));
  const Matrix quotient = a / b;
  ORVANEL_REQUIRE(IsShaped(b, 1, 1) ? AreAlike(quotient, a) : IsShaped(quotient, 0, 0));
  static_cast<void>(static_cast<double>(a));
  a += b;
  b -= a;
  const Matrix& same = a;
  a += same;
}

void OnOneMatrix(Input& input) {
  Matrix a = AnyMatrix(input);
  const int n = a.rows();
  const bool square = IsSquare(a);
  const Matrix inverse = a.inv(), byCofactors = a.invc();
  ORVANEL_REQUIRE(square ? AreAlike(inverse, a) || IsShaped(inverse, 1, 1) : IsShaped(inverse, 0, 0));
  ORVANEL_REQUIRE(square ? AreAlike(byCofactors, a) || IsShaped(byCofactors, 0, 0) : IsShaped(byCofactors, 0, 0));
  static_cast<void>(a.det());
  static_cast<void>(a.tr());
  if (n > 0 && a.cols() > 0) {
    const int i = input.Below(n), j = input.Below(a.cols());
    ORVANEL_REQUIRE(a.minor_matrix(i, j).rows() == n - 1);
    static_cast<void>(a.cofactor(i, j));
  }
  a.print();
  a.unit();
}

void OnForms(Input& input) {
  const Matrix a = AnyMatrix(input);
  const bool square = IsSquare(a);
  for (const Matrix& form : {hessenberg(a), tridiag(a), qr_dec(a)}) {
    ORVANEL_REQUIRE(square ? AreAlike(form, a) : IsShaped(form, 0, 0));
  }
  const Matrix reflection = householder(a);
  ORVANEL_REQUIRE(a.rows() == 1 ? IsShaped(reflection, a.cols(), a.cols()) : IsShaped(reflection, 0, 0));
}

void OnEigenvalues(Input& input) {
  const Matrix a = AnyMatrix(input);
  const Eigenvalues values = eigenvalues(a);
  ORVANEL_REQUIRE(values.re.dim() == values.im.dim());
  ORVANEL_REQUIRE(values.re.dim() == 0 || values.re.dim() == a.rows());
  const Eigenvectors vectors = a.eigenvectors(values.re, values.im);
  ORVANEL_REQUIRE(AreAlike(vectors.re, vectors.im));
  const Vector any = AnyVector(input);
  ORVANEL_REQUIRE(!IsSquare(a) || a.eigenvectors(any, any).re.cols() == any.dim());
  const Matrix printed = a.eigen();
  ORVANEL_REQUIRE(printed.rows() == values.re.dim());
}

}  // namespace

// One operation for each input: they share nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool silent = std::freopen("/dev/null", "w", stdout) != nullptr;
  ORVANEL_REQUIRE(silent);
  Input input(data, size);
  switch (input.Below(6)) {
    case 0:
      OnVectors(input);
      break;
    case 1:
      OnTwoMatrices(input);
      break;
    case 2:
      OnOneMatrix(input);
      break;
    case 3:
      OnForms(input);
      break;
    case 4:
      OnEigenvalues(input);
      break;
    default:
      static_cast<void>(AnyMatrix(input).qr_iteration());
  }
  return 0;
}
