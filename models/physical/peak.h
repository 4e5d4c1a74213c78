// The highest place of the light of some beams on the retina, between samples.
#ifndef ORVANEL_MODELS_PHYSICAL_PEAK_H
#define ORVANEL_MODELS_PHYSICAL_PEAK_H

#include <span>

#include "models/physical/chord_quadrature.h"
#include "models/physical/eye.h"

namespace orvanel::physical {

// The sum of factor |U|^2 over the beams at one direction, in arcmin, in the sense of DirectionGrid.
struct Peak {
  double value = 0.0;
  double x = 0.0;
  double y = 0.0;
};

// The largest value anywhere. Error: 1e-9 of the sum of the factors. Refuses a wavefront that is too steep.
// The search samples the window of all slopes 0.35 of the smallest wavelength / diameter apart. There a band-limited
// intensity is at least half of the peak beside it (Bernstein's inequality), so that no peak is missed; each is then
// refined by Newton's method.
//   quadrature  its tables are used and replaced
Outcome<Peak> HighestOf(std::span<const Beam> beams, std::span<const double> factors, ChordQuadrature& quadrature);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_PEAK_H
