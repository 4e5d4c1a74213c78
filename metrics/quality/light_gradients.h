// Derivatives of the sums over the light by the modes of the eye.
#ifndef ORVANEL_METRICS_QUALITY_LIGHT_GRADIENTS_H
#define ORVANEL_METRICS_QUALITY_LIGHT_GRADIENTS_H

#include "metrics/quality/light_sums.h"
#include "models/physical/light_gradient.h"

namespace orvanel::metrics {

// Each as the sum of the same name, per um.
struct SumGradients {
  physical::Gradient neural{}, gaussian{}, peak{}, atOrigin{};
};

// Sums at an origin that moves with the modes follow it. The highest place of a sum does not change it by moving.
// Not a number for sums that follow a place which is not unique.
//   light  its samples are in the workspace
SumGradients GradientsOf(const Needs& needs, QualityOrigin wanted, const SampledLight& light,
                         const LightLattice& lattice, const Sums& sums, const Origin& origin,
                         physical::Workspace& workspace);

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_QUALITY_LIGHT_GRADIENTS_H
