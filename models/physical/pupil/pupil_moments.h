// Sums over the pupil of values times powers of the place.
#ifndef ORVANEL_MODELS_PHYSICAL_PUPIL_PUPIL_MOMENTS_H
#define ORVANEL_MODELS_PHYSICAL_PUPIL_PUPIL_MOMENTS_H

#include <vector>

#include "models/physical/pupil/pupil.h"

namespace orvanel::physical {

// A place of the pupil, the light there, and the wavefront.
struct PupilNode {
  double weight, x, y;
  Jet wavefront;
};

// Nodes whose weighted sum is exact for polynomials of degree 23, with attenuation to 1e-10. The sum of the weights is
// some constant.
std::vector<PupilNode> NodesOf(const Pupil& pupil);

// Adds value * x^a y^b to each coefficient.
void AddMoments(double value, double x, double y, Polynomial& moments);

// Of each monomial, the sum of its slopes times two fields, from the moments of these.
Polynomial BySlopes(const Polynomial& ofX, const Polynomial& ofY);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_PUPIL_PUPIL_MOMENTS_H
