// Integrates sections of the OTF by Gauss-Legendre quadrature.
#include "models/physical/spread/line_spread.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/elementary.h"
#include "models/physical/otf/otf_overlap.h"
#include "models/physical/quadrature/gauss_rules.h"

namespace orvanel::physical {
namespace {

constexpr double kPi = std::numbers::pi;

// A direction of the view, in the sense of the slopes.
struct Direction {
  double x, y;
};
Direction SlopesAlong(double direction, View view) {
  const SineCosine turn = SineAndCosine(direction);
  return {-turn.cosine, view == View::kPatient ? turn.sine : -turn.sine};
}

// The cut-off along a direction, in units of diameter / wavelength: of the outline's width there.
double CutOffOf(const Ellipse& outline, Direction direction) {
  const SineCosine turn = SineAndCosine(outline.angle);
  const double along = (direction.x * turn.cosine + direction.y * turn.sine) / outline.semiAxisA;
  const double across = (direction.y * turn.cosine - direction.x * turn.sine) / outline.semiAxisB;
  return 1.0 / std::sqrt(along * along + across * across);
}

// Frequencies that a beam needs: half of those that its oscillation has, and some for the OTF itself.
double NodesFor(const Beam& beam, double farthest) {
  const SlopeRange slopes = SlopesOf(beam.pupil);
  const double steepest = std::max({-slopes.lowX, slopes.highX, -slopes.lowY, slopes.highY});
  constexpr double kSome = 48.0;
  return kSome + 2.5 * (farthest / beam.unitArcmin + std::numbers::sqrt2 * steepest);
}

}  // namespace

Outcome<std::vector<std::complex<double>>> SectionOfTransferFunction(const Eye& eye, const Light& light,
                                                                     double direction,
                                                                     std::span<const double> frequencies, View view,
                                                                     const Workspace& workspace) {
  if (!std::isfinite(direction)) return Refusal{Problem::kDirection, direction};
  const SineCosine turn = SineAndCosine(direction);
  std::vector<Frequency> places;
  for (const double f : frequencies) places.push_back({f * turn.cosine, f * turn.sine});
  return TransferFunctionAt(eye, light, places, view, workspace);
}

Outcome<std::vector<double>> LineSpreadOf(const Eye& eye, const Light& light, double direction,
                                          std::span<const double> places, View view, const Workspace& workspace) {
  if (!std::isfinite(direction)) return Refusal{Problem::kDirection, direction};
  double farthest = 0.0;
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (!std::isfinite(places[i])) return Refusal{Problem::kPlace, places[i], 0.0, 0.0, static_cast<int>(i)};
    farthest = std::max(farthest, std::fabs(places[i]));
  }
  const Outcome<std::vector<Beam>> beams = BeamsOf(eye, light);
  if (!beams) return beams.refusal();
  const Direction along = SlopesAlong(direction, view);
  std::vector<double> spread(places.size());
  for (const Beam& beam : *beams) {
    const double needed = NodesFor(beam, farthest);
    if (!(needed < kMaxNodes)) {
      return Refusal{Problem::kTooManyNodes, needed, 0.0, static_cast<double>(kMaxNodes), beam.line};
    }
    const int half = static_cast<int>(needed / 2.0) + 1;
    const GaussRule rule = GaussLegendre(2 * half);
    const OtfOverlap overlap(beam.pupil, workspace.chords);
    const double cutOff = CutOffOf(beam.pupil.outline, along);
    for (int i = -half; i < half; ++i) {
      const auto at = static_cast<std::size_t>(i < 0 ? -1 - i : i);
      // By the arc, f = cut-off * cosine: at the cut-off the OTF is analytic in the arc only.
      const double arc = kPi / 4.0 * (1.0 + (i < 0 ? -1.0 : 1.0) * rule.nodes[at]);
      const SineCosine t = SineAndCosine(arc);
      const double f = cutOff * t.cosine;
      const std::complex<double> otf = overlap.At(f * along.x, f * along.y);
      if (std::isnan(otf.real())) {
        return Refusal{Problem::kTooManyNodes, 0.0, 0.0, static_cast<double>(kMaxNodes), beam.line};
      }
      const double weight = 2.0 * beam.share / beam.unitArcmin * cutOff * kPi / 4.0 * rule.weights[at] * t.sine;
      for (std::size_t k = 0; k < places.size(); ++k) {
        const SineCosine turn = SineAndCosine(2.0 * kPi * f * places[k] / beam.unitArcmin);
        spread[k] += weight * (otf.real() * turn.cosine - otf.imag() * turn.sine);
      }
    }
  }
  return spread;
}

}  // namespace orvanel::physical
