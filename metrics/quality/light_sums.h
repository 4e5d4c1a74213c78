// Computes sums over the light of one eye, or of a pupil without aberration, from which metrics are made.
#ifndef ORVANEL_METRICS_QUALITY_LIGHT_SUMS_H
#define ORVANEL_METRICS_QUALITY_LIGHT_SUMS_H

#include <span>
#include <vector>

#include "metrics/quality/catalogue.h"
#include "metrics/quality/light_lattice.h"
#include "metrics/quality/quality.h"
#include "models/physical/eye.h"
#include "models/physical/window/light_window.h"
#include "models/physical/window/paraboloid.h"
#include "models/physical/workspace.h"

namespace orvanel::metrics {

// What metrics need.
struct Needs {
  bool image = false, low = false, neural = false, gaussian = false, contrasts = false, peak = false, all = false,
       volumes = false, circles = false, diameter = false, entropy = false, halfHeight = false, correlation = false,
       atOrigin = false, origin = false;
  // Of the sums that several metrics share, those that gradients need.
  bool contrastModulus = false, areaMtf = false, areaOtf = false, light = false, modulus = false,
       squaredModulus = false;
  bool operator==(const Needs&) const = default;
};

Needs NeedsOf(std::span<const QualityMetric> metrics, QualityOrigin origin);
Needs operator|(const Needs& a, const Needs& b);

// From the means of the MTF and the OTF over all directions.
struct Contrasts {
  double modulus = 0.0;                     // volume under the MTF, weighted by the contrast sensitivity
  double cutOffMtf = 0.0, cutOffOtf = 0.0;  // c/deg
  bool endsMtf = false, endsOtf = false;    // at the end of the contrast sensitivity
  double areaMtf = 0.0, areaOtf = 0.0;      // c/deg
};

struct Sums {
  LightLattice::LowFrequencies low;
  LightLattice::Means means;
  LightLattice::Circles circles;
  double neural = 0.0, gaussian = 0.0;
  Contrasts contrasts;
  physical::Peak peak;
  LightLattice::Volumes volumes;
  double within = 0.0, radius50 = 0.0;
  double entropy = 0.0;
  double halfHeightArea = 0.0, correlationArea = 0.0;
  double atOrigin = 0.0;
};

struct Origin {
  Place place;
  bool isUnique = true;
};

// The light of an eye in a window, whose samples are in the workspace.
struct SampledLight {
  const std::vector<physical::Beam>& beams;
  const std::vector<double>& factors;
  physical::LightWindow window;
  double unit;
  double circle;  // radius of LIB's
  double reach;   // the largest radius for D50
  double width;   // of the square that holds the rays
};

// The weights of the means whose sum changes as this combination of the three does.
LightLattice::MeanWeights WeightsOfContrasts(const LightLattice::Means& means, const ContrastSensitivity& sensitivity,
                                             double modulus, double areaMtf, double areaOtf);

// Weights of the window's samples, in workspace.weights, whose sum changes as the entropy does; and its derivatives by
// the place.
LightLattice::Slope WeightsOfEntropy(const physical::LightWindow& window, Place place, physical::Workspace& workspace);

Sums SumsOf(const Needs& needs, QualityOrigin wanted, const SampledLight& light, LightLattice& lattice,
            physical::Workspace& workspace, Origin& origin);

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_QUALITY_LIGHT_SUMS_H
