// Computes the upper Hessenberg form.
#include "matrix/hessenberg.h"

#include <algorithm>
#include <cmath>

#include "orvanel/matrix.h"

namespace orvanel {
namespace {

// Avoids a division by 0 for a column of zeros.
constexpr double kSmallestProduct = 1e-20;

// The reflection I - u u^T / product; u is zero above its leading element.
struct Reflection {
  Vector u;
  double product;
};

// For column k of h, from the subdiagonal down.
Reflection ReflectionOf(const Matrix& h, int k) {
  Vector u(h.rows());
  for (int i = k + 1; i < h.rows(); ++i) u[i] = h(i, k);
  const double norm = sign(std::sqrt(u * u), u[k + 1]);
  u[k + 1] += norm;
  const double product = norm * u[k + 1];
  return {u, std::fabs(product) < kSmallestProduct ? kSmallestProduct : product};
}

void ReflectFromTheLeft(const Reflection& reflection, Matrix& h) {
  Vector combined(h.cols());
  for (int i = 0; i < h.rows(); ++i) combined += reflection.u[i] * h.row(i);
  combined = combined / reflection.product;
  for (int i = 0; i < h.rows(); ++i) h.row(i) -= reflection.u[i] * combined;
}

void ReflectFromTheRight(const Reflection& reflection, Matrix& h) {
  for (int i = 0; i < h.rows(); ++i) h.row(i) -= (h.row(i) * reflection.u / reflection.product) * reflection.u;
}

}  // namespace

double HessenbergNorm(const Matrix& h) {
  double norm = 0.0;
  for (int i = 0; i < h.rows(); ++i) {
    for (int j = std::max(i - 1, 0); j < h.cols(); ++j) norm += std::fabs(h(i, j));
  }
  return norm;
}

bool IsNegligible(const Matrix& h, int l, double norm) {
  const double neighbours = std::fabs(h(l - 1, l - 1)) + std::fabs(h(l, l));
  const double measure = neighbours == 0.0 ? norm : neighbours;
  return std::fabs(h(l, l - 1)) + measure == measure;
}

Matrix hessenberg(const Matrix& a) {
  if (a.rows() != a.cols()) return Matrix();
  Matrix h = a;
  for (int k = 0; k + 2 < h.rows(); ++k) {
    const Reflection reflection = ReflectionOf(h, k);
    ReflectFromTheLeft(reflection, h);
    ReflectFromTheRight(reflection, h);
    for (int i = k + 2; i < h.rows(); ++i) h(i, k) = 0.0;
  }
  return h;
}

}  // namespace orvanel
