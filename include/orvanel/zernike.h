// Defines the table of the Zernike polynomials of radial orders 0 to 8, for C++ hosts.
//
//     const orvanel::Powers x = orvanel::PowersOf(0.25), y = orvanel::PowersOf(-0.5);
//     const double defocus = orvanel::ZernikeTermTable[2][1](x, y);       // order 2, m = 0: 2 (x^2 + y^2) - 1
//     const double coma = orvanel::ZernikeTermTable[3][2](x, y);          // order 3, m = 1
#ifndef ORVANEL_ZERNIKE_H
#define ORVANEL_ZERNIKE_H

#include <array>
#include <cstddef>

namespace orvanel {

constexpr int kZernikeOrders = 9;  // radial orders 0 to 8

// The powers a^0 to a^8 of a pupil coordinate, by repeated multiplication.
using Powers = std::array<double, kZernikeOrders>;
Powers PowersOf(double a);

// One Zernike mode, an unnormalised polynomial, at the point (X, Y), |(X, Y)| <= 1 inside the pupil. It is
// R(n,|m|)(rho) cos(m theta) for m >= 0 and R(n,|m|)(rho) sin(|m| theta) for m < 0. The angle theta runs from +X
// (right) towards +Y, which is down in the engine's planes. Exact up to order 7 if X and Y are multiples of 1/64.
// Source: Born and Wolf, Principles of Optics, 9.2.
using ZernikeTerm = double (*)(const Powers& x, const Powers& y);

// The terms of one radial order n. Element k has m = -n + 2 k, and the index n (n + 1) / 2 + k of its coefficient in
// orvanel.h. The element is not checked.
class ZernikeOrder {
 public:
  // Refers to the terms of one order, which must outlive it.
  template <std::size_t count>
  constexpr ZernikeOrder(const std::array<ZernikeTerm, count>& terms) : terms_(terms.data()), count_(count) {}

  // The number of terms, n + 1; one term; all terms.
  constexpr std::size_t size() const { return count_; }
  constexpr ZernikeTerm operator[](std::size_t k) const { return terms_[k]; }
  constexpr const ZernikeTerm* begin() const { return terms_; }
  constexpr const ZernikeTerm* end() const { return terms_ + count_; }

 private:
  const ZernikeTerm* terms_;
  std::size_t count_;
};

// The orders 0 to 8, 45 terms in all.
extern const std::array<ZernikeOrder, kZernikeOrders> ZernikeTermTable;

}  // namespace orvanel

#endif  // ORVANEL_ZERNIKE_H
