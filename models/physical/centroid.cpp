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

// Calls visit(weight, x, y, wavefront) at all nodes of the pupil, in rows.
template <class Visit>
void ForNodes(const Pupil& pupil, const Visit& visit) {
  const Attenuation attenuation = AttenuationOf(pupil);
  // Nodes each way: exact for products of slopes, of degree 18, and with powers of the place. A Gaussian of exponent
  // 200, the steepest that an eye may have, needs 64 more.
  const int nodes = attenuation.perSquare == 0.0 ? 12 : 96;
  const GaussRule along = GaussLegendre(nodes);
  std::vector<double> halfChords;
  const GaussRule across = GaussChebyshev2(nodes, halfChords);
  const Chords chords = ChordsOf(pupil.outline);
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
          visit(across.weights[j] * along.weights[i] * light, middle + u, height, line.At(middle + u));
        }
      }
    }
  }
}

Sums SumsOf(const Pupil& pupil) {
  Sums sums;
  ForNodes(pupil, [&sums](double weight, double /*x*/, double /*y*/, const Jet& w) {
    sums.weight += weight;
    sums.x += weight * w.dx;
    sums.y += weight * w.dy;
    sums.square += weight * (w.dx * w.dx + w.dy * w.dy);
  });
  return sums;
}

// Powers of a place.
struct Powers {
  explicit Powers(double place) {
    for (std::size_t k = 1; k < of.size(); ++k) of[k] = of[k - 1] * place;
  }
  std::array<double, kHighestOrder + 1> of{1.0};
};

// Adds the sums of value * x^a y^b.
void AddMoments(double value, double x, double y, Polynomial& moments) {
  const Powers alongX(x), alongY(y);
  for (int a = 0; a <= kHighestOrder; ++a) {
    const double term = value * alongX.of[static_cast<std::size_t>(a)];
    for (int b = 0; a + b <= kHighestOrder; ++b) {
      moments.coefficients[Monomial(a, b)] += term * alongY.of[static_cast<std::size_t>(b)];
    }
  }
}

// The sum of moments of x's field with the slopes of monomials by x, and likewise by y.
Polynomial BySlopes(const Polynomial& ofX, const Polynomial& ofY) {
  Polynomial sum;
  for (int a = 0; a <= kHighestOrder; ++a) {
    for (int b = 0; a + b <= kHighestOrder; ++b) {
      double& to = sum.coefficients[Monomial(a, b)];
      if (a > 0) to += a * ofX.coefficients[Monomial(a - 1, b)];
      if (b > 0) to += b * ofY.coefficients[Monomial(a, b - 1)];
    }
  }
  return sum;
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
  ForNodes(beam.pupil, [&](double weight, double x, double y, const Jet& /*wavefront*/) {
    light += weight;
    AddMoments(weight, x, y, moments);
  });
  CentroidGradient gradient{ByModes(BySlopes(moments, {})), ByModes(BySlopes({}, moments))};
  const double scale = ArcminPerSlope(beam) / light;
  for (std::size_t j = 0; j < kModes; ++j) {
    gradient.x[j] *= scale;
    gradient.y[j] *= scale;
  }
  return gradient;
}

double RaySpreadOf(std::span<const Beam> beams) {
  Sums mean;
  for (const Beam& beam : beams) {
    const Sums sums = SumsOf(beam.pupil);
    const double slope = ArcminPerSlope(beam), share = beam.share / sums.weight;
    mean.x += share * slope * sums.x;
    mean.y += share * slope * sums.y;
    mean.square += share * slope * slope * sums.square;
  }
  return std::sqrt(std::max(0.0, mean.square - mean.x * mean.x - mean.y * mean.y));
}

}  // namespace orvanel::physical
