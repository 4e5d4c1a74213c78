// Integrates the amplitude and its square over the pupil.
#include "models/physical/pupil/perfect_pupil.h"

#include <numbers>

namespace orvanel::physical {
namespace {

double MeanAmplitude(const Pupil& flat, ChordQuadrature& quadrature) {
  return quadrature.Field(flat, 0.0, 0.0, ChordQuadrature::CountsFor(flat, {0.0, 0.0, 1.0, 1, 1})).u.real();
}

}  // namespace

PerfectPupil PerfectPupilOf(const Pupil& pupil, ChordQuadrature& quadrature) {
  if (pupil.stilesCrawford.rho == 0.0) return {};
  Pupil flat = Flat(pupil);
  const double amplitude = MeanAmplitude(flat, quadrature);
  flat.stilesCrawford.rho *= 2.0;  // whose amplitude is the intensity
  return {amplitude * amplitude, MeanAmplitude(flat, quadrature)};
}

double DensityOf(const Beam& beam, const PerfectPupil& perfect) {
  // In units of diameter^2 / wavelength^2, a round pupil has the area pi/4.
  const Ellipse& outline = beam.pupil.outline;
  const double area = std::numbers::pi / 4.0 * outline.semiAxisA * outline.semiAxisB;
  return area / (beam.unitArcmin * beam.unitArcmin) / perfect.light;
}

}  // namespace orvanel::physical
