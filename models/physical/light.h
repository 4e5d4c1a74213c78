// Light as a list of wavelengths with weights, and the chromatic aberration of the eye.
#ifndef ORVANEL_MODELS_PHYSICAL_LIGHT_H
#define ORVANEL_MODELS_PHYSICAL_LIGHT_H

#include <vector>

#include "base/wavelength_range.h"

namespace orvanel::physical {

struct SpectralLine {
  double wavelengthNm = 0.0;
  double weight = 0.0;  // share of the light that counts, relative to the other lines
};
using Light = std::vector<SpectralLine>;

// The photopic sensitivity V of CIE 1924 at 400 to 700 nm, linear between multiples of 5 nm; 0 at other wavelengths.
double PhotopicSensitivity(double wavelengthNm);

// White light: equal energy at 400 to 700 nm in steps of 10 nm, times the photopic sensitivity V of CIE 1924. The steps
// bring the MTF within 7e-5 of that of the continuous spectrum.
Light WhiteLight();

// The refraction of the eye at one wavelength less that at another, in dioptres. Light of shorter wavelengths focuses
// in front: the difference is negative for it.
// Source: Thibos, Ye, Zhang and Bradley (1992), Applied Optics 31:3594.
double ChromaticDifference(double wavelengthNm, double referenceNm);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_LIGHT_H
