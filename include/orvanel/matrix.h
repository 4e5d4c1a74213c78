// Dense linear algebra for small problems: vectors and matrices of doubles with arithmetic, inversion, determinant,
// eigenvalues and eigenvectors. This header is its manual.
//
//     orvanel::Matrix a(2, 2);
//     a(0, 0) = 4.0; a(0, 1) = 1.5; a(1, 0) = 1.5; a(1, 1) = 3.0;
//     const orvanel::Matrix solution = a.inv() * b;
//
// INDICES start at 0 and are not checked; element (i, j) is in row i and column j.
//
// VALUES. Copies are deep, a moved-from object is empty (dim 0, 0 x 0), a size below 0 counts as 0. Operands may be
// the same object (a += a).
//
// MISMATCHES. If the sizes of the operands do not match, an operation writes its message and returns a neutral value:
// an empty object, 0.0, or the left side unchanged. Only memory that runs out throws. Each message is a headline and
// one or two lines with the sizes. It is in Japanese, in the bytes of code page 932 for any locale.
//
// OUTPUT goes through stdout, unflushed, so that it keeps its order with the host's own output. A number is written as
// printf writes "%10.4f" in the C locale; the host's locale has no effect. On Windows, lines end in a newline alone
// for any mode of the stream, and are flushed.
//
// RESULTS have the same bits everywhere, since only + - * / and the square root compute them. Errors are given for
// n x n matrices. Unless a comment says otherwise, they are multiples of |A|, the root of the sum of the squares of
// A's elements.
//
// THREADS. Different objects share only stdout. Several threads may read an object while no thread changes it.
#ifndef ORVANEL_MATRIX_H
#define ORVANEL_MATRIX_H

#include <cstddef>
#include <type_traits>
#include <vector>

namespace orvanel {

constexpr double kRoundoff = 0x1p-53;  // the largest relative error of one operation

// A run of doubles.
class Vector {
 public:
  Vector() = default;
  explicit Vector(int n);  // n zeros; empty for n below 1

  // See VALUES.
  Vector(const Vector&) = default;
  Vector(Vector&& other) noexcept;
  Vector& operator=(const Vector&) = default;
  Vector& operator=(Vector&& other) noexcept;

  // The number of elements, their address, and one element.
  int dim() const { return static_cast<int>(elements_.size()); }
  double* data() { return elements_.data(); }
  const double* data() const { return elements_.data(); }
  double& operator[](int i) { return elements_[static_cast<std::size_t>(i)]; }
  double operator[](int i) const { return elements_[static_cast<std::size_t>(i)]; }

  // In place, element by element. Different dims: a message, and nothing changes.
  Vector& operator+=(const Vector& right);
  Vector& operator-=(const Vector& right);

  // The virtual operations; their order is the order of their slots.
  virtual void print() const;             // each element as "%10.4f", no newline
  virtual void fill(double value);        // every element becomes value
  virtual void copy(const Vector& from);  // becomes a copy of another vector
  virtual void refresh();                 // does nothing; for derived classes that keep something beside the elements
  virtual void resize(int n);             // n zeros; the old elements are lost
  virtual void clear();                   // becomes empty and gives its memory back
  virtual ~Vector() = default;            // last, so that it moves none of the slots above

 private:
  std::vector<double> elements_;
};

// The inner product, summed in the order of the elements. Different dims: a message and 0.0.
double operator*(const Vector& left, const Vector& right);

// The cross product (a2 b3 - a3 b2, a3 b1 - a1 b3, a1 b2 - a2 b1). Dims other than 3 and 3: the message of the inner
// product and an empty vector.
Vector operator%(const Vector& left, const Vector& right);

// Element by element. Different dims: the message of the sum, for both, and an empty vector.
Vector operator+(const Vector& left, const Vector& right);
Vector operator-(const Vector& left, const Vector& right);

// Every element multiplied or divided by a number.
Vector operator*(const Vector& vector, double factor);
Vector operator*(double factor, const Vector& vector);
Vector operator/(const Vector& vector, double divisor);

// This pointer, passed to Matrix(n, kind), requests the identity.
extern const char kUnit[];

struct Eigenvectors;

// Rows of equal length. A shape may have rows without columns and columns without rows.
class Matrix {
 public:
  Matrix() = default;
  Matrix(int rows, int cols);  // all zero

  // n x n: the identity if kind is the pointer kUnit, zero for any other pointer, even to the same letters.
  Matrix(int n, const char* kind);

  // See VALUES.
  Matrix(const Matrix&) = default;
  Matrix(Matrix&& other) noexcept;
  Matrix& operator=(const Matrix&) = default;
  Matrix& operator=(Matrix&& other) noexcept;

  // The shape.
  int rows() const { return static_cast<int>(rows_.size()); }
  int cols() const { return cols_; }

  // A row may be assigned to and changed, but must keep its dim.
  Vector& row(int i) { return rows_[static_cast<std::size_t>(i)]; }
  const Vector& row(int i) const { return rows_[static_cast<std::size_t>(i)]; }
  double& operator()(int i, int j) { return row(i)[j]; }
  double operator()(int i, int j) const { return row(i)[j]; }

  // In place, element by element. Different shapes: a message, and nothing changes.
  Matrix& operator+=(const Matrix& right);
  Matrix& operator-=(const Matrix& right);

  // The element of a 1 x 1 matrix, also without a cast: double x = row * column. Any other shape: a message and 0.0.
  operator double() const;

  // The virtual operations; their order is the order of their slots.
  virtual void print() const;               // each element as "%10.4f", each row ended by a newline
  virtual void clear();                     // becomes 0 x 0
  virtual void resize(int rows, int cols);  // all zero; the old elements are lost
  virtual void fill(double value);          // every element becomes value

  // The inverse by Gauss-Jordan elimination, without exchanges of rows. A pivot p that is neither >= 1e-5 nor < -1e-5
  // (also NaN) gives the 1 x 1 zero matrix, silently, even if an inverse exists. The two limits are absolute, so scale
  // the matrix first. Not square: a message and an empty matrix.
  // Error: InverseError(n) for a diagonally dominant matrix; without exchanges there is no bound for others.
  // Source: Jordan's variant of Gauss's elimination, Higham, Accuracy and Stability of Numerical Algorithms, 14.4.
  virtual Matrix inv() const;

  // The inverse by cofactors. A determinant strictly inside (-1e-5, 1e-5): a message and an empty matrix. Not square:
  // an empty matrix, silently. Of a 1 x 1 matrix it is 0.0, the determinant of its 0 x 0 minor over its own.
  virtual Matrix invc() const;

  // The minor: the matrix without row i and column j. (<sys/sysmacros.h> has a macro of the shorter name.)
  virtual Matrix minor_matrix(int i, int j) const;

  // The signed minor: (-1)^(i + j) times the determinant of minor_matrix(i, j).
  virtual double cofactor(int i, int j) const;

  // The determinant, expanded along the first row: n! steps, for small matrices only. 0.0 for 0 x 0. Not square: a
  // message and 0.0.
  // Error: DeterminantError(n). Source: Laplace's expansion.
  virtual double det() const;

  // The trace; 0.0 for 0 x 0. Not square: a message and 0.0.
  virtual double tr() const;

  // A square matrix becomes the identity, any other stays as it is.
  virtual void unit();

  // The plain QR iteration, which shows how it converges. It prints "hessenberg = " and the Hessenberg form, then
  // "X (after qr_dec()) = " and the matrix after each step. It takes at least one and at most kQrSteps steps, until
  // everything below the diagonal is negligible. Returns the last matrix: real eigenvalues are on its diagonal, and
  // every complex pair is in a 2 x 2 block. Not square: a message and an empty matrix.
  virtual Matrix qr_iteration() const;

  // The eigenvalues: n x 2, real parts beside imaginary parts, in the order of Eigenvalues. Prints "copied T = " and
  // the Hessenberg form, then "\neigen values(Re) = " and the real parts, "\neigen values(Im) = " and the imaginary
  // parts. No convergence: an empty matrix, and only the first of the three is printed. Not square: an empty matrix,
  // silently.
  virtual Matrix eigen() const;

  // The eigenvectors of the eigenvalues re[k] + i im[k], by inverse iteration; see Eigenvectors. Prints nothing. Not
  // square, or re and im not of one dim: empty matrices.
  // Source: inverse iteration, Wilkinson, The Algebraic Eigenvalue Problem (1965), chapter 9.
  virtual Eigenvectors eigenvectors(const Vector& re, const Vector& im) const;

  virtual ~Matrix() = default;  // last, so that it moves none of the slots above

 private:
  std::vector<Vector> rows_;
  int cols_ = 0;
};

// The error of det(), relative to the sum over all permutations of the products of magnitudes. Each of the n levels of
// the expansion multiplies once and adds up to n times, so a product is rounded fewer than n (n + 3) / 2 times.
constexpr double DeterminantError(int n) { return (n * n + 2) * kRoundoff; }

// The error of A inv(A) - I, relative to the largest row sums of magnitudes of A and of the inverse. Each of n steps
// has at most three roundings of elements, which at most double with a dominant diagonal: 6. The product raises this
// to 8. A row has n elements.
constexpr double InverseError(int n) { return 8.0 * n * n * kRoundoff; }

// Rows of left by columns of right, each sum in the order of left's columns. left.cols() other than right.rows(): a
// message and an empty matrix.
Matrix operator*(const Matrix& left, const Matrix& right);

// Element by element. Different shapes: a message and an empty matrix.
Matrix operator+(const Matrix& left, const Matrix& right);
Matrix operator-(const Matrix& left, const Matrix& right);

// Every element multiplied or divided by a number.
Matrix operator*(const Matrix& matrix, double factor);
Matrix operator*(double factor, const Matrix& matrix);
Matrix operator/(const Matrix& matrix, double divisor);

// The same for numbers of other types; otherwise a product with the matrix's one element would match equally well.
template <class Number, class = std::enable_if_t<std::is_arithmetic_v<Number>>>
Matrix operator*(const Matrix& matrix, Number factor) {
  return matrix * static_cast<double>(factor);
}
template <class Number, class = std::enable_if_t<std::is_arithmetic_v<Number>>>
Matrix operator*(Number factor, const Matrix& matrix) {
  return static_cast<double>(factor) * matrix;
}
template <class Number, class = std::enable_if_t<std::is_arithmetic_v<Number>>>
Matrix operator/(const Matrix& matrix, Number divisor) {
  return matrix / static_cast<double>(divisor);
}

// A matrix does not convert to a number beside a vector, since their product would not be the expected one.
Vector operator*(const Matrix& matrix, const Vector& vector) = delete;
Vector operator*(const Vector& vector, const Matrix& matrix) = delete;
Vector operator/(const Vector& vector, const Matrix& matrix) = delete;

// Every element divided by the element of a 1 x 1 matrix. Any other divisor: a message and an empty matrix.
Matrix operator/(const Matrix& matrix, const Matrix& divisor);

// |a| if b >= 0.0 (also for -0.0), otherwise -|a|.
double sign(double a, double b);

// The reflection that maps the 1 x n matrix x to a multiple of the first unit vector, with the sign opposite to that of
// x's first element. It is n x n, symmetric and orthogonal. For x = 0 it is the identity. Not one row: a message and an
// empty matrix.
// Error: ReflectionError(n). Source: Householder (1958), Unitary triangularization of a nonsymmetric matrix.
Matrix householder(const Matrix& x);

// The error of each element of householder(). The normalised row takes n + 3 roundings (squares and their sum, the
// root, two quotients), which count twice in v v^T. The element takes four more, and v v^T / |v_0| has elements up
// to 2.
constexpr double ReflectionError(int n) { return 2.0 * (2 * (n + 3) + 4) * kRoundoff; }

// The tridiagonal form of a symmetric matrix: similar to it, and symmetric. Only the diagonal and the elements below it
// are read; any other matrix is treated as the symmetric one with that half. Not square: a message and an empty matrix.
// Error: FormError(n). Source: Martin, Reinsch and Wilkinson (1968), Householder's tridiagonalization of a symmetric
// matrix.
Matrix tridiag(const Matrix& a);

// The upper Hessenberg form: similar by orthogonal transforms, exact zeros below the subdiagonal; a copy for n < 3. The
// scaling product has a floor: if a column from the subdiagonal down is shorter than about 1e-10 (not 0), the form is
// no longer similar. Scale such matrices up first. Not square: an empty matrix, silently.
// Error: FormError(n), above the floor. Source: Wilkinson (1965), chapter 6.
Matrix hessenberg(const Matrix& a);

// The two forms are exact, by an orthogonal transform, for a matrix A + E with |E| <= FormError(n) |A|. Each of the
// n - 2 reflections is applied to A from two sides. Each application computes inner products of up to n terms, a
// quotient, a product and a difference, with n + 4 roundings at most.
constexpr double FormError(int n) { return 2.0 * n * (n + 4) * kRoundoff; }

constexpr int kQrSteps = 100;  // maximum of qr_iteration

// One step of the plain QR iteration: the product R Q of a square matrix's factors Q R. It is similar to the matrix,
// and Hessenberg if the matrix is. Not square: an empty matrix, silently. Error: exact for A + E, |E| <= QrStepError(n)
// |A|. Source: Francis (1961), The QR transformation.
Matrix qr_dec(const Matrix& x);

// The error of qr_dec(): an element takes part in up to 2 n rotations of 4 roundings each.
constexpr double QrStepError(int n) { return 8.0 * n * kRoundoff; }

// The eigenvalues re[k] + i im[k] in their order on the diagonal of the final form. In a complex pair, the one with the
// negative imaginary part comes first.
struct Eigenvalues {
  Matrix hessenberg;  // the form that the iteration started from
  Vector re;          // empty, as is im, if more than 100 steps found no eigenvalue
  Vector im;          // of the same length
  int steps = 0;      // maximum over the eigenvalues
};

// Returns what eigen() prints and returns, without printing. Not square: everything is empty.
// Source: Martin, Peters and Wilkinson (1970), The QR algorithm for real Hessenberg matrices; here with the exceptional
// shift at every tenth step.
Eigenvalues eigenvalues(const Matrix& a);

// The eigenvalues are the exact ones of a matrix A + E with |E| <= EigenvalueError(n) |A|, unless a subcolumn is below
// the floor of hessenberg(). In a sweep, an element takes part in at most six reflections of three elements (three from
// each side), each with six roundings. These 36 roundings are as often up as down, so they count as 6. An eigenvalue
// takes 3 sweeps on average, hence 18 n. The Hessenberg form adds 2 n, by the same count.
constexpr double EigenvalueError(int n) { return 20.0 * n * kRoundoff; }

// Column k is the eigenvector re(., k) + i im(., k) of the k-th eigenvalue: of length 1, its largest element real and
// positive. A column of zeros means that the value is no eigenvalue: no vector w of length 1 was found with
// |A w - lambda w| <= 1e-10 max |a_ij|. Values closer to each other than 1e-5 max |a_ij| get orthogonal vectors if
// such eigenvectors exist. A defective matrix has fewer eigenvectors; then columns repeat.
struct Eigenvectors {
  Matrix re;  // real parts
  Matrix im;  // imaginary parts
};

}  // namespace orvanel

#endif  // ORVANEL_MATRIX_H
