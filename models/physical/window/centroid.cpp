// Averages the slopes of the wavefront over the pupil.
#include "models/physical/window/centroid.h"

#include <algorithm>
#include <cmath>

#include "models/physical/pupil/pupil_moments.h"

namespace orvanel::physical {
namespace {

struct Sums {
  double weight = 0.0, x = 0.0, y = 0.0, square = 0.0;
};

Sums SumsOf(const Pupil& pupil) {
  Sums sums;
  for (const auto& [weight, x, y, w] : NodesOf(pupil)) {
    sums.weight += weight;
    sums.x += weight * w.dx;
    sums.y += weight * w.dy;
    sums.square += weight * (w.dx * w.dx + w.dy * w.dy);
  }
  return sums;
}

// A slope in um per radius is 2 / wavelength units of wavelength / diameter.
double ArcminPerSlope(const Beam& beam) { return 2.0 / beam.pupil.wavelengthUm * beam.unitArcmin; }

}  // namespace

Centroid CentroidOf(std::span<const Beam> beams) {
  Centroid centroid;
  for (const Beam& beam : beams) {
    const Sums sums = SumsOf(beam.pupil);
    const double scale = beam.share * ArcminPerSlope(beam) / sums.weight;
    centroid.x += scale * sums.x;
    centroid.y += scale * sums.y;
  }
  return centroid;
}

// The same for all beams, as they have one outline, one attenuation, and one scale of slopes.
CentroidGradient GradientOfCentroid(const Beam& beam) {
  Polynomial moments;
  double light = 0.0;
  for (const PupilNode& node : NodesOf(beam.pupil)) {
    light += node.weight;
    AddMoments(node.weight, node.x, node.y, moments);
  }
  CentroidGradient gradient{ByModes(BySlopes(moments, {})), ByModes(BySlopes({}, moments))};
  const double scale = ArcminPerSlope(beam) / light;
  for (std::size_t j = 0; j < kModes; ++j) {
    gradient.x[j] *= scale;
    gradient.y[j] *= scale;
  }
  return gradient;
}

namespace {

struct RayMoments {
  double x = 0.0, y = 0.0, square = 0.0;  // arcmin
  double Spread() const { return std::sqrt(std::max(0.0, square - x * x - y * y)); }
};
RayMoments RayMomentsOf(std::span<const Beam> beams) {
  RayMoments mean;
  for (const Beam& beam : beams) {
    const Sums sums = SumsOf(beam.pupil);
    const double slope = ArcminPerSlope(beam), share = beam.share / sums.weight;
    mean.x += share * slope * sums.x;
    mean.y += share * slope * sums.y;
    mean.square += share * slope * slope * sums.square;
  }
  return mean;
}

}  // namespace

double RaySpreadOf(std::span<const Beam> beams) { return RayMomentsOf(beams).Spread(); }

std::array<double, kModes> GradientOfRaySpread(std::span<const Beam> beams) {
  const RayMoments mean = RayMomentsOf(beams);
  Polynomial ofX, ofY;
  for (const Beam& beam : beams) {
    const std::vector<PupilNode> nodes = NodesOf(beam.pupil);
    double light = 0.0;
    for (const PupilNode& node : nodes) light += node.weight;
    const double slope = ArcminPerSlope(beam);
    for (const PupilNode& node : nodes) {
      const double weight = node.weight * beam.share * slope / light;
      AddMoments(weight * (slope * node.wavefront.dx - mean.x), node.x, node.y, ofX);
      AddMoments(weight * (slope * node.wavefront.dy - mean.y), node.x, node.y, ofY);
    }
  }
  std::array<double, kModes> gradient = ByModes(BySlopes(ofX, ofY));
  for (double& d : gradient) d /= mean.Spread();
  return gradient;
}

}  // namespace orvanel::physical
