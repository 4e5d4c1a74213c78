// Overlap of the pupil with itself, chord by chord across the shift.
#include "models/physical/otf/otf_overlap.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "base/elementary.h"
#include "models/physical/quadrature/bandwidth.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

std::size_t Size(int n) { return static_cast<std::size_t>(n); }

// Without the shift.
AffineMap Inverse(const AffineMap& m) {
  const double determinant = m.xx * m.yy - m.xy * m.yx;
  return {m.yy / determinant, -m.xy / determinant, 0.0, -m.yx / determinant, m.xx / determinant, 0.0};
}

Polynomial LogAmplitude(const Pupil& pupil) {
  const Attenuation a = AttenuationOf(pupil);
  Polynomial p;
  p.coefficients[Monomial(0, 0)] = a.perSquare * (a.x * a.x + a.y * a.y);
  p.coefficients[Monomial(1, 0)] = -2.0 * a.perSquare * a.x;
  p.coefficients[Monomial(0, 1)] = -2.0 * a.perSquare * a.y;
  p.coefficients[Monomial(2, 0)] = p.coefficients[Monomial(0, 2)] = a.perSquare;
  return p;
}

// p(x + shift / 2) - p(x - shift / 2).
LinePolynomial Difference(const LinePolynomial& p, double shift) {
  const LinePolynomial right = Shifted(p, shift / 2.0), left = Shifted(p, -shift / 2.0);
  LinePolynomial difference;
  for (std::size_t k = 0; k < p.size(); ++k) difference[k] = right[k] - left[k];
  return difference;
}

// The largest frequencies of the phase's difference over the overlap, along the shift and across it.
double FrequencyOf(const Polynomial& phase, double shift, double halfAngle) {
  constexpr int kSteps = 10;
  double largest = 0.0;
  for (int i = -kSteps; i <= kSteps; ++i) {
    const SineCosine t = SineAndCosine(halfAngle * i / kSteps);
    LineJet line = JetAlongLine(phase, t.sine);
    line = {Difference(line.value, shift), Difference(line.dy, shift)};
    for (int j = -kSteps; j <= kSteps; ++j) {
      const double w = static_cast<double>(j) / kSteps;
      const auto [value, dx, dy] = line.At((t.cosine - shift / 2.0) * w);
      const double along = std::fabs(dx) * (t.cosine - shift / 2.0);
      const double across = std::fabs(dy * t.cosine - dx * t.sine * w) * halfAngle;
      if (!(along <= largest)) largest = along;
      if (!(across <= largest)) largest = across;
    }
  }
  return largest;
}

}  // namespace

OtfOverlap::OtfOverlap(const Pupil& pupil, const ChordKernels& kernels)
    : kernels_(&kernels),
      attenuates_(pupil.stilesCrawford.rho != 0.0),
      toDisc_(Inverse(MapOf(pupil.outline))),
      amplitudes_(AmplitudesOf(pupil)),
      damping_(DampingOf(pupil)) {
  const AffineMap map = MapOf(pupil.outline);
  phase_ = Composed(pupil.wavefrontUm, map);
  for (double& c : phase_.coefficients) c *= 2.0 * kPi / pupil.wavelengthUm;
  if (attenuates_) attenuation_ = Composed(LogAmplitude(pupil), map);
  light_ = Overlap(0.0, 0.0).real();
}

std::complex<double> OtfOverlap::At(double fx, double fy) const {
  // exp(-2 pi i f . q) turns the field's exp(-i pi q . rho) by a shift of -2 f radii.
  const double sx = -2.0 * (toDisc_.xx * fx + toDisc_.xy * fy), sy = -2.0 * (toDisc_.yx * fx + toDisc_.yy * fy);
  return Overlap(sx, sy) / light_;
}

const GaussRule& OtfOverlap::RuleOf(int count) const {
  const auto found = rules_.find(count);
  return found != rules_.end() ? found->second : rules_.emplace(count, GaussLegendre(count)).first->second;
}

std::complex<double> OtfOverlap::Overlap(double sx, double sy) const {
  const double shift = std::sqrt(sx * sx + sy * sy);
  if (!(shift < 2.0)) return 0.0;
  const double c = shift == 0.0 ? 1.0 : sx / shift, s = shift == 0.0 ? 0.0 : sy / shift;
  const AffineMap turn{c, -s, 0.0, s, c, 0.0};  // brings +x to the shift
  const Polynomial phase = Composed(phase_, turn);
  const Polynomial attenuation = attenuates_ ? Composed(attenuation_, turn) : Polynomial{};
  const double halfAngle = ArcCosine(shift / 2.0);
  Amplitudes twice = amplitudes_;
  for (double& a : twice) a *= 2.0;
  const Damping damping{2.0 * damping_.linear, 2.0 * damping_.square};
  const int count = CountFor(DegreeOf(FrequencyOf(phase, shift, halfAngle), twice, damping) + 8.0, 2 * kChordBlock);
  if (count > kMaxNodes) return {kNan, kNan};
  const GaussRule& rule = RuleOf(count);
  const int half = count / 2;
  std::vector<double> field(Size(4 * half));
  std::complex<double> sum = 0.0;
  for (int j = -half; j < half; ++j) {
    const std::size_t at = Size(j < 0 ? -1 - j : j);
    const SineCosine t = SineAndCosine((j < 0 ? -1.0 : 1.0) * rule.nodes[at] * halfAngle);
    const LinePolynomial difference = Difference(AlongLine(phase, t.sine), shift);
    std::array<double, 3> logAmplitude{};
    if (attenuates_) {
      const LinePolynomial a = AlongLine(attenuation, t.sine);
      const LinePolynomial b = Shifted(a, shift / 2.0), d = Shifted(a, -shift / 2.0);
      for (std::size_t k = 0; k < 3; ++k) logAmplitude[k] = b[k] + d[k];
    }
    ChordField chord{};
    chord.nodes = rule.nodes.data();
    chord.weights = rule.weights.data();
    chord.count = half;
    chord.halfLength = t.cosine - shift / 2.0;
    chord.weight = rule.weights[at] * halfAngle * t.cosine * chord.halfLength;
    chord.phase = difference.data();
    chord.attenuation = attenuates_ ? logAmplitude.data() : nullptr;
    kernels_->fieldOnChord(chord, field.data());
    for (int i = 0; i < half; ++i) sum += std::complex<double>(field[Size(i)], field[Size(half + i)]);
  }
  return sum;
}

}  // namespace orvanel::physical
