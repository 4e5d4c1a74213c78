// The pupil without aberration, to which results are relative.
#ifndef ORVANEL_MODELS_PHYSICAL_PUPIL_PERFECT_PUPIL_H
#define ORVANEL_MODELS_PHYSICAL_PUPIL_PERFECT_PUPIL_H

#include "models/physical/eye.h"
#include "models/physical/quadrature/chord_quadrature.h"

namespace orvanel::physical {

// Of the same outline and attenuation.
struct PerfectPupil {
  double peak = 1.0;   // its |U|^2 on the axis
  double light = 1.0;  // mean of the squared amplitude: the share of light that counts
};
PerfectPupil PerfectPupilOf(const Pupil& pupil, ChordQuadrature& quadrature);

// The density per arcmin^2 where |U|^2 is 1. The density's integral over the whole plane is 1: area / wavelength^2
// |U|^2 over the light, by Parseval's theorem.
double DensityOf(const Beam& beam, const PerfectPupil& perfect);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_PUPIL_PERFECT_PUPIL_H
