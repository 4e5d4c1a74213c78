// Samples the light of some beams without folding, by quadrature, for searches among hills of nearly equal height.
#ifndef ORVANEL_MODELS_PHYSICAL_WINDOW_EXACT_WINDOW_H
#define ORVANEL_MODELS_PHYSICAL_WINDOW_EXACT_WINDOW_H

#include <optional>
#include <span>
#include <vector>

#include "models/physical/eye.h"
#include "models/physical/quadrature/chord_quadrature.h"
#include "models/physical/window/light_window.h"

namespace orvanel::physical {

// Its samples are within 1e-10 of the light of a pupil without aberration. They are closer together than those of
// SampleLight. LightBetweenFineSamples has an error of at most the share `errorBetween` of the highest value.
struct ExactWindow {
  LightWindow window;  // of `samples`
  std::vector<double> samples;
  double errorBetween = 0.0;
};

// Holds the slopes of the beams, and around them the samples that places between them need. Nothing where a wavefront
// needs more nodes than the quadrature has.
std::optional<ExactWindow> ExactWindowOf(std::span<const Beam> beams, std::span<const double> factors,
                                         ChordQuadrature& quadrature);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_WINDOW_EXACT_WINDOW_H
