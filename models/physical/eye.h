// The eye as the physical model takes it, and its pupil in light of one wavelength.
#ifndef ORVANEL_MODELS_PHYSICAL_EYE_H
#define ORVANEL_MODELS_PHYSICAL_EYE_H

#include <array>
#include <vector>

#include "models/physical/light.h"
#include "models/physical/outcome.h"
#include "models/physical/pupil/pupil.h"

namespace orvanel::physical {

constexpr double kSmallestPupilMm = 0.5;
constexpr double kLargestPupilMm = 12.0;
constexpr double kLargestRho = 1.0;             // of the Stiles-Crawford effect, per mm^2
constexpr double kLargestDecentrationMm = 6.0;  // of its centre, and of the achromatic axis

// The wavefront that leaves the eye, positive where it is ahead. x is to the right of an examiner who faces the eye, y
// is up. Coefficients are in um, of orthonormal modes by OSA/ANSI index, radial orders 0 to 10.
struct Eye {
  double diameterMm = 0.0;  // over which the modes are given
  std::array<double, kModes> modesUm{};
  double referenceNm = 0.0;  // the wavelength at which the modes hold; 0 if unknown
  Ellipse outline;           // of the pupil, in units of half the diameter
  StilesCrawford stilesCrawford;
  double achromaticAxisXmm = 0.0;  // the place of the pupil that chromatic aberration does not deflect
  double achromaticAxisYmm = 0.0;
};

// The pupil in light of one wavelength. Defocus and, off the achromatic axis, tilt change with the wavelength; all
// other modes keep their um. An eye of unknown reference wavelength is taken as one that was measured at this one.
// Piston, which no image shows, is left out.
Pupil PupilInLight(const Eye& eye, double wavelengthNm);

// The pupil for one line of light.
struct Beam {
  Pupil pupil;
  int line = 0;             // its index in the light
  double share = 0.0;       // of the light; all shares add up to 1
  double unitArcmin = 0.0;  // wavelength / diameter
};

// One beam for each line whose weight is not 0.
Outcome<std::vector<Beam>> BeamsOf(const Eye& eye, const Light& light);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_EYE_H
