// Derivatives of sums over the light of some beams by the coefficients of their wavefront.
#ifndef ORVANEL_MODELS_PHYSICAL_WINDOW_LIGHT_GRADIENT_H
#define ORVANEL_MODELS_PHYSICAL_WINDOW_LIGHT_GRADIENT_H

#include <array>
#include <span>

#include "models/physical/eye.h"
#include "models/physical/window/light_window.h"
#include "models/physical/window/paraboloid.h"
#include "models/physical/workspace.h"

namespace orvanel::physical {

// By the modes in um, in OSA/ANSI order. Piston moves no light: its derivative is 0. The wavefronts of all beams change
// alike. Derivatives are those of the numbers as they are computed, to rounding, at a fixed centre of the window.
using Gradient = std::array<double, kModes>;

// Of the sum of weight * sample over the samples that SampleLight makes: by one more transform for all modes. The field
// of a single beam is kept for the next sum in the same window.
class SampleGradients {
 public:
  SampleGradients(std::span<const Beam> beams, std::span<const double> factors, Workspace& workspace)
      : beams_(beams), factors_(factors), workspace_(workspace) {}

  //   weights  as the samples; may be workspace.weights
  Gradient Of(const LightWindow& window, const double* weights);

 private:
  std::span<const Beam> beams_;
  std::span<const double> factors_;
  Workspace& workspace_;
  LatticeField field_{};
  int kept_ = 0;  // the side of the window of the kept field
};

// Of the sum of factor |U|^2 at a place, and of its slopes there.
struct DensityGradient {
  Paraboloid density;
  Gradient value, x, y;
};
DensityGradient GradientOfDensity(std::span<const Beam> beams, std::span<const double> factors, double x, double y,
                                  ChordQuadrature& quadrature);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_WINDOW_LIGHT_GRADIENT_H
