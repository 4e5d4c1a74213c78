// Implements vectors: construction, assignment, arithmetic and size checks.
#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "matrix/messages.h"
#include "matrix/printing.h"
#include "orvanel/matrix.h"

namespace orvanel {
namespace {

void SayOperands(Text headline, const Vector& left, const Vector& right) {
  Say(headline);
  Say(Text::kVectorLeft, {left.dim()});
  Say(Text::kVectorRight, {right.dim()});
}

// True if the operands of a compound operator match in size. One headline is for both operators.
bool Agree(const Vector& left, const Vector& right) {
  if (left.dim() == right.dim()) return true;
  Say(Text::kVectorCompound);
  Say(Text::kVectorThis, {left.dim()});
  Say(Text::kVectorOperand, {right.dim()});
  return false;
}

}  // namespace

Vector::Vector(int n) { Vector::resize(n); }

Vector::Vector(Vector&& other) noexcept : elements_(std::exchange(other.elements_, {})) {}

Vector& Vector::operator=(Vector&& other) noexcept {
  elements_ = std::exchange(other.elements_, {});
  return *this;
}

Vector& Vector::operator+=(const Vector& right) {
  if (!Agree(*this, right)) return *this;
  for (int i = 0; i < dim(); ++i) (*this)[i] += right[i];
  return *this;
}

Vector& Vector::operator-=(const Vector& right) {
  if (!Agree(*this, right)) return *this;
  for (int i = 0; i < dim(); ++i) (*this)[i] -= right[i];
  return *this;
}

void Vector::print() const {
  for (const double element : elements_) PrintNumber(element);
}

void Vector::fill(double value) { std::fill(elements_.begin(), elements_.end(), value); }

void Vector::copy(const Vector& from) { *this = from; }

void Vector::refresh() {}

void Vector::resize(int n) { elements_.assign(static_cast<std::size_t>(std::max(n, 0)), 0.0); }

void Vector::clear() { elements_ = std::vector<double>(); }

double operator*(const Vector& left, const Vector& right) {
  if (left.dim() != right.dim()) {
    SayOperands(Text::kVectorProduct, left, right);
    return 0.0;
  }
  double sum = 0.0;
  for (int i = 0; i < left.dim(); ++i) sum += left[i] * right[i];
  return sum;
}

Vector operator%(const Vector& left, const Vector& right) {
  if (left.dim() != 3 || right.dim() != 3) {
    SayOperands(Text::kVectorProduct, left, right);
    return Vector();
  }
  Vector product(3);
  product[0] = left[1] * right[2] - left[2] * right[1];
  product[1] = left[2] * right[0] - left[0] * right[2];
  product[2] = left[0] * right[1] - left[1] * right[0];
  return product;
}

Vector operator+(const Vector& left, const Vector& right) {
  if (left.dim() != right.dim()) {
    SayOperands(Text::kVectorSum, left, right);
    return Vector();
  }
  Vector sum = left;
  sum += right;
  return sum;
}

Vector operator-(const Vector& left, const Vector& right) {
  if (left.dim() != right.dim()) {
    SayOperands(Text::kVectorSum, left, right);
    return Vector();
  }
  Vector difference = left;
  difference -= right;
  return difference;
}

Vector operator*(const Vector& vector, double factor) {
  Vector product = vector;
  for (int i = 0; i < product.dim(); ++i) product[i] *= factor;
  return product;
}

Vector operator*(double factor, const Vector& vector) { return vector * factor; }

Vector operator/(const Vector& vector, double divisor) {
  Vector quotient = vector;
  for (int i = 0; i < quotient.dim(); ++i) quotient[i] /= divisor;
  return quotient;
}

}  // namespace orvanel
