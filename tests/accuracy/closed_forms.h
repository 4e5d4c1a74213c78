// Declares closed forms for a circular pupil without samples, and quadrature to the precision of long double.
//
// Pupil coordinates run to 1 at the edge; frequencies are fractions of the cut-off; places in the image are in
// wavelengths over pupil diameters; the RMS and all wavefronts here are in waves.
#ifndef ORVANEL_TESTS_ACCURACY_CLOSED_FORMS_H
#define ORVANEL_TESTS_ACCURACY_CLOSED_FORMS_H

#include <array>
#include <complex>
#include <vector>

#include "tests/support/planes.h"

namespace orvanel::accuracy {

using reference::Real;

// Of the first kind and integer order, by Bessel's integral; the trapezoidal rule is exact to rounding there.
Real BesselJ(int order, Real x);

// Born and Wolf, Principles of Optics, 8.5 and 9.5.
Real DiffractionMtf(Real frequency);
Real AiryIntensity(Real radius);        // 1 at the centre
Real AiryEncircledEnergy(Real radius);  // 1 in all
Real AiryDarkRing(int ring);            // its radius, by bisection; ring 1 is the innermost

struct Mode {
  int n, m;
};

// All of orders 2 to 6, in the library's order.
std::vector<Mode> Modes();
int IndexOf(Mode mode);

// RMS over the unit disc = coefficient / factor.
Real NormalisationFactor(Mode mode);

// |mean of exp(2 pi i W)|^2 over the disc, W one mode: by quadrature along the radius alone, the angle being done by
// J0 where there is one.
Real AxisStrehl(Mode mode, Real rms);

// Marechal's two forms and the exponential, all of the RMS alone.
Real StrehlByMarechal(Real rms);     // (1 - s^2 / 2)^2, s = 2 pi rms
Real StrehlBySquare(Real rms);       // 1 - s^2
Real StrehlByExponential(Real rms);  // exp(-s^2)

// A wavefront as a polynomial in X and Y, made from Zernike coefficients by multiplying out.
class Polynomial {
 public:
  explicit Polynomial(const std::vector<Real>& coefficients);  // 28, of orders 0 to 6
  Real operator()(Real x, Real y) const;

 private:
  std::array<std::array<Real, 7>, 7> c_{};  // of X^p Y^q at [p][q]
};

// The transfer function at a frequency of any direction: the overlap of the pupil with itself, integrated by Gauss and
// Legendre's rule with so many nodes along each axis.
std::complex<Real> TransferFunction(const Polynomial& wavefront, Real fx, Real fy, int nodes);

// The same wavefront over the inner part of the pupil, of radius `ratio`, as coefficients of its own; orders 0 to 6.
std::vector<Real> RescaledCoefficients(const std::vector<Real>& coefficients, Real ratio);

}  // namespace orvanel::accuracy

#endif  // ORVANEL_TESTS_ACCURACY_CLOSED_FORMS_H
