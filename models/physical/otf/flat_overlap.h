// The optical transfer function of an evenly bright pupil without aberration.
#ifndef ORVANEL_MODELS_PHYSICAL_OTF_FLAT_OVERLAP_H
#define ORVANEL_MODELS_PHYSICAL_OTF_FLAT_OVERLAP_H

#include "models/physical/pupil/pupil.h"

namespace orvanel::physical {

// At a frequency in units of diameter / wavelength, in closed form: 2/pi (arccos v - v root(1 - v^2)) for a circle.
class FlatOverlap {
 public:
  explicit FlatOverlap(const Ellipse& outline);
  double At(double fx, double fy) const;

 private:
  double cosine_, sine_, semiAxisA_, semiAxisB_;
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_OTF_FLAT_OVERLAP_H
