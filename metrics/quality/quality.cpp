// Finds out what the metrics need, computes it once, and makes the values.
#include "metrics/quality/quality.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <deque>
#include <limits>
#include <numbers>
#include <optional>

#include "base/elementary.h"
#include "metrics/quality/area_above.h"
#include "metrics/quality/light_lattice.h"
#include "metrics/quality/pupil_metrics.h"
#include "models/physical/centroid.h"
#include "models/physical/peak.h"
#include "models/physical/pupil/perfect_pupil.h"

namespace orvanel::metrics {
namespace {

using physical::Beam;
using physical::LightWindow;
using M = QualityMetric;

constexpr double kPi = std::numbers::pi;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kFirstDarkRing = 1.219670;  // radius, in wavelength / diameter

std::size_t Size(long long n) { return static_cast<std::size_t>(n); }

// ---- From means over angle

struct Contrasts {
  double modulus = 0.0;                     // volume under the MTF, weighted by the contrast sensitivity
  double cutOffMtf = 0.0, cutOffOtf = 0.0;  // c/deg
  bool endsMtf = false, endsOtf = false;    // at the end of the contrast sensitivity
  double areaMtf = 0.0, areaOtf = 0.0;      // c/deg
};

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

// ---- What metrics need

struct Needs {
  bool image = false, low = false, neural = false, gaussian = false, contrasts = false, peak = false, all = false,
       volumes = false, circles = false, diameter = false, entropy = false, halfHeight = false, correlation = false,
       atOrigin = false, origin = false;
  bool operator==(const Needs&) const = default;
};

Needs NeedsOf(const QualityRequest& request) {
  Needs n;
  for (const M metric : request.metrics) {
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
  n.peak = n.peak || (n.origin && request.origin == QualityOrigin::kPeak);
  n.low = n.neural || n.gaussian || (n.origin && request.origin == QualityOrigin::kBest);
  n.all = n.circles || n.correlation;
  return n;
}

// ---- The light of one eye, or of a perfect one

struct Sums {
  double neural = 0.0, gaussian = 0.0;
  Contrasts contrasts;
  physical::Peak peak;
  LightLattice::Volumes volumes;
  double within = 0.0, radius50 = 0.0;
  double entropy = 0.0;
  double halfHeightArea = 0.0, correlationArea = 0.0;
  double atOrigin = 0.0;
};

double RadiusOfArea(double area) { return std::sqrt(area / kPi); }

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

struct Origin {
  Place place;
  bool isUnique = true;
};

// Everything that needs the samples of a window, which is in the workspace.
struct Light {
  const std::vector<Beam>& beams;
  const std::vector<double>& factors;
  LightWindow window;
  double unit;
  double circle;  // radius of LIB's
  double reach;   // the largest radius for D50
  double width;   // of the square that holds the rays
};

Origin OriginOf(QualityOrigin origin, const Light& light, const physical::Peak& peak, const LightLattice& lattice,
                const LightLattice::LowFrequencies& low, physical::Workspace& workspace) {
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

Sums SumsOf(const Needs& needs, QualityOrigin wanted, const Light& light, LightLattice& lattice,
            physical::Workspace& workspace, Origin& origin) {
  Sums sums;
  LightLattice::LowFrequencies low;
  if (needs.peak) sums.peak = HighestIn(light.window, light.beams, light.factors, workspace);
  if (needs.low) low = lattice.LowOf(light.window, workspace);
  if (needs.origin) origin = OriginOf(wanted, light, sums.peak, lattice, low, workspace);
  const Place place = origin.place;
  if (needs.neural) sums.neural = lattice.Neural(low, place).value;
  if (needs.gaussian) sums.gaussian = lattice.Gaussian(low, place);
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

}  // namespace

// ---- Tables

struct QualityWorkspace::Tables {
  explicit Tables(const Kernels& kernels) : physical(kernels) {}

  struct Kept {
    PerfectLight perfect;
    LightLattice lattice;
    // On the axis, without aberration.
    std::optional<Sums> limit;
    Needs has;            // what the limit has
    double circle = 0.0;  // for which it was made
  };

  static bool IsSame(const PerfectLight& a, const PerfectLight& b) {
    if (a.beams.size() != b.beams.size()) return false;
    for (std::size_t i = 0; i < a.beams.size(); ++i) {
      const Beam &x = a.beams[i], &y = b.beams[i];
      if (x.share != y.share || x.unitArcmin != y.unitArcmin || !(x.pupil.outline == y.pupil.outline) ||
          !(x.pupil.stilesCrawford == y.pupil.stilesCrawford) || x.pupil.radiusMm != y.pupil.radiusMm) {
        return false;
      }
    }
    return true;
  }

  Kept& Of(const PerfectLight& perfect, int side, const Weighting& weighting) {
    for (Kept& entry : kept) {
      if (entry.lattice.side() == side && entry.lattice.weighting() == weighting && IsSame(entry.perfect, perfect)) {
        return entry;
      }
    }
    constexpr std::size_t kMost = 8;
    if (kept.size() == kMost) kept.pop_front();
    kept.push_back({perfect, LightLattice(perfect, side, weighting, physical), {}, {}, 0.0});
    return kept.back();
  }

  physical::Workspace physical;
  std::deque<Kept> kept;
};

QualityWorkspace::QualityWorkspace(const Kernels& kernels) : tables_(std::make_unique<Tables>(kernels)) {}
QualityWorkspace::~QualityWorkspace() = default;

namespace {

using Tables = QualityWorkspace::Tables;

// The side of a window in which light is clear of its next period: `clear` times as wide as the slopes. It also holds
// ENT's circle, and the axis where that is the origin.
std::optional<int> SideFor(const physical::SlopeWindow& slopes, double clear, int minSide, bool holdsAxis) {
  constexpr double kLeastArcmin = 2.0 * kEntropyRadiusArcmin + 4.0;
  double period = std::max(clear * slopes.width, kLeastArcmin);
  if (holdsAxis) {
    const double farthest = std::max(std::fabs(slopes.centreX), std::fabs(slopes.centreY));
    period = std::max(period, 2.0 * farthest + slopes.width);
  }
  const double needed = period / (physical::kWindowSpacing * slopes.unit);
  if (!(needed <= physical::kLargestWindow)) return std::nullopt;
  const int half = std::max(minSide, static_cast<int>(std::ceil(needed))) / 2;
  return 2 * physical::PlaneTransform::SideFor(half);
}

// Samples of the pupils are as many as the window is wide. The modulus of the OTF at high frequencies, which has no
// signs that cancel errors of the samples, needs more of them.
constexpr double kClear = 1.25, kClearForModulus = 2.2;
constexpr int kMinSide = 256, kMinSideForModulus = 512;

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

// The sums of the pupil without aberration, on the axis.
Sums LimitOf(Tables::Kept& kept, const Needs& needs, double circle, Tables& tables) {
  if (kept.limit && kept.circle == circle && (kept.has | needs) == kept.has) return *kept.limit;
  Needs wanted = kept.limit && kept.circle == circle ? kept.has | needs : needs;
  kept.has = wanted;
  kept.circle = circle;
  wanted.origin = false;
  wanted.peak = true;
  wanted.low = wanted.neural || wanted.gaussian;
  const PerfectLight& perfect = kept.perfect;
  LightWindow window;
  window.side = kept.lattice.side();
  window.spacing = physical::kWindowSpacing * perfect.unit;
  SampleLight(perfect.beams, perfect.factors, window, tables.physical);
  const Light light{perfect.beams,
                    perfect.factors,
                    window,
                    perfect.unit,
                    circle,
                    window.side * window.spacing / 4.0,
                    SlopesOf(perfect.beams, perfect.factors).width};
  Origin axis;
  kept.limit = SumsOf(wanted, QualityOrigin::kAxis, light, kept.lattice, tables.physical, axis);
  if (wanted.volumes) {
    kept.lattice.TransformAll(window, tables.physical);
    kept.limit->volumes = kept.lattice.VolumesOf(tables.physical);
  }
  return *kept.limit;
}

// ---- Values

QualityValue Ratio(M metric, double value, double reference) {
  if (!(reference > 0.0)) return {metric, kNan, 1.0, 0.0, QualityNote::kEmptyReference};
  const double ratio = value / reference;
  const bool canBeNegative = metric == M::kVsx || metric == M::kVsOtf || metric == M::kVnotf;
  return {metric, ratio, 1.0, 0.0, canBeNegative && ratio < 0.0 ? QualityNote::kBelowZero : QualityNote::kNone};
}

QualityValue ImageValue(M metric, const Sums& sums, const Sums& limit) {
  const auto width = [metric](double value, double ofLimit) { return QualityValue{metric, value, ofLimit}; };
  switch (metric) {
    case M::kD50: {
      QualityValue value = width(2.0 * sums.radius50, 2.0 * limit.radius50);
      if (std::isnan(value.value)) value.note = QualityNote::kOutsideWindow;
      return value;
    }
    case M::kEw:
      return width(std::sqrt(4.0 / kPi / sums.peak.value), std::sqrt(4.0 / kPi / limit.peak.value));
    case M::kHwhh:
      return width(RadiusOfArea(sums.halfHeightArea), RadiusOfArea(limit.halfHeightArea));
    case M::kCw:
      return width(RadiusOfArea(sums.correlationArea), RadiusOfArea(limit.correlationArea));
    case M::kLib:
      return width(sums.within, limit.within);
    case M::kEnt:
      return width(sums.entropy, limit.entropy);
    case M::kSfcMtf: {
      QualityValue value = width(sums.contrasts.cutOffMtf, limit.contrasts.cutOffMtf);
      if (sums.contrasts.endsMtf) value.note = QualityNote::kEndOfContrast;
      return value;
    }
    case M::kSfcOtf: {
      QualityValue value = width(sums.contrasts.cutOffOtf, limit.contrasts.cutOffOtf);
      if (sums.contrasts.endsOtf) value.note = QualityNote::kEndOfContrast;
      return value;
    }
    case M::kSrx:
      return Ratio(metric, sums.peak.value, limit.peak.value);
    case M::kStd: {
      QualityValue value = Ratio(metric, sums.volumes.squaredModulus, limit.volumes.squaredModulus);
      value.value = std::sqrt(value.value);
      return value;
    }
    case M::kNs:
      return Ratio(metric, sums.gaussian, limit.gaussian);
    case M::kVsx:
    case M::kVsOtf:
      return Ratio(metric, sums.neural, limit.neural);
    case M::kAreaMtf:
      return Ratio(metric, sums.contrasts.areaMtf, limit.contrasts.areaMtf);
    case M::kAreaOtf:
      return Ratio(metric, sums.contrasts.areaOtf, limit.contrasts.areaOtf);
    case M::kSrMtf:
      return Ratio(metric, sums.volumes.modulus, limit.volumes.modulus);
    case M::kSrOtf:
      return Ratio(metric, sums.atOrigin, limit.peak.value);
    case M::kVsMtf:
      return Ratio(metric, sums.contrasts.modulus, limit.contrasts.modulus);
    case M::kVotf:
      return Ratio(metric, sums.atOrigin, sums.volumes.modulus);
    case M::kVnotf:
      return Ratio(metric, sums.neural, sums.contrasts.modulus);
    default:
      return {metric, kNan, kNan};
  }
}

QualityValue PupilValue(M metric, const PupilMetrics& pupil) {
  switch (metric) {
    case M::kRmsW:
      return {metric, pupil.RmsW()};
    case M::kPv:
      return {metric, pupil.Pv()};
    case M::kRmsS:
      return {metric, pupil.RmsS()};
    case M::kBave:
      return {metric, pupil.Bave()};
    case M::kPfWc:
      return {metric, pupil.LargestByRmsW(), 1.0};
    case M::kPfSc:
      return {metric, pupil.LargestByRmsS(), 1.0};
    case M::kPfCc:
      return {metric, pupil.LargestByBave(), 1.0};
    case M::kPfWt:
      return {metric, pupil.TilesBelow(), 1.0};
    case M::kPfSt:
      return {metric, pupil.SlopesBelow(), 1.0};
    case M::kPfCt:
      return {metric, pupil.BlurBelow(), 1.0};
    default:
      return {metric, kNan, kNan};
  }
}

}  // namespace

QualityOutcome QualityOf(const physical::Eye& eye, const physical::Light& light, const QualityRequest& request,
                         QualityWorkspace& workspace) {
  Tables& tables = workspace.tables();
  if (!(request.gaussianSdArcmin >= kSmallestGaussianSdArcmin &&
        request.gaussianSdArcmin <= kLargestGaussianSdArcmin)) {
    return QualityRefusal{QualityProblem::kGaussianSd,
                          {{}, request.gaussianSdArcmin, kSmallestGaussianSdArcmin, kLargestGaussianSdArcmin}};
  }
  const physical::Outcome<std::vector<Beam>> beams = BeamsOf(eye, light);
  if (!beams) return QualityRefusal{QualityProblem::kModel, beams.refusal()};
  Quality quality;
  quality.origin = request.origin;
  quality.reference = request.reference;
  const bool isMonochromatic = beams->size() == 1;
  quality.primaryNm = isMonochromatic ? beams->front().pupil.wavelengthUm * 1e3 : eye.referenceNm;
  const Needs needs = NeedsOf(request);
  Sums sums, limit;
  Origin origin;
  if (needs.image || needs.origin) {
    const Weighting weighting{request.contrast, request.gaussianSdArcmin};
    const PerfectLight perfect = PerfectLightOf(*beams, tables.physical.quadrature);
    const physical::SlopeWindow slopes = SlopesOf(*beams, perfect.factors);
    const auto tooSteep = [&] {
      return QualityRefusal{
          QualityProblem::kModel,
          {physical::Problem::kTooSteep, slopes.width / slopes.unit, 0.0,
           physical::kWindowSpacing * physical::kLargestWindow / kClearForModulus, beams->front().line}};
    };
    const std::optional<int> side =
        SideFor(slopes, kClear, kMinSide, needs.origin && request.origin == QualityOrigin::kAxis);
    if (!side) return tooSteep();
    LightLattice::Volumes volumes;
    const double circle = kFirstDarkRing * quality.primaryNm * 1e-3 / eye.diameterMm * 10.8 / kPi;
    if (request.reference == QualityReference::kMonochromatic && eye.referenceNm != 0.0) {
      const std::vector<Beam> single = *BeamsOf(eye, {{eye.referenceNm, 1.0}});
      const PerfectLight reference = PerfectLightOf(single, tables.physical.quadrature);
      const physical::SlopeWindow none = SlopesOf(reference.beams, reference.factors);
      limit = LimitOf(tables.Of(reference, *SideFor(none, kClear, kMinSide, false), weighting), needs, circle, tables);
    } else {
      limit = LimitOf(tables.Of(perfect, *side, weighting), needs, circle, tables);
    }
    LightWindow window;
    window.centreX = slopes.centreX;
    window.centreY = slopes.centreY;
    window.spacing = physical::kWindowSpacing * slopes.unit;
    if (needs.volumes) {
      const std::optional<int> largeSide = SideFor(slopes, kClearForModulus, kMinSideForModulus, false);
      if (!largeSide) return tooSteep();
      LightLattice& large = tables.Of(perfect, *largeSide, weighting).lattice;
      window.side = *largeSide;
      SampleLight(*beams, perfect.factors, window, tables.physical);
      large.TransformAll(window, tables.physical);
      volumes = large.VolumesOf(tables.physical);
    }
    LightLattice& lattice = tables.Of(perfect, *side, weighting).lattice;
    window.side = *side;
    SampleLight(*beams, perfect.factors, window, tables.physical);
    const double period = window.side * window.spacing;
    const Light sampled{*beams, perfect.factors, window, slopes.unit, circle, period / 2.0, slopes.width};
    sums = SumsOf(needs, request.origin, sampled, lattice, tables.physical, origin);
    sums.volumes = volumes;
    quality.originX = -origin.place.x;
    quality.originY = origin.place.y;
  }
  std::optional<PupilMetrics> pupil;
  for (const M metric : request.metrics) {
    const QualityRow& row = RowOf(metric);
    QualityValue value;
    if (metric == M::kSm) {
      value = {metric, RaySpreadOf(*beams)};
    } else if (row.plane == QualityPlane::kPupil) {
      if (!pupil) pupil.emplace(PupilInLight(eye, quality.primaryNm));
      value = PupilValue(metric, *pupil);
    } else {
      value = ImageValue(metric, sums, limit);
      if (row.usesOrigin && !origin.isUnique && value.note == QualityNote::kNone) {
        value.note = QualityNote::kPlaceNotUnique;
      }
    }
    value.error = row.isRatio ? row.error : row.error * std::fabs(value.value);
    quality.values.push_back(value);
  }
  return quality;
}

}  // namespace orvanel::metrics
