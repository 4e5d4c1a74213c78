// Gauss rules on the chords of the pupil.
#include "models/physical/pupil/pupil_moments.h"

#include "base/elementary.h"
#include "models/physical/quadrature/gauss_rules.h"

namespace orvanel::physical {
namespace {

using Powers = std::array<double, kHighestOrder + 1>;

Powers PowersOf(double place) {
  Powers powers{1.0};
  for (std::size_t k = 1; k < powers.size(); ++k) powers[k] = powers[k - 1] * place;
  return powers;
}

}  // namespace

std::vector<PupilNode> NodesOf(const Pupil& pupil) {
  const Attenuation attenuation = AttenuationOf(pupil);
  // Nodes each way. A Gaussian of exponent 200, the steepest that an eye may have, needs 64 more.
  const int count = attenuation.perSquare == 0.0 ? 12 : 96;
  const GaussRule along = GaussLegendre(count);
  std::vector<double> halfChords;
  const GaussRule across = GaussChebyshev2(count, halfChords);
  const Chords chords = ChordsOf(pupil.outline);
  std::vector<PupilNode> nodes;
  nodes.reserve(4 * along.nodes.size() * across.nodes.size());
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
          nodes.push_back({across.weights[j] * along.weights[i] * light, middle + u, height, line.At(middle + u)});
        }
      }
    }
  }
  return nodes;
}

void AddMoments(double value, double x, double y, Polynomial& moments) {
  const Powers alongX = PowersOf(x), alongY = PowersOf(y);
  for (int a = 0; a <= kHighestOrder; ++a) {
    const double term = value * alongX[static_cast<std::size_t>(a)];
    for (int b = 0; a + b <= kHighestOrder; ++b) {
      moments.coefficients[Monomial(a, b)] += term * alongY[static_cast<std::size_t>(b)];
    }
  }
}

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

}  // namespace orvanel::physical
