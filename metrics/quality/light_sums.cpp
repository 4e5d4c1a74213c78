// Finds out what metrics need, and computes each sum once.
#include "metrics/quality/light_sums.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>

#include "base/elementary.h"
#include "metrics/quality/area_above.h"
#include "models/physical/centroid.h"
#include "models/physical/peak.h"

namespace orvanel::metrics {
namespace {

using physical::Beam;
using physical::LightWindow;
using M = QualityMetric;

constexpr double kPi = std::numbers::pi;

std::size_t Size(long long n) { return static_cast<std::size_t>(n); }

// ---- From means over angle

// A table between its samples, by cubic interpolation.
double Between(const std::vector<double>& table, double place) {
  const int last = static_cast<int>(table.size()) - 1;
  const int below = std::clamp(static_cast<int>(place), 1, last - 2);
  const double t = place - below;
  const auto at = [&](int k) { return table[Size(below + k)]; };
  return at(0) + t * ((at(1) - at(-1) / 3.0 - at(0) / 2.0 - at(2) / 6.0) +
                      t * ((at(-1) + at(1)) / 2.0 - at(0) + t * (at(2) - at(-1) + 3.0 * (at(0) - at(1))) / 6.0));
}

Contrasts ContrastsOf(const LightLattice::Means& means, const ContrastSensitivity& sensitivity) {
  constexpr int kFine = 8;
  constexpr double kDegree = 60.0;
  const int last = kFine * (static_cast<int>(means.mtf.size()) - 1);
  const double step = means.step / kFine;  // cycles per arcmin
  std::vector<double> f(Size(last + 1)), aboveMtf(f.size()), aboveOtf(f.size());
  Contrasts contrasts;
  for (int k = 0; k <= last; ++k) {
    const double place = static_cast<double>(k) / kFine, mtf = Between(means.mtf, place);
    f[Size(k)] = k * step * kDegree;
    const double sensitive = sensitivity.Continued(f[Size(k)]);
    const double threshold = sensitive > 0.0 ? 1.0 / sensitive : std::numeric_limits<double>::max();
    aboveMtf[Size(k)] = mtf - threshold;
    aboveOtf[Size(k)] = Between(means.otf, place) - threshold;
    contrasts.modulus += (k == last ? 0.5 : 1.0) * 2.0 * kPi * k * step * sensitive * mtf * step;
  }
  // The share of a step up to the border, from a place above the threshold.
  const auto border = [](double above, double below) { return above / (above - below); };
  const auto area = [&](const std::vector<double>& above, int from, double rest) {
    double sum = 0.0;
    for (int k = 0; k < from; ++k) sum += (above[Size(k)] + above[Size(k + 1)]) / 2.0;
    return (sum + rest * above[Size(from)] / 2.0) * step * kDegree;
  };
  int highest = last;
  while (highest >= 0 && aboveMtf[Size(highest)] <= 0.0) --highest;
  if (highest < 0) return contrasts;
  contrasts.endsMtf = highest == last;
  const double restMtf = contrasts.endsMtf ? 0.0 : border(aboveMtf[Size(highest)], aboveMtf[Size(highest + 1)]);
  contrasts.cutOffMtf = (highest + restMtf) * step * kDegree;
  contrasts.areaMtf = area(aboveMtf, highest, restMtf);
  int lowest = 0;
  while (lowest < last && aboveOtf[Size(lowest + 1)] >= 0.0) ++lowest;
  if (aboveOtf[0] < 0.0) return contrasts;
  contrasts.endsOtf = lowest == last;
  const double restOtf = contrasts.endsOtf ? 0.0 : border(aboveOtf[Size(lowest)], aboveOtf[Size(lowest + 1)]);
  contrasts.cutOffOtf = (lowest + restOtf) * step * kDegree;
  contrasts.areaOtf = area(aboveOtf, lowest, restOtf);
  return contrasts;
}

// ---- Sums

// The natural logarithm of a normal positive number, from a table by the first bits of its mantissa and a series.
// Error: 1e-11.
class LogarithmTable {
 public:
  LogarithmTable() {
    for (std::size_t i = 0; i < kEntries; ++i) {
      const double middle = 1.0 + (static_cast<double>(i) + 0.5) / kEntries;
      inverses_[i] = 1.0 / middle;
      logarithms_[i] = Logarithm(middle);
    }
  }
  double Of(double x) const {
    const auto bits = std::bit_cast<std::uint64_t>(x);
    const int exponent = static_cast<int>(bits >> 52) - 1023;
    const double mantissa = std::bit_cast<double>((bits & 0xfffffffffffff) | 0x3ff0000000000000);
    const std::size_t i = (bits >> 44) & (kEntries - 1);
    const double r = mantissa * inverses_[i] - 1.0;
    return exponent * std::numbers::ln2 + (logarithms_[i] + r * (1.0 - r * (0.5 - r * (1.0 / 3.0 - r / 4.0))));
  }

 private:
  static constexpr std::size_t kEntries = 256;
  std::array<double, kEntries> inverses_, logarithms_;
};

// In a circle about a place; samples at its rim count in part.
double EntropyOf(const LightWindow& window, Place place) {
  const int reach = static_cast<int>(kEntropyRadiusArcmin / window.spacing) + 2;
  const int middleRow = static_cast<int>(std::floor((place.y - window.centreY) / window.spacing + 0.5));
  const int middleColumn = static_cast<int>(std::floor(-(place.x - window.centreX) / window.spacing + 0.5));
  const auto wrapped = [&](int k) { return ((k % window.side) + window.side) % window.side; };
  static const LogarithmTable logarithm;
  constexpr double kDark = 1e-300;
  const double inner = kEntropyRadiusArcmin - window.spacing, outer = kEntropyRadiusArcmin + window.spacing;
  double sum = 0.0;
  for (int r = middleRow - reach; r <= middleRow + reach; ++r) {
    const double dy = r * window.spacing + window.centreY - place.y;
    for (int c = middleColumn - reach; c <= middleColumn + reach; ++c) {
      const double dx = -c * window.spacing + window.centreX - place.x;
      const double square = dx * dx + dy * dy;
      if (square > outer * outer) continue;
      const double share =
          square < inner * inner
              ? 1.0
              : std::clamp((kEntropyRadiusArcmin - std::sqrt(square)) / window.spacing + 0.5, 0.0, 1.0);
      const double density = share > 0.0 ? window.At(wrapped(r), wrapped(c)) : 0.0;
      if (density > kDark) sum -= share * density * logarithm.Of(density);
    }
  }
  return sum * window.spacing * window.spacing;
}

// The area where the light is above half of its peak, on a separate grid.
double HalfHeightArea(const LightWindow& window, const physical::Peak& peak, const std::vector<Beam>& beams,
                      const std::vector<double>& factors, double unit, physical::ChordQuadrature& quadrature) {
  // All samples that are not far below half of the peak, and the peak, with a margin.
  constexpr double kShare = 0.3;
  double lowX = peak.x, highX = peak.x, lowY = peak.y, highY = peak.y;
  for (int r = 0; r < window.side; ++r) {
    const double* const row = window.samples + Size(1LL * r * window.side);
    for (int c = 0; c < window.side; ++c) {
      if (row[c] < kShare * peak.value) continue;
      const double x = window.centreX + window.Folded(-c) * window.spacing;
      const double y = window.centreY + window.Folded(r) * window.spacing;
      lowX = std::min(lowX, x);
      highX = std::max(highX, x);
      lowY = std::min(lowY, y);
      highY = std::max(highY, y);
    }
  }
  constexpr double kFinest = 0.08, kMargin = 0.8;  // in wavelength / diameter
  constexpr int kLargest = 256, kRim = kAreaRim;
  const double width = std::max(highX - lowX, highY - lowY) + 2.0 * kMargin * unit;
  const double spacing = std::max(kFinest * unit, width / (kLargest - 2 * kRim));
  const auto count = [&](double low, double high) {
    return static_cast<int>(std::ceil((high - low + 2.0 * kMargin * unit) / spacing)) + 2 * kRim;
  };
  const int columns = count(lowX, highX), rows = count(lowY, highY);
  std::vector<double> samples(Size(1LL * rows * columns));
  physical::GridOutput output;
  output.data = samples.data();
  output.pitch = columns;
  for (std::size_t i = 0; i < beams.size(); ++i) {
    const double scale = beams[i].unitArcmin;
    const physical::DirectionGrid grid{(lowX + highX) / 2.0 / scale, (lowY + highY) / 2.0 / scale, spacing / scale,
                                       columns, rows};
    output.factor = factors[i];
    output.add = i > 0;
    quadrature.Intensity(beams[i].pupil, grid, physical::ChordQuadrature::CountsFor(beams[i].pupil, grid), output);
  }
  const double cells = AreaAbove(0.5 * peak.value, samples.data(), rows, columns);
  return cells * spacing * spacing;
}

double DensityAt(Place place, const std::vector<Beam>& beams, const std::vector<double>& factors,
                 physical::ChordQuadrature& quadrature) {
  double sum = 0.0;
  for (std::size_t i = 0; i < beams.size(); ++i) {
    const double x = place.x / beams[i].unitArcmin, y = place.y / beams[i].unitArcmin;
    const physical::NodeCounts counts = physical::ChordQuadrature::CountsFor(beams[i].pupil, {x, y, 1.0, 1, 1});
    sum += factors[i] * std::norm(quadrature.Field(beams[i].pupil, x, y, counts).u);
  }
  return sum;
}

Origin OriginOf(QualityOrigin origin, const SampledLight& light, const physical::Peak& peak,
                const LightLattice& lattice, const LightLattice::LowFrequencies& low, physical::Workspace& workspace) {
  switch (origin) {
    case QualityOrigin::kAxis:
      return {};
    case QualityOrigin::kPeak:
      return {{peak.x, peak.y}, peak.isolated};
    case QualityOrigin::kCentroid: {
      const physical::Centroid centroid = CentroidOf(light.beams);
      return {{centroid.x, centroid.y}};
    }
    case QualityOrigin::kBest:
      break;
  }
  const physical::Peak best = lattice.LargestNeural(light.window, low, workspace);
  return {{best.x, best.y}, best.isolated};
}

}  // namespace

Needs NeedsOf(std::span<const QualityMetric> metrics, QualityOrigin origin) {
  Needs n;
  for (const M metric : metrics) {
    if (RowOf(metric).plane != QualityPlane::kPupil && metric != M::kSm) n.image = true;
    n.origin = n.origin || RowOf(metric).usesOrigin;
    n.neural = n.neural || metric == M::kVsx || metric == M::kVsOtf || metric == M::kVnotf;
    n.gaussian = n.gaussian || metric == M::kNs;
    n.contrasts = n.contrasts || metric == M::kSfcMtf || metric == M::kSfcOtf || metric == M::kAreaMtf ||
                  metric == M::kAreaOtf || metric == M::kVsMtf || metric == M::kVnotf;
    n.peak = n.peak || metric == M::kSrx || metric == M::kEw || metric == M::kHwhh;
    n.volumes = n.volumes || metric == M::kStd || metric == M::kSrMtf || metric == M::kVotf;
    n.circles = n.circles || metric == M::kD50 || metric == M::kLib;
    n.diameter = n.diameter || metric == M::kD50;
    n.entropy = n.entropy || metric == M::kEnt;
    n.halfHeight = n.halfHeight || metric == M::kHwhh;
    n.correlation = n.correlation || metric == M::kCw;
    n.atOrigin = n.atOrigin || metric == M::kSrOtf || metric == M::kVotf;
  }
  n.peak = n.peak || (n.origin && origin == QualityOrigin::kPeak);
  n.low = n.neural || n.gaussian || (n.origin && origin == QualityOrigin::kBest);
  n.all = n.circles || n.correlation;
  return n;
}

Needs operator|(const Needs& a, const Needs& b) {
  return {a.image || b.image,
          a.low || b.low,
          a.neural || b.neural,
          a.gaussian || b.gaussian,
          a.contrasts || b.contrasts,
          a.peak || b.peak,
          a.all || b.all,
          a.volumes || b.volumes,
          a.circles || b.circles,
          a.diameter || b.diameter,
          a.entropy || b.entropy,
          a.halfHeight || b.halfHeight,
          a.correlation || b.correlation,
          a.atOrigin || b.atOrigin,
          a.origin || b.origin};
}

Sums SumsOf(const Needs& needs, QualityOrigin wanted, const SampledLight& light, LightLattice& lattice,
            physical::Workspace& workspace, Origin& origin) {
  Sums sums;
  LightLattice::LowFrequencies& low = sums.low;
  if (needs.peak) sums.peak = HighestIn(light.window, light.beams, light.factors, workspace);
  if (needs.low) low = lattice.LowOf(light.window, workspace);
  if (needs.origin) origin = OriginOf(wanted, light, sums.peak, lattice, low, workspace);
  const Place place = origin.place;
  if (needs.neural) sums.neural = lattice.Neural(low, place).value;
  if (needs.gaussian) sums.gaussian = lattice.Gaussian(low, place).value;
  if (needs.contrasts) {
    sums.contrasts = ContrastsOf(lattice.MeansOf(light.window, place, workspace), lattice.weighting().contrast);
  }
  if (needs.all) lattice.TransformAll(light.window, workspace);
  if (needs.circles) {
    const LightLattice::Circles circles = lattice.CirclesAbout(light.window, place, workspace);
    sums.within = circles.Within(light.circle);
    if (needs.diameter) sums.radius50 = circles.RadiusOf(0.5, 0.5 * light.unit, light.reach);
  }
  if (needs.correlation) sums.correlationArea = lattice.AreaOfAutocorrelation(light.width, workspace);
  if (needs.entropy) sums.entropy = EntropyOf(light.window, place);
  if (needs.halfHeight) {
    sums.halfHeightArea =
        HalfHeightArea(light.window, sums.peak, light.beams, light.factors, light.unit, workspace.quadrature);
  }
  if (needs.atOrigin) sums.atOrigin = DensityAt(place, light.beams, light.factors, workspace.quadrature);
  return sums;
}

}  // namespace orvanel::metrics
