// Averages the slopes of the wavefront over the pupil.
#include "models/physical/centroid.h"

#include <algorithm>
#include <cmath>

#include "base/elementary.h"
#include "models/physical/quadrature/gauss_rules.h"

namespace orvanel::physical {
namespace {

struct Sums {
  double weight = 0.0, x = 0.0, y = 0.0, square = 0.0;
};

// Nodes each way: exact for the slopes' degree, 9, times that of the attenuation. A Gaussian of exponent 200, the
// steepest that an eye may have, needs 64.
constexpr int kNodes = 96;

Sums SumsOf(const Pupil& pupil) {
  const GaussRule along = GaussLegendre(kNodes);
  std::vector<double> halfChords;
  const GaussRule across = GaussChebyshev2(kNodes, halfChords);
  const Chords chords = ChordsOf(pupil.outline);
  const Attenuation attenuation = AttenuationOf(pupil);
  Sums sums;
  for (std::size_t j = 0; j < across.nodes.size(); ++j) {
    for (const double v : {across.nodes[j], -across.nodes[j]}) {
      const double middle = chords.MiddleAt(v), height = chords.HeightAt(v);
      const LineJet line = JetAlongLine(pupil.wavefrontUm, height);
      const std::array<double, 3> logAmplitude = attenuation.AlongLine(middle, height);
      for (std::size_t i = 0; i < along.nodes.size(); ++i) {
        for (const double side : {1.0, -1.0}) {
          const double u = side * along.nodes[i] * chords.halfWidth * halfChords[j];
          const double exponent = logAmplitude[0] + u * (logAmplitude[1] + u * logAmplitude[2]);
          const double light = attenuation.perSquare == 0.0 ? 1.0 : Exponential(2.0 * exponent);
          const double weight = across.weights[j] * along.weights[i] * light;
          const Jet w = line.At(middle + u);
          sums.weight += weight;
          sums.x += weight * w.dx;
          sums.y += weight * w.dy;
          sums.square += weight * (w.dx * w.dx + w.dy * w.dy);
        }
      }
    }
  }
  return sums;
}

}  // namespace

Centroid CentroidOf(std::span<const Beam> beams) {
  Centroid centroid;
  for (const Beam& beam : beams) {
    const Sums sums = SumsOf(beam.pupil);
    // A slope in um per radius is 2 / wavelength units of wavelength / diameter.
    const double scale = beam.share * 2.0 / beam.pupil.wavelengthUm * beam.unitArcmin / sums.weight;
    centroid.x += scale * sums.x;
    centroid.y += scale * sums.y;
  }
  return centroid;
}

double RaySpreadOf(std::span<const Beam> beams) {
  Sums mean;
  for (const Beam& beam : beams) {
    const Sums sums = SumsOf(beam.pupil);
    const double slope = 2.0 / beam.pupil.wavelengthUm * beam.unitArcmin, share = beam.share / sums.weight;
    mean.x += share * slope * sums.x;
    mean.y += share * slope * sums.y;
    mean.square += share * slope * slope * sums.square;
  }
  return std::sqrt(std::max(0.0, mean.square - mean.x * mean.x - mean.y * mean.y));
}

}  // namespace orvanel::physical
