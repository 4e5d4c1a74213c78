// Converts between coefficients and power vectors. A lens of 1 dioptre changes the wavefront by rho^2 r^2 / 2
// micrometres, r in millimetres.
#include "eye/refraction.h"

#include <cmath>
#include <numbers>

#include "base/elementary.h"

namespace orvanel::eye {
namespace {

constexpr double kDegree = std::numbers::pi / 180.0;
constexpr std::size_t kOblique = 3, kDefocus = 4, kVertical = 5;  // (2, -2), (2, 0), (2, 2)

double At(const Coefficients& coefficients, std::size_t j) { return j < coefficients.size() ? coefficients[j] : 0.0; }

double SquaredRadius(Millimetres pupil) { return pupil.value() * pupil.value() / 4.0; }

// The factor of rho^2 in the orthonormal polynomial (n, m), m = 0 or +-2.
double QuadraticPart(int n, int m) {
  const int half = n / 2;
  const int bare = m == 0 ? half * (half + 1) : half * (half + 1) / 2;
  return (half % 2 == 1 ? bare : -bare) * NormFactor({n, m});
}

// The dioptres of the terms (2, m) to (highest, m).
Dioptres Curvature(const Coefficients& osa, Millimetres pupil, int m, int highest) {
  double quadratic = 0.0;
  for (int n = 2; n <= highest; n += 2) quadratic += QuadraticPart(n, m) * At(osa, OsaIndex({n, m}));
  return Dioptres(-2.0 * quadratic / SquaredRadius(pupil));
}

PowerVector Powers(const Coefficients& osa, Millimetres pupil, int highest) {
  return {Curvature(osa, pupil, 0, highest), Curvature(osa, pupil, 2, highest), Curvature(osa, pupil, -2, highest)};
}

}  // namespace

PowerVector ToPowerVector(const Refraction& refraction) {
  const double twice = 2.0 * refraction.axis.value() * kDegree;
  const Dioptres half = refraction.cylinder / 2.0;
  const SineCosine direction = SineAndCosine(twice);
  return {refraction.sphere + half, -half * direction.cosine, -half * direction.sine};
}

Refraction ToRefraction(const PowerVector& powers, CylinderSign sign) {
  const double j0 = powers.j0.value(), j45 = powers.j45.value();
  const double cross = std::sqrt(j0 * j0 + j45 * j45);
  double axis = cross == 0.0 ? 0.0 : ArcTangent2(j45, j0) / kDegree / 2.0;
  Dioptres cylinder(cross == 0.0 ? 0.0 : -2.0 * cross);
  if (sign == CylinderSign::kPlus && cross != 0.0) {
    cylinder = -cylinder;
    axis += 90.0;
  }
  while (axis <= 0.0) axis += 180.0;
  while (axis > 180.0) axis -= 180.0;
  return {powers.m - cylinder / 2.0, cylinder, Degrees(axis)};
}

PowerVector LeastSquaresRefraction(const Coefficients& osa, Millimetres pupil) { return Powers(osa, pupil, 2); }

PowerVector ParaxialRefraction(const Coefficients& osa, Millimetres pupil) { return Powers(osa, pupil, kLargestOrder); }

Coefficients WithRefraction(Coefficients osa, Millimetres pupil, const PowerVector& powers) {
  if (osa.size() <= kVertical) osa.resize(kVertical + 1);
  const double half = SquaredRadius(pupil) / 2.0;
  osa[kDefocus] -= powers.m.value() * half / QuadraticPart(2, 0);
  osa[kVertical] -= powers.j0.value() * half / QuadraticPart(2, 2);
  osa[kOblique] -= powers.j45.value() * half / QuadraticPart(2, -2);
  return osa;
}

}  // namespace orvanel::eye
