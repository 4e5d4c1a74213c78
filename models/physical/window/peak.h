// The highest place of the light of some beams on the retina, between samples.
#ifndef ORVANEL_MODELS_PHYSICAL_WINDOW_PEAK_H
#define ORVANEL_MODELS_PHYSICAL_WINDOW_PEAK_H

#include <span>

#include "models/physical/eye.h"
#include "models/physical/window/light_window.h"
#include "models/physical/window/paraboloid.h"
#include "models/physical/workspace.h"

namespace orvanel::physical {

// The intensity |U|^2, in the unit of the field's directions.
Paraboloid IntensityOf(const FieldJet& field);

// The largest sum of factor |U|^2 over the beams, in a window of all light. Error: 1e-9 of the sum of the factors. The
// sample nearest to a peak has at least a third of it (Bernstein's inequality). The peaks that promise to be the
// highest are refined by Newton's method.
//   window   kept; at least 1.25 times as wide as the slopes, so that little light folds into it
//   factors  one for each beam
//   climbed  receives how many peaks were refined by sums over the pupils, which is what the search costs
Peak HighestIn(const LightWindow& window, std::span<const Beam> beams, std::span<const double> factors,
               Workspace& workspace, int* climbed = nullptr);

// The same in a separate window, with the refusals of SampleLight.
Outcome<Peak> HighestOf(std::span<const Beam> beams, std::span<const double> factors, Workspace& workspace,
                        int* climbed = nullptr);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_WINDOW_PEAK_H
