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
#include "models/physical/window/centroid.h"
#include "models/physical/window/peak.h"

namespace orvanel::metrics {
namespace {

using physical::Beam;
using physical::LightWindow;
using M = QualityMetric;

constexpr double kPi = std::numbers::pi;

std::size_t Size(long long n) { return static_cast<std::size_t>(n); }

// ---- From means over angle

// A table between its samples, by cubic interpolation.
struct Between {
  std::size_t first;
  std::array<double, 4> weights;

  Between(std::size_t size, double place) {
    const int below = std::clamp(static_cast<int>(place), 1, static_cast<int>(size) - 3);
    const double t = place - below;
    first = Size(below - 1);
    weights = {t * (t * (0.5 - t / 6.0) - 1.0 / 3.0), 1.0 + t * (t * (t / 2.0 - 1.0) - 0.5),
               t * (1.0 + t * (0.5 - t / 2.0)), t * (t * t - 1.0) / 6.0};
  }
  double Of(const std::vector<double>& table) const {
    double sum = 0.0;
    for (std::size_t k = 0; k < weights.size(); ++k) sum += weights[k] * table[first + k];
    return sum;
  }
  void Add(double value, std::vector<double>& table) const {
    for (std::size_t k = 0; k < weights.size(); ++k) table[first + k] += weights[k] * value;
  }
};

// The means at fine steps of the frequency, less the threshold there.
constexpr int kFine = 8;
constexpr double kDegree = 60.0;
struct FineMeans {
  int last;
  double step;                 // cycles per arcmin
  std::vector<double> volume;  // weights of the MTF for its volume
  std::vector<double> aboveMtf, aboveOtf;
};
FineMeans FineMeansOf(const LightLattice::Means& means, const ContrastSensitivity& sensitivity) {
  FineMeans fine{kFine * (static_cast<int>(means.mtf.size()) - 1), means.step / kFine, {}, {}, {}};
  for (int k = 0; k <= fine.last; ++k) {
    const Between between(means.mtf.size(), static_cast<double>(k) / kFine);
    const double sensitive = sensitivity.Continued(k * fine.step * kDegree);
    const double threshold = sensitive > 0.0 ? 1.0 / sensitive : std::numeric_limits<double>::max();
    fine.volume.push_back((k == fine.last ? 0.5 : 1.0) * 2.0 * kPi * k * fine.step * sensitive * fine.step);
    fine.aboveMtf.push_back(between.Of(means.mtf) - threshold);
    fine.aboveOtf.push_back(between.Of(means.otf) - threshold);
  }
  return fine;
}

// The last fine step above the threshold, by the highest or the lowest frequency where it is met; -1 for none.
int HighestAbove(const std::vector<double>& above) {
  int highest = static_cast<int>(above.size()) - 1;
  while (highest >= 0 && above[Size(highest)] <= 0.0) --highest;
  return highest;
}
int LowestEnd(const std::vector<double>& above) {
  if (above[0] < 0.0) return -1;
  int lowest = 0;
  while (lowest + 1 < static_cast<int>(above.size()) && above[Size(lowest + 1)] >= 0.0) ++lowest;
  return lowest;
}

// The share of a step up to the border, from a place above the threshold.
double RestOf(const std::vector<double>& above, int end) {
  if (Size(end) + 1 == above.size()) return 0.0;
  return above[Size(end)] / (above[Size(end)] - above[Size(end + 1)]);
}

// In steps.
double AreaUpTo(const std::vector<double>& above, int end) {
  double sum = 0.0;
  for (int k = 0; k < end; ++k) sum += (above[Size(k)] + above[Size(k + 1)]) / 2.0;
  return sum + RestOf(above, end) * above[Size(end)] / 2.0;
}
// Its derivatives.
std::vector<double> WeightsOfArea(const std::vector<double>& above, int end) {
  std::vector<double> weights(above.size());
  for (int k = 0; k < end; ++k) {
    weights[Size(k)] += 0.5;
    weights[Size(k + 1)] += 0.5;
  }
  if (Size(end) + 1 == above.size()) return weights;
  const double rest = RestOf(above, end);
  weights[Size(end)] += rest - rest * rest / 2.0;
  weights[Size(end + 1)] += rest * rest / 2.0;
  return weights;
}

Contrasts ContrastsOf(const LightLattice::Means& means, const ContrastSensitivity& sensitivity) {
  const FineMeans fine = FineMeansOf(means, sensitivity);
  Contrasts contrasts;
  for (int k = 0; k <= fine.last; ++k) {
    const Between between(means.mtf.size(), static_cast<double>(k) / kFine);
    contrasts.modulus += fine.volume[Size(k)] * between.Of(means.mtf);
  }
  const double step = fine.step * kDegree;
  const int highest = HighestAbove(fine.aboveMtf), lowest = LowestEnd(fine.aboveOtf);
  if (highest < 0) return contrasts;
  contrasts.endsMtf = highest == fine.last;
  contrasts.cutOffMtf = (highest + RestOf(fine.aboveMtf, highest)) * step;
  contrasts.areaMtf = AreaUpTo(fine.aboveMtf, highest) * step;
  if (lowest < 0) return contrasts;
  contrasts.endsOtf = lowest == fine.last;
  contrasts.cutOffOtf = (lowest + RestOf(fine.aboveOtf, lowest)) * step;
  contrasts.areaOtf = AreaUpTo(fine.aboveOtf, lowest) * step;
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
    const auto mantissa = std::bit_cast<double>((bits & 0xfffffffffffff) | 0x3ff0000000000000);
    const std::size_t i = (bits >> 44) & (kEntries - 1);
    const double r = mantissa * inverses_[i] - 1.0;
    return exponent * std::numbers::ln2 + (logarithms_[i] + r * (1.0 - r * (0.5 - r * (1.0 / 3.0 - r / 4.0))));
  }

 private:
  static constexpr std::size_t kEntries = 256;
  std::array<double, kEntries> inverses_, logarithms_;
};

// Visits the samples in a circle about a place: visit(row, column, share, slope). The share of samples at its rim falls
// smoothly from 1 to 0; `slope` is its derivative by the place.
template <class Visit>
void ForCircle(const LightWindow& window, Place place, const Visit& visit) {
  const int reach = static_cast<int>(kEntropyRadiusArcmin / window.spacing) + 2;
  const int middleRow = static_cast<int>(std::floor((place.y - window.centreY) / window.spacing + 0.5));
  const int middleColumn = static_cast<int>(std::floor(-(place.x - window.centreX) / window.spacing + 0.5));
  const auto wrapped = [&](int k) { return ((k % window.side) + window.side) % window.side; };
  std::vector<int> columns(Size(2LL * reach + 1));
  for (int i = 0; i <= 2 * reach; ++i) columns[Size(i)] = wrapped(middleColumn - reach + i);
  const double inner = kEntropyRadiusArcmin - window.spacing, outer = kEntropyRadiusArcmin + window.spacing;
  for (int r = middleRow - reach; r <= middleRow + reach; ++r) {
    const double dy = r * window.spacing + window.centreY - place.y;
    const int row = wrapped(r);
    for (int i = 0; i <= 2 * reach; ++i) {
      const double dx = -(middleColumn - reach + i) * window.spacing + window.centreX - place.x;
      const double square = dx * dx + dy * dy;
      if (square > outer * outer) continue;
      const int column = columns[Size(i)];
      if (square < inner * inner) {
        visit(row, column, 1.0, Place{});
        continue;
      }
      const double distance = std::sqrt(square);
      const double t = (outer - distance) / (outer - inner);
      const double slope = 6.0 * t * (1.0 - t) / ((outer - inner) * distance);
      visit(row, column, t * t * (3.0 - 2.0 * t), Place{slope * dx, slope * dy});
    }
  }
}

const LogarithmTable& LogarithmOfDensity() {
  static const LogarithmTable table;
  return table;
}
constexpr double kDark = 1e-300;

double EntropyOf(const LightWindow& window, Place place) {
  double sum = 0.0;
  ForCircle(window, place, [&](int row, int column, double share, Place /*slope*/) {
    const double density = window.At(row, column);
    if (density > kDark) sum -= share * density * LogarithmOfDensity().Of(density);
  });
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
    n.contrastModulus = n.contrastModulus || metric == M::kVsMtf || metric == M::kVnotf;
    n.areaMtf = n.areaMtf || metric == M::kAreaMtf;
    n.areaOtf = n.areaOtf || metric == M::kAreaOtf;
    n.light = n.light || metric == M::kLib;
    n.modulus = n.modulus || metric == M::kSrMtf || metric == M::kVotf;
    n.squaredModulus = n.squaredModulus || metric == M::kStd;
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
          a.origin || b.origin,
          a.contrastModulus || b.contrastModulus,
          a.areaMtf || b.areaMtf,
          a.areaOtf || b.areaOtf,
          a.light || b.light,
          a.modulus || b.modulus,
          a.squaredModulus || b.squaredModulus};
}

LightLattice::MeanWeights WeightsOfContrasts(const LightLattice::Means& means, const ContrastSensitivity& sensitivity,
                                             double modulus, double areaMtf, double areaOtf) {
  const FineMeans fine = FineMeansOf(means, sensitivity);
  std::vector<double> ofMtf(fine.aboveMtf.size()), ofOtf(fine.aboveOtf.size());
  for (std::size_t k = 0; k < ofMtf.size(); ++k) ofMtf[k] = modulus * fine.volume[k];
  const auto addArea = [&](double wanted, const std::vector<double>& above, int end, std::vector<double>& to) {
    if (wanted == 0.0 || end < 0) return;
    const std::vector<double> weights = WeightsOfArea(above, end);
    for (std::size_t k = 0; k < to.size(); ++k) to[k] += wanted * fine.step * kDegree * weights[k];
  };
  addArea(areaMtf, fine.aboveMtf, HighestAbove(fine.aboveMtf), ofMtf);
  addArea(areaOtf, fine.aboveOtf, LowestEnd(fine.aboveOtf), ofOtf);
  LightLattice::MeanWeights weights{std::vector<double>(means.mtf.size()), std::vector<double>(means.otf.size())};
  for (std::size_t k = 0; k < ofMtf.size(); ++k) {
    const Between between(means.mtf.size(), static_cast<double>(k) / kFine);
    between.Add(ofMtf[k], weights.mtf);
    between.Add(ofOtf[k], weights.otf);
  }
  return weights;
}

LightLattice::Slope WeightsOfEntropy(const LightWindow& window, Place place, physical::Workspace& workspace) {
  const std::size_t samples = Size(1LL * window.side * window.side);
  workspace.weights.Reserve(samples);
  double* const weights = workspace.weights.data();
  std::fill_n(weights, samples, 0.0);
  const double cell = window.spacing * window.spacing;
  LightLattice::Slope slope;
  ForCircle(window, place, [&](int row, int column, double share, Place motion) {
    const double density = window.At(row, column);
    if (!(density > kDark)) return;
    const double logarithm = LogarithmOfDensity().Of(density);
    weights[Size(1LL * row * window.side + column)] = -share * cell * (logarithm + 1.0);
    slope.x -= motion.x * cell * density * logarithm;
    slope.y -= motion.y * cell * density * logarithm;
  });
  return slope;
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
    sums.means = lattice.MeansOf(light.window, place, workspace);
    sums.contrasts = ContrastsOf(sums.means, lattice.weighting().contrast);
  }
  if (needs.all) lattice.TransformAll(light.window, workspace);
  if (needs.circles) {
    sums.circles = lattice.CirclesAbout(light.window, place, workspace);
    sums.within = sums.circles.Within(light.circle);
    if (needs.diameter) sums.radius50 = sums.circles.RadiusOf(0.5, 0.5 * light.unit, light.reach);
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
