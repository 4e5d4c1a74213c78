// The highest place of the light of some beams on the retina, between samples.
#ifndef ORVANEL_MODELS_PHYSICAL_PEAK_H
#define ORVANEL_MODELS_PHYSICAL_PEAK_H

#include <span>

#include "models/physical/eye.h"
#include "models/physical/workspace.h"

namespace orvanel::physical {

// The sum of factor |U|^2 over the beams at one direction, in arcmin, in the sense of DirectionGrid.
struct Peak {
  double value = 0.0;
  double x = 0.0;
  double y = 0.0;
};

// The largest value anywhere. Error: 1e-9 of the sum of the factors. Refuses wavefronts whose slopes differ by more
// than 1700 of the smallest wavelength / diameter.
//   factors  one for each beam
// A Fourier transform samples the window of all slopes, 0.35 to 0.42 of the smallest wavelength / diameter apart. The
// sample nearest to a peak then has at least a third of it (Bernstein's inequality). The peaks that promise to be the
// highest are refined by Newton's method.
Outcome<Peak> HighestOf(std::span<const Beam> beams, std::span<const double> factors, Workspace& workspace);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_PEAK_H
