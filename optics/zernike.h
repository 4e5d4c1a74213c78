// The Zernike polynomials of radial orders 0 to 8, without normalisation factor, written in X and Y.
#ifndef ORVANEL_OPTICS_ZERNIKE_H
#define ORVANEL_OPTICS_ZERNIKE_H

#include <array>
#include <span>

namespace orvanel {

constexpr int kZernikeOrders = 9;

// The powers a^0 to a^8 of a pupil coordinate, by repeated multiplication.
using Powers = std::array<double, kZernikeOrders>;
Powers PowersOf(double a);

// One polynomial at the point (X, Y), |(X, Y)| <= 1 inside the pupil: R(n,|m|)(rho) cos(m theta) for m >= 0 and
// R(n,|m|)(rho) sin(|m| theta) for m < 0, theta from +X towards +Y. Exact up to order 7 where X and Y are multiples of
// 1/64. Source: Born and Wolf, Principles of Optics, 9.2.
using ZernikeTerm = double (*)(const Powers& x, const Powers& y);

// Row n holds the n + 1 terms of radial order n, m = -n, -n + 2, ... n.
extern const std::array<std::span<const ZernikeTerm>, kZernikeOrders> ZernikeTermTable;

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_ZERNIKE_H
