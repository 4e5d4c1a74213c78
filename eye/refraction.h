// Refraction, the lens that corrects an eye, from its wavefront and into it.
//
// Signs: a short-sighted eye has a negative sphere and a positive coefficient of defocus. Axes are those of trial
// frames (TABO): counter-clockwise from the examiner's right, for both eyes alike, which is the angle of OSA/ANSI
// Z80.28 with y upwards.
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

// The same as independent parts: mean sphere, and the two crossed cylinders at 0 and 45 degrees.
struct PowerVector {
  Dioptres m, j0, j45;
};

inline PowerVector operator-(const PowerVector& powers) { return {-powers.m, -powers.j0, -powers.j45}; }
inline PowerVector operator-(const PowerVector& a, const PowerVector& b) {
  return {a.m - b.m, a.j0 - b.j0, a.j45 - b.j45};
}

enum class CylinderSign { kMinus, kPlus };

PowerVector ToPowerVector(const Refraction& refraction);

// With an axis above 0 and up to 180 degrees; 180 where there is no cylinder.
Refraction ToRefraction(const PowerVector& powers, CylinderSign sign);

// The sphere and cylinder whose wavefront is nearest to the eye's over the whole pupil: of the second order alone.
//   osa  orthonormal, micrometres, y upwards
PowerVector LeastSquaresRefraction(const Coefficients& osa, Millimetres pupil);

// The curvature of the wavefront at the centre of the pupil, to which every even order contributes.
// Source: Thibos, Hong, Bradley and Applegate (2004), Accuracy and precision of objective refraction.
PowerVector ParaxialRefraction(const Coefficients& osa, Millimetres pupil);

// The eye with this much more error of refraction: its least-squares and its paraxial refraction grow by it.
Coefficients WithRefraction(Coefficients osa, Millimetres pupil, const PowerVector& powers);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_REFRACTION_H
