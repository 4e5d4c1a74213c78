// The centre of gravity of the light on the retina, and the spread of the rays.
#ifndef ORVANEL_MODELS_PHYSICAL_WINDOW_CENTROID_H
#define ORVANEL_MODELS_PHYSICAL_WINDOW_CENTROID_H

#include <array>
#include <span>

#include "models/physical/eye.h"

namespace orvanel::physical {

// In arcmin, in the sense of DirectionGrid.
struct Centroid {
  double x = 0.0;
  double y = 0.0;
};

// The mean slope of the wavefront, weighted by the light in the pupil. Diffraction at the rim moves light by as much to
// every side, so that this is the centroid of the PSF over windows that grow without limit.
// Error: 1e-10 of the largest slope.
Centroid CentroidOf(std::span<const Beam> beams);

// Its derivatives by the modes in um, of any beam of an eye.
struct CentroidGradient {
  std::array<double, kModes> x, y;
};
CentroidGradient GradientOfCentroid(const Beam& beam);

// The root mean square distance of the rays from their centroid, in arcmin. It is the second moment of geometric
// optics; that of the PSF grows with the window without limit.
double RaySpreadOf(std::span<const Beam> beams);
// Its derivatives by the modes in um; not numbers where it is 0.
std::array<double, kModes> GradientOfRaySpread(std::span<const Beam> beams);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_WINDOW_CENTROID_H
