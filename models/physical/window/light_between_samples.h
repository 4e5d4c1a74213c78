// Interpolates the light of a window between its samples.
#ifndef ORVANEL_MODELS_PHYSICAL_WINDOW_LIGHT_BETWEEN_SAMPLES_H
#define ORVANEL_MODELS_PHYSICAL_WINDOW_LIGHT_BETWEEN_SAMPLES_H

#include "models/physical/window/light_window.h"
#include "models/physical/window/paraboloid.h"

namespace orvanel::physical {

// Value, slope and curvature in a direction, in arcmin, by band-limited interpolation of the 16 x 16 nearest samples.
// Source: Qian (2003), Proceedings of the American Mathematical Society 131:1169, sampling with Gaussian weights.
Paraboloid LightBetweenSamples(const LightWindow& window, double x, double y);

// The same of the 32 x 32 nearest samples, for windows without folding and of a finer spacing.
Paraboloid LightBetweenFineSamples(const LightWindow& window, double x, double y);
constexpr double kFineSd = 2.9;  // of its Gaussian, in samples
constexpr int kFineReach = 16;   // samples on each side

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_WINDOW_LIGHT_BETWEEN_SAMPLES_H
