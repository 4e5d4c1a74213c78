// Computes refraction, the lens that corrects an eye, from a wavefront, and adds refraction to a wavefront.
//
// Signs: a short-sighted eye has a negative sphere and a positive coefficient of defocus. Axes are those of trial
// frames (TABO), counter-clockwise from the examiner's right for both eyes. This is the angle of OSA/ANSI Z80.28 with y
// up.
#ifndef ORVANEL_EYE_REFRACTION_H
#define ORVANEL_EYE_REFRACTION_H

#include "base/layers.h"
#include "base/units.h"
#include "eye/conventions/convention.h"

namespace orvanel::eye {

using Dioptres = Quantity<struct DioptresUnit>;
using Degrees = Quantity<struct DegreesUnit>;

struct Refraction {
  Dioptres sphere, cylinder;
  Degrees axis;
};

// The same as a power vector: mean sphere, and the two crossed cylinders at 0 and 45 degrees.
struct PowerVector {
  Dioptres m, j0, j45;
};

inline PowerVector operator-(const PowerVector& powers) { return {-powers.m, -powers.j0, -powers.j45}; }
inline PowerVector operator-(const PowerVector& a, const PowerVector& b) {
  return {a.m - b.m, a.j0 - b.j0, a.j45 - b.j45};
}

enum class CylinderSign { kMinus, kPlus };

PowerVector ToPowerVector(const Refraction& refraction);

// The axis is above 0 and at most 180 degrees; it is 180 without a cylinder.
Refraction ToRefraction(const PowerVector& powers, CylinderSign sign);

// The sphere and cylinder whose wavefront is closest to that of the eye over the whole pupil, by least squares. Only
// the second order contributes.
//   osa  orthonormal, micrometres, y up
PowerVector LeastSquaresRefraction(const Coefficients& osa, Millimetres pupil);

// The curvature of the wavefront at the centre of the pupil. Every even order contributes.
// Source: Thibos, Hong, Bradley and Applegate (2004), Accuracy and precision of objective refraction.
PowerVector ParaxialRefraction(const Coefficients& osa, Millimetres pupil);

// Adds a refractive error: the least-squares and the paraxial refraction increase by it.
Coefficients WithRefraction(Coefficients osa, Millimetres pupil, const PowerVector& powers);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_REFRACTION_H
