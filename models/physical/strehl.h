// The Strehl ratio on the axis and at the peak of the point spread function.
#ifndef ORVANEL_MODELS_PHYSICAL_STREHL_H
#define ORVANEL_MODELS_PHYSICAL_STREHL_H

#include "models/physical/chord_quadrature.h"

namespace orvanel::physical {

// Both are relative to the same pupil and attenuation without aberration.
struct Strehl {
  double axis = 0.0;   // in the direction (0, 0)
  double peak = 0.0;   // the largest anywhere
  double peakX = 0.0;  // its direction, in units of wavelength / diameter, in the sense of DirectionGrid
  double peakY = 0.0;
};

// Error: 1e-9 of the diffraction-limited peak.
// The search samples the window of all slopes 0.35 wavelength / diameter apart. There a band-limited intensity is at
// least half of the peak beside it (Bernstein's inequality), so that no peak is missed; each is then refined by
// Newton's method.
//   quadrature  its tables are used and replaced
Strehl StrehlOf(const Pupil& pupil, ChordQuadrature& quadrature);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_STREHL_H
