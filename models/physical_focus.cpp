// Finds the best focus by the physical model: a scan of defocus, then maxima along one term after the other.
#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

#include "eye/conventions/mode.h"
#include "models/classic/brent.h"
#include "models/physical/transfer_function.h"
#include "models/physical_eye.h"
#include "models/physical_model.h"
#include "models/physical_refusal.h"

namespace orvanel::models {
namespace {

constexpr std::size_t kDefocus = 4;
constexpr std::array<std::size_t, 3> kVaried = {kDefocus, 3, 5};

constexpr std::array<FocusMethod, 5> kMethods = {{
    {"peak", FocusStrategy::kOptimise, FocusMeasure::kStrehlPeak},
    {"axis", FocusStrategy::kOptimise, FocusMeasure::kStrehlAxis},
    {"mtf", FocusStrategy::kOptimise, FocusMeasure::kMtfMean},
    {"mtf-horizontal", FocusStrategy::kOptimise, FocusMeasure::kMtfHorizontal},
    {"mtf-vertical", FocusStrategy::kOptimise, FocusMeasure::kMtfVertical},
}};

// Of the terms that a search changes, in micrometres.
using Terms = std::array<double, kVaried.size()>;

// The eye with these terms. The others keep their bits.
Eye WithTerms(const Eye& eye, const Terms& terms) {
  Coefficients osa = eye.coefficients.osa();
  if (osa.size() < 6) osa.resize(6);
  for (std::size_t i = 0; i < kVaried.size(); ++i) osa[kVaried[i]] = terms[i];
  Eye changed = eye;
  changed.coefficients.Replace(std::move(osa));
  return changed;
}

// The lowest and highest coefficient of defocus with which a wavelength of the light is in focus.
std::pair<double, double> ChromaticFoci(const physical::Eye& eye, const physical::Light& light) {
  if (eye.referenceNm == 0.0) return {0.0, 0.0};
  const double radius = eye.diameterMm / 2.0;
  double lowest = std::numeric_limits<double>::infinity(), highest = -lowest;
  for (const physical::SpectralLine& line : light) {
    if (line.weight == 0.0) continue;
    const double difference = physical::ChromaticDifference(line.wavelengthNm, eye.referenceNm);  // dioptres
    const double focus = difference * radius * radius / (4.0 * std::sqrt(3.0));
    lowest = std::min(lowest, focus);
    highest = std::max(highest, focus);
  }
  return {lowest, highest};
}

// Changes one term to the maximum within an interval around it.
double MaximiseTerm(const std::function<double(const Terms&)>& value, Terms& terms, std::size_t i, double reach,
                    double tolerance) {
  const auto along = [&](double x) {
    Terms trial = terms;
    trial[i] = x;
    return value(trial);
  };
  const Maximum best = MaximiseOnInterval(along, terms[i] - reach, terms[i] + reach, tolerance);
  terms[i] = best.x;
  return best.value;
}

}  // namespace

std::span<const FocusMethod> PhysicalModel::FocusMethods() { return kMethods; }

double PhysicalModel::MtfOf(FocusMeasure measure, CyclesPerDegree frequency) const {
  const double f = frequency.value();
  if (measure == FocusMeasure::kMtfMean) {
    return Accepted(MeansOverAngle(eye_, settings_.light, {&f, 1}, workspace_)).front().mtf;
  }
  const physical::Frequency place =
      measure == FocusMeasure::kMtfHorizontal ? physical::Frequency{f, 0.0} : physical::Frequency{0.0, f};
  return physical::Modulus(
      Accepted(TransferFunctionAt(eye_, settings_.light, {&place, 1}, settings_.view, workspace_)).front());
}

BestFocus PhysicalModel::FindBestFocus(const Eye& eye, const FocusRequest& request) {
  Results results;
  BestFocus best;
  const FocusMeasure measure = request.method.measure;
  const auto strehl = [&](const Eye& its) {
    Compute(its, {Need::kStrehl}, results);
    return measure == FocusMeasure::kStrehlAxis ? results.strehl : results.strehlPeak;
  };
  const auto valueOf = [&](const Eye& its) {
    if (!IsMtf(measure)) return strehl(its);
    Compute(its, {}, results);
    return MtfOf(measure, request.frequency);
  };
  const auto quality = [&](const Eye& its) { return FocusQuality{strehl(its), valueOf(its), 0.0}; };
  const auto value = [&](const Terms& terms) {
    ++best.trials;
    return valueOf(WithTerms(eye, terms));
  };
  best.before = quality(eye);

  Terms terms{};
  for (std::size_t i = 0; i < kVaried.size(); ++i) {
    const Coefficients& osa = eye.coefficients.osa();
    terms[i] = kVaried[i] < osa.size() ? osa[kVaried[i]] : 0.0;
  }
  if (request.astigmatism) terms[1] = terms[2] = 0.0;
  // A quarter of a wave of defocus from centre to rim is the depth of focus of a perfect eye; maxima are no narrower.
  const double wave = settings_.light.at(0).wavelengthNm * 1e-3;
  const double step = wave / 4.0 / (2.0 * std::sqrt(3.0));
  double rms = 0.0;
  for (std::size_t j = 6; j < eye_.modesUm.size(); ++j) rms += eye_.modesUm[j] * eye_.modesUm[j];
  const double reach = 2.0 * wave / (2.0 * std::sqrt(3.0)) + 3.0 * std::sqrt(rms);
  const auto [nearest, farthest] = ChromaticFoci(eye_, settings_.light);
  const double first = nearest - reach;
  const int steps = static_cast<int>(std::ceil((farthest + reach - first) / step));
  double highest = -1.0, focus = terms[0];
  for (int k = 0; k <= steps; ++k) {
    Terms trial = terms;
    trial[0] = first + k * step;
    const double at = value(trial);
    if (at > highest) {
      highest = at;
      focus = trial[0];
    }
  }
  terms[0] = focus;
  const double tolerance = 1e-6 * wave;
  double reached = MaximiseTerm(value, terms, 0, step, tolerance);
  constexpr int kMaxRounds = 50;
  constexpr double kLeastGain = 1e-9;
  best.converged = !request.astigmatism;
  for (int round = 0; request.astigmatism && !best.converged && round < kMaxRounds; ++round) {
    double after = reached;
    for (std::size_t i = 0; i < kVaried.size(); ++i) after = MaximiseTerm(value, terms, i, 2.0 * step, tolerance);
    best.converged = after - reached < kLeastGain;
    reached = after;
  }
  best.eye = WithTerms(eye, terms);
  best.after = quality(best.eye);
  return best;
}

}  // namespace orvanel::models
