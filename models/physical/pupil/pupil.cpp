// The pupil's chords, its attenuation, and the directions of its rays.
#include "models/physical/pupil/pupil.h"

#include <cmath>
#include <limits>
#include <numbers>

#include "base/elementary.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;

// The larger one; not a number if either is not.
double Larger(double a, double b) { return a >= b || a != a ? a : b; }

// The smaller one; not a number if either is not.
double Smaller(double a, double b) { return a <= b || a != a ? a : b; }

}  // namespace

Chords ChordsOf(const Ellipse& outline) {
  const SineCosine turn = SineAndCosine(outline.angle);
  const double a2 = outline.semiAxisA * outline.semiAxisA, b2 = outline.semiAxisB * outline.semiAxisB;
  const double yy = a2 * turn.sine * turn.sine + b2 * turn.cosine * turn.cosine;
  const double xy = a2 == b2 ? 0.0 : (a2 - b2) * turn.sine * turn.cosine;
  const double halfHeight = a2 == b2 ? outline.semiAxisA : std::sqrt(yy);
  return {outline.centreX, outline.centreY, outline.semiAxisA * outline.semiAxisB / halfHeight, halfHeight, xy / yy};
}

std::array<double, 3> Attenuation::AlongLine(double middle, double height) const {
  const double dx = middle - x, dy = height - y;
  return {perSquare * (dx * dx + dy * dy), 2.0 * perSquare * dx, perSquare};
}

Attenuation AttenuationOf(const Pupil& pupil) {
  const StilesCrawford& effect = pupil.stilesCrawford;
  return {-0.5 * std::numbers::ln10 * effect.rho * pupil.radiusMm * pupil.radiusMm, effect.centreXmm / pupil.radiusMm,
          effect.centreYmm / pupil.radiusMm};
}

AffineMap MapOf(const Ellipse& outline) {
  const SineCosine turn = SineAndCosine(outline.angle);
  return {outline.semiAxisA * turn.cosine, -outline.semiAxisB * turn.sine,  outline.centreX,
          outline.semiAxisA * turn.sine,   outline.semiAxisB * turn.cosine, outline.centreY};
}

double RimTransmission(const Pupil& pupil) {
  const Attenuation attenuation = AttenuationOf(pupil);
  if (attenuation.perSquare == 0.0) return 1.0;
  constexpr int kPlaces = 64;
  const AffineMap map = MapOf(pupil.outline);
  double sum = 0.0;
  for (int i = 0; i < kPlaces; ++i) {
    const SineCosine t = SineAndCosineOfTurn(i, kPlaces);
    const double x = map.xx * t.cosine + map.xy * t.sine + map.x0 - attenuation.x;
    const double y = map.yx * t.cosine + map.yy * t.sine + map.y0 - attenuation.y;
    sum += Exponential(2.0 * attenuation.perSquare * (x * x + y * y));
  }
  return sum / kPlaces;
}

SlopeRange SlopesOf(const Pupil& pupil) {
  constexpr int kSteps = 24;
  const Chords chords = ChordsOf(pupil.outline);
  const double scale = 2.0 / pupil.wavelengthUm;
  constexpr double infinity = std::numeric_limits<double>::infinity();
  SlopeRange range{infinity, -infinity, infinity, -infinity};
  for (int i = 0; i <= kSteps; ++i) {
    const SineCosine t = SineAndCosine(kPi * (static_cast<double>(i) / kSteps - 0.5));
    const LineJet line = JetAlongLine(pupil.wavefrontUm, chords.HeightAt(t.sine));
    for (int j = 0; j <= kSteps; ++j) {
      const SineCosine s = SineAndCosine(kPi * (static_cast<double>(j) / kSteps - 0.5));
      const double x = chords.MiddleAt(t.sine) + chords.halfWidth * t.cosine * s.sine;
      const Jet w = line.At(x);
      range.lowX = Smaller(range.lowX, scale * w.dx);
      range.highX = Larger(range.highX, scale * w.dx);
      range.lowY = Smaller(range.lowY, scale * w.dy);
      range.highY = Larger(range.highY, scale * w.dy);
    }
  }
  return range;
}

Pupil Flat(Pupil pupil) {
  pupil.modesUm = {};
  pupil.wavefrontUm = {};
  return pupil;
}

}  // namespace orvanel::physical
