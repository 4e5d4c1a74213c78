// Keeps references, and makes the values of metrics from the sums over the light.
#include "metrics/quality/quality.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <numbers>
#include <optional>

#include "metrics/quality/light_gradients.h"
#include "metrics/quality/light_lattice.h"
#include "metrics/quality/light_sums.h"
#include "metrics/quality/pupil_metrics.h"
#include "models/physical/pupil/perfect_pupil.h"
#include "models/physical/transfer_function.h"
#include "models/physical/window/centroid.h"

namespace orvanel::metrics {
namespace {

using physical::Beam;
using physical::LightWindow;
using M = QualityMetric;

constexpr double kPi = std::numbers::pi;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kFirstDarkRing = 1.219670;  // radius, in wavelength / diameter
constexpr double kMtfError = 1e-5;           // of MeansOverAngle

double RadiusOfArea(double area) { return std::sqrt(area / kPi); }

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
  const SampledLight light{perfect.beams,
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

// The gradient times a factor.
std::vector<double> Times(double factor, const physical::Gradient& gradient) {
  std::vector<double> product(gradient.size());
  std::transform(gradient.begin(), gradient.end(), product.begin(), [factor](double d) { return factor * d; });
  return product;
}

std::vector<double> OfQuotient(double quotient, double divisor, const physical::Gradient& ofDividend,
                               const physical::Gradient& ofDivisor) {
  std::vector<double> gradient(ofDividend.size());
  for (std::size_t j = 0; j < gradient.size(); ++j) gradient[j] = (ofDividend[j] - quotient * ofDivisor[j]) / divisor;
  return gradient;
}

// Empty for metrics without one.
std::vector<double> ImageGradient(M metric, double value, const Sums& sums, const Sums& limit,
                                  const SumGradients& gradients) {
  switch (metric) {
    case M::kEw:
      return Times(-0.5 * value / sums.peak.value, gradients.peak);
    case M::kSrx:
      return Times(1.0 / limit.peak.value, gradients.peak);
    case M::kNs:
      return Times(1.0 / limit.gaussian, gradients.gaussian);
    case M::kVsx:
    case M::kVsOtf:
      return Times(1.0 / limit.neural, gradients.neural);
    case M::kSrOtf:
      return Times(1.0 / limit.peak.value, gradients.atOrigin);
    case M::kD50:
      return Times(2.0, gradients.radius50);
    case M::kLib:
      return Times(1.0, gradients.within);
    case M::kEnt:
      return Times(1.0, gradients.entropy);
    case M::kStd:
      return Times(0.5 / (value * limit.volumes.squaredModulus), gradients.squaredModulus);
    case M::kAreaMtf:
      return Times(1.0 / limit.contrasts.areaMtf, gradients.areaMtf);
    case M::kAreaOtf:
      return Times(1.0 / limit.contrasts.areaOtf, gradients.areaOtf);
    case M::kSrMtf:
      return Times(1.0 / limit.volumes.modulus, gradients.modulus);
    case M::kVsMtf:
      return Times(1.0 / limit.contrasts.modulus, gradients.contrastModulus);
    case M::kVotf:
      return OfQuotient(value, sums.volumes.modulus, gradients.atOrigin, gradients.modulus);
    case M::kVnotf:
      return OfQuotient(value, sums.contrasts.modulus, gradients.neural, gradients.contrastModulus);
    default:
      return {};
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

// Empty for metrics without one.
std::vector<double> PupilGradient(M metric, const PupilMetrics& pupil) {
  switch (metric) {
    case M::kRmsW:
      return Times(1.0, pupil.GradientOfRmsW());
    case M::kRmsS:
      return Times(1.0, pupil.GradientOfRmsS());
    case M::kBave:
      return Times(1.0, pupil.GradientOfBave());
    default:
      return {};
  }
}

// What the image of a point gives.
struct PointImage {
  Sums sums, limit;  // of this eye, and of the reference
  SumGradients gradients;
  Origin origin;
};

// The sums of the reference.
Sums ReferenceOf(const physical::Eye& eye, const QualityRequest& request, const Needs& needs,
                 const PerfectLight& perfect, int side, const Weighting& weighting, double circle, Tables& tables) {
  if (request.reference != QualityReference::kMonochromatic || eye.referenceNm == 0.0) {
    return LimitOf(tables.Of(perfect, side, weighting), needs, circle, tables);
  }
  const std::vector<Beam> single = *BeamsOf(eye, {{eye.referenceNm, 1.0}});
  const PerfectLight reference = PerfectLightOf(single, tables.physical.quadrature);
  const physical::SlopeWindow slopes = SlopesOf(reference.beams, reference.factors);
  return LimitOf(tables.Of(reference, *SideFor(slopes, kClear, kMinSide, false), weighting), needs, circle, tables);
}

// Fills in the image; refuses wavefronts that are too steep.
std::optional<QualityRefusal> FindImage(const physical::Eye& eye, const std::vector<Beam>& beams,
                                        const QualityRequest& request, const Needs& needs, double primaryNm,
                                        Tables& tables, PointImage& image) {
  const Weighting weighting{request.contrast, request.gaussianSdArcmin};
  const PerfectLight perfect = PerfectLightOf(beams, tables.physical.quadrature);
  const physical::SlopeWindow slopes = SlopesOf(beams, perfect.factors);
  const auto tooSteep = [&] {
    return QualityRefusal{QualityProblem::kModel,
                          {physical::Problem::kTooSteep, slopes.width / slopes.unit, 0.0,
                           physical::kWindowSpacing * physical::kLargestWindow / kClearForModulus, beams.front().line}};
  };
  const std::optional<int> side =
      SideFor(slopes, kClear, kMinSide, needs.origin && request.origin == QualityOrigin::kAxis);
  if (!side) return tooSteep();
  const double circle = kFirstDarkRing * primaryNm * 1e-3 / eye.diameterMm * 10.8 / kPi;
  image.limit = ReferenceOf(eye, request, needs, perfect, *side, weighting, circle, tables);
  LightWindow window;
  // In steps, so that numbers change smoothly with the modes.
  window.centreX = std::floor(slopes.centreX / slopes.unit + 0.5) * slopes.unit;
  window.centreY = std::floor(slopes.centreY / slopes.unit + 0.5) * slopes.unit;
  window.spacing = physical::kWindowSpacing * slopes.unit;
  LightLattice::Volumes volumes;
  if (needs.volumes) {
    const std::optional<int> largeSide = SideFor(slopes, kClearForModulus, kMinSideForModulus, false);
    if (!largeSide) return tooSteep();
    LightLattice& large = tables.Of(perfect, *largeSide, weighting).lattice;
    window.side = *largeSide;
    SampleLight(beams, perfect.factors, window, tables.physical);
    large.TransformAll(window, tables.physical);
    volumes = large.VolumesOf(tables.physical);
    if (request.gradient) {
      AddGradientsOfVolumes(needs, beams, perfect.factors, window, large, tables.physical, image.gradients);
    }
  }
  LightLattice& lattice = tables.Of(perfect, *side, weighting).lattice;
  window.side = *side;
  SampleLight(beams, perfect.factors, window, tables.physical);
  const double period = window.side * window.spacing;
  const SampledLight sampled{beams, perfect.factors, window, slopes.unit, circle, period / 2.0, slopes.width};
  image.sums = SumsOf(needs, request.origin, sampled, lattice, tables.physical, image.origin);
  image.sums.volumes = volumes;
  if (request.gradient) {
    AddGradients(needs, request.origin, sampled, lattice, image.sums, image.origin, tables.physical, image.gradients);
  }
  return std::nullopt;
}

// The metrics of a request, in its order.
std::vector<QualityValue> ValuesOf(const physical::Eye& eye, const std::vector<Beam>& beams,
                                   const QualityRequest& request, double primaryNm, const PointImage& image) {
  std::vector<QualityValue> values;
  std::optional<PupilMetrics> pupil;
  for (const M metric : request.metrics) {
    const QualityRow& row = RowOf(metric);
    QualityValue value;
    if (metric == M::kSm) {
      value = {metric, RaySpreadOf(beams)};
      if (request.gradient) value.gradient = Times(1.0, physical::GradientOfRaySpread(beams));
    } else if (row.plane == QualityPlane::kPupil) {
      if (!pupil) pupil.emplace(PupilInLight(eye, primaryNm));
      value = PupilValue(metric, *pupil);
      if (request.gradient) value.gradient = PupilGradient(metric, *pupil);
    } else {
      value = ImageValue(metric, image.sums, image.limit);
      if (row.usesOrigin && !image.origin.isUnique && value.note == QualityNote::kNone) {
        value.note = QualityNote::kPlaceNotUnique;
      }
      if (request.gradient) {
        value.gradient = ImageGradient(metric, value.value, image.sums, image.limit, image.gradients);
      }
    }
    // A width that is 0 is at its edge.
    const bool isEdge = !row.isRatio && value.value == 0.0;
    if (request.gradient && (value.gradient.empty() || std::isnan(value.value) || isEdge)) {
      value.gradient.assign(physical::kModes, kNan);
    }
    value.error = row.isRatio ? row.error : row.error * std::fabs(value.value);
    values.push_back(value);
  }
  return values;
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
  const Needs needs = NeedsOf(request.metrics, request.origin);
  PointImage image;
  if (needs.image || needs.origin) {
    if (const auto refusal = FindImage(eye, *beams, request, needs, quality.primaryNm, tables, image)) return *refusal;
    quality.originX = -image.origin.place.x;
    quality.originY = image.origin.place.y;
  }
  quality.values = ValuesOf(eye, *beams, request, quality.primaryNm, image);
  if (!request.mtfAtCpd.empty()) {
    const auto means = MeansOverAngle(eye, light, request.mtfAtCpd, tables.physical);
    if (!means) return QualityRefusal{QualityProblem::kModel, means.refusal()};
    for (std::size_t i = 0; i < means->size(); ++i) {
      quality.mtf.push_back({request.mtfAtCpd[i], (*means)[i].mtf, kMtfError});
    }
  }
  return quality;
}

}  // namespace orvanel::metrics
