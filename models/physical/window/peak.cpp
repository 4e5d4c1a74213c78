// Searches the peak on a grid, and climbs to it by Newton's method.
#include "models/physical/window/peak.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <optional>
#include <vector>

#include "models/physical/window/exact_window.h"
#include "models/physical/window/light_between_samples.h"
#include "models/physical/window/light_window.h"
#include "models/physical/window/paraboloid.h"

namespace orvanel::physical {
namespace {

// At the nearest sample, d = spacing / sqrt(2) away, (1 + cos 2 pi d)/2 of a peak is left at least: 0.50, or 0.35.
constexpr double kLeftAtSample = 0.35;
constexpr int kMinSamples = 256;  // in a row of the search
constexpr double kClear = 1.25;   // times the width of the slopes: a smaller window is doubled

// The parabola through nine samples predicts a peak to some 20 %. A hill that promises less than this share of the best
// peak is not climbed. Climbing between samples costs next to nothing, and leaves an error of at most 10 % from light
// that folds into the window and from the samples at the pupil's rim.
constexpr double kPromising = 0.75;
constexpr double kPromisingBetweenSamples = 0.85;

// A ring or a disc of even light has thousands of hills that promise the same. Above this number an exact window costs
// less than to climb them all, and shows which one is the highest.
constexpr std::size_t kMostHills = 64;
constexpr double kError = 1e-9;  // of the sum of the factors

// The light of all beams, about the place to which the quadrature is fitted.
class SumOfBeams {
 public:
  SumOfBeams(std::span<const Beam> beams, std::span<const double> factors, ChordQuadrature& quadrature, double x,
             double y)
      : beams_(beams), factors_(factors), quadrature_(quadrature) {
    for (const Beam& beam : beams) {
      const double unit = beam.unitArcmin;
      counts_.push_back(ChordQuadrature::CountsFor(beam.pupil, {x / unit, y / unit, 1.0, 2, 2}));
    }
  }

  Paraboloid At(double x, double y) const {
    Paraboloid sum{};
    for (std::size_t i = 0; i < beams_.size(); ++i) {
      const double unit = beams_[i].unitArcmin, factor = factors_[i];
      const Paraboloid one = IntensityOf(quadrature_.Field(beams_[i].pupil, x / unit, y / unit, counts_[i]));
      sum.value += factor * one.value;
      sum.x += factor / unit * one.x;
      sum.y += factor / unit * one.y;
      sum.xx += factor / (unit * unit) * one.xx;
      sum.xy += factor / (unit * unit) * one.xy;
      sum.yy += factor / (unit * unit) * one.yy;
    }
    return sum;
  }

 private:
  std::span<const Beam> beams_;
  std::span<const double> factors_;
  ChordQuadrature& quadrature_;
  std::vector<NodeCounts> counts_;
};

using Between = Paraboloid(const LightWindow& window, double x, double y);

// The highest first.
std::vector<Peak> HillsBetweenSamples(const LightWindow& window, Between& light, double unit) {
  constexpr double kNearest = 1e-2;
  std::vector<Peak> hills;
  double best = 0.0;
  for (const Hill& hill : HillsIn(window, kLeftAtSample * kPromising)) {
    if (hill.value < kPromising * best) break;
    hills.push_back(Climb([&](double x, double y) { return light(window, x, y); }, hill.x, hill.y,
                          kWindowSpacing * unit, kNearest * unit));
    best = std::max(best, hills.back().value);
  }
  std::stable_sort(hills.begin(), hills.end(), [](const Peak& a, const Peak& b) { return a.value > b.value; });
  return hills;
}

std::size_t PromisingIn(const std::vector<Peak>& hills) {
  const auto end = std::find_if(hills.begin(), hills.end(), [&hills](const Peak& hill) {
    return hill.value < kPromisingBetweenSamples * hills.front().value;
  });
  return static_cast<std::size_t>(end - hills.begin());
}

}  // namespace

Paraboloid IntensityOf(const FieldJet& f) {
  const auto product = [](std::complex<double> a, std::complex<double> b) {
    return a.real() * b.real() + a.imag() * b.imag();
  };
  return {product(f.u, f.u),
          2.0 * product(f.u, f.x),
          2.0 * product(f.u, f.y),
          2.0 * (product(f.u, f.xx) + product(f.x, f.x)),
          2.0 * (product(f.u, f.xy) + product(f.x, f.y)),
          2.0 * (product(f.u, f.yy) + product(f.y, f.y))};
}

Peak HighestIn(const LightWindow& window, std::span<const Beam> beams, std::span<const double> factors,
               Workspace& workspace, int* climbed) {
  double unit = beams.front().unitArcmin;
  for (const Beam& beam : beams) unit = std::min(unit, beam.unitArcmin);
  const double nearest = 1e-4 * unit;  // from where the parabola is exact to 1e-11
  constexpr double kSame = 1e-9, kApart = 0.1;
  std::vector<Peak> hills = HillsBetweenSamples(window, LightBetweenSamples, unit);
  double promising = kPromisingBetweenSamples;
  std::optional<ExactWindow> exact;
  if (PromisingIn(hills) > kMostHills) exact = ExactWindowOf(beams, factors, workspace.quadrature);
  if (exact) {
    hills = HillsBetweenSamples(exact->window, LightBetweenFineSamples, unit);
    promising = 1.0 / (1.0 + exact->errorBetween);
  }
  const double negligible = kError * std::accumulate(factors.begin(), factors.end(), 0.0);
  Peak best;
  int count = 0;
  for (const Peak& hill : hills) {
    if (hill.value < promising * std::min(best.value, hills.front().value)) break;
    // No other hill is higher by more than the error, and one more of the same height would say nothing new.
    if (exact && !best.isolated && hill.value < promising * (best.value + negligible)) break;
    const SumOfBeams sum(beams, factors, workspace.quadrature, hill.x, hill.y);
    const Peak peak =
        Climb([&sum](double x, double y) { return sum.At(x, y); }, hill.x, hill.y, kWindowSpacing * unit, nearest);
    ++count;
    const bool isSame = std::fabs(peak.value - best.value) <= kSame * best.value;
    const bool isElsewhere = Length({peak.x - best.x, peak.y - best.y, false}) > kApart * unit;
    if (peak.value > best.value) {
      best = peak;
    }
    if (isSame && isElsewhere) best.isolated = false;
  }
  if (climbed != nullptr) *climbed = count;
  return best;
}

Outcome<Peak> HighestOf(std::span<const Beam> beams, std::span<const double> factors, Workspace& workspace,
                        int* climbed) {
  Outcome<LightWindow> window = WindowOf(beams, factors, kMinSamples);
  // Light beyond a window that just holds the slopes folds into it, as thousands of false hills at the rim of a blur.
  if (window &&
      (window->side > kMinSamples || window->side * window->spacing < kClear * SlopesOf(beams, factors).width)) {
    window = WindowOf(beams, factors, std::min(2 * window->side, kLargestWindow));
  }
  if (!window) return window.refusal();
  SampleLight(beams, factors, *window, workspace);
  return HighestIn(*window, beams, factors, workspace, climbed);
}

}  // namespace orvanel::physical
