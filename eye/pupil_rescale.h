// Rescales the coefficients of a wavefront to a smaller or larger concentric pupil.
#ifndef ORVANEL_EYE_PUPIL_RESCALE_H
#define ORVANEL_EYE_PUPIL_RESCALE_H

#include "base/layers.h"
#include "eye/conventions/convention.h"

namespace orvanel::eye {

// Coefficients c' with sum c'_j Z_j(rho) = sum c_j Z_j(ratio rho), exact except for rounding.
//   orthonormal  coefficients of orthonormal polynomials
//   ratio        new diameter over old; above 1 the polynomials are continued beyond the measurement
// Source: Janssen and Dirksen (2006), Concise formula for the Zernike coefficients of scaled pupils.
Coefficients Rescaled(const Coefficients& orthonormal, double ratio);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_PUPIL_RESCALE_H
