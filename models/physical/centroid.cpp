// Averages the slopes of the wavefront over the pupil.
#include "models/physical/centroid.h"

#include "base/elementary.h"
#include "models/physical/quadrature/gauss_rules.h"

namespace orvanel::physical {
namespace {

struct Sums {
  double weight = 0.0, x = 0.0, y = 0.0;
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
          const double weight = across.weights[j] * along.weights[i] * Exponential(2.0 * exponent);
          const Jet w = line.At(middle + u);
          sums.weight += weight;
          sums.x += weight * w.dx;
          sums.y += weight * w.dy;
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

}  // namespace orvanel::physical
