// Derivatives of the sums over the light by the modes of the eye.
#ifndef ORVANEL_METRICS_QUALITY_LIGHT_GRADIENTS_H
#define ORVANEL_METRICS_QUALITY_LIGHT_GRADIENTS_H

#include "metrics/quality/light_sums.h"
#include "models/physical/window/light_gradient.h"

namespace orvanel::metrics {

// Each as the sum of the same name, per um.
struct SumGradients {
  physical::Gradient neural{}, gaussian{}, peak{}, atOrigin{};
  physical::Gradient contrastModulus{}, areaMtf{}, areaOtf{};
  physical::Gradient within{}, radius50{}, entropy{};
  physical::Gradient modulus{}, squaredModulus{};  // of the volumes
};

// Sums at an origin that moves with the modes follow it. The highest place of a sum does not change it by moving.
// Not a number for sums that follow a place which is not unique.
//   light  its samples are in the workspace
void AddGradients(const Needs& needs, QualityOrigin wanted, const SampledLight& light, const LightLattice& lattice,
                  const Sums& sums, const Origin& origin, physical::Workspace& workspace, SumGradients& gradients);

// Those of the volumes, after TransformAll of the window on its lattice.
void AddGradientsOfVolumes(const Needs& needs, const std::vector<physical::Beam>& beams,
                           const std::vector<double>& factors, const physical::LightWindow& window,
                           const LightLattice& lattice, physical::Workspace& workspace, SumGradients& gradients);

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_QUALITY_LIGHT_GRADIENTS_H
