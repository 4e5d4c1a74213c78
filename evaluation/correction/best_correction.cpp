// Scans, climbs, and goes through a trial lens case.
#include "evaluation/correction/best_correction.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <exception>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "evaluation/correction/climb.h"
#include "eye/adjustments.h"
#include "models/adapters/physical_refusal.h"

namespace orvanel::evaluation {
namespace {

SearchPoint PointOf(const PowerVector& lens) { return {lens.m.value(), lens.j0.value(), lens.j45.value()}; }
PowerVector LensAt(const SearchPoint& point) { return {Dioptres(point[0]), Dioptres(point[1]), Dioptres(point[2])}; }

// Half the interval between the focal lines, in dioptres.
double Cross(const PowerVector& lens) {
  const double j0 = lens.j0.value(), j45 = lens.j45.value();
  return std::sqrt(j0 * j0 + j45 * j45);
}

// The metric of one eye behind lenses at the cornea.
class EyeBehindLenses {
 public:
  EyeBehindLenses(QualityEvaluator& evaluator, const Eye& eye) : evaluator_(evaluator), eye_(eye) {}

  Quality Behind(const PowerVector& lens) {
    Adjustments adjustments;
    adjustments.refraction = -lens;
    return evaluator_.Evaluate(Adjusted(eye_, adjustments));
  }

  // Not a number where the wavefront is too steep.
  QualityValue ValueBehind(const PowerVector& lens) {
    try {
      return Behind(lens).values.front();
    } catch (const PhysicalRefusal& refusal) {
      if (refusal.refusal.problem != physical::Problem::kTooSteep) throw;
      refusal_ = std::current_exception();
      QualityValue none;
      none.metric = evaluator_.request().metrics.front();
      none.value = std::numeric_limits<double>::quiet_NaN();
      return none;
    }
  }

  // All that the searches need of a metric: higher is better.
  ValueAndSlope MeritBehind(const PowerVector& lens) {
    const QualityValue quality = ValueBehind(lens);
    const double sign = RowOf(quality.metric).higherIsBetter ? 1.0 : -1.0;
    return {sign * quality.value, SlopeOf(quality, sign)};
  }

  // The reason of the last value that is not a number.
  void Rethrow() const {
    if (refusal_) std::rethrow_exception(refusal_);
  }

 private:
  // By the dioptres of the lens; empty without a gradient by the modes.
  std::optional<SearchPoint> SlopeOf(const QualityValue& quality, double sign) const {
    if (quality.gradient.empty()) return std::nullopt;
    SearchPoint slope{};
    for (std::size_t i = 0; i < slope.size(); ++i) {
      SearchPoint dioptre{};
      dioptre[i] = 1.0;
      const Coefficients change = WithRefraction({}, eye_.pupil, -LensAt(dioptre));
      for (std::size_t j = 0; j < change.size(); ++j) slope[i] += sign * change[j] * quality.gradient[j];
      if (!std::isfinite(slope[i])) return std::nullopt;
    }
    return slope;
  }

  QualityEvaluator& evaluator_;
  const Eye& eye_;
  std::exception_ptr refusal_;
};

// A lens at the cornea as one at a distance, and the other way round.
Lens AtDistance(const PowerVector& atCornea, Millimetres vertex) {
  return {AtCornea({ToRefraction(atCornea, CylinderSign::kMinus), -vertex}), vertex};
}
PowerVector PowersOf(const Lens& lens) { return ToPowerVector(AtCornea(lens)); }

// Points on the line between the least-squares and the paraxial lens, and beyond its ends along the sphere. Of spheres
// alone: along the interval between the focal lines too.
std::vector<SearchPoint> ScanOf(const PowerVector& leastSquares, const PowerVector& paraxial, double step,
                                bool sphereOnly) {
  constexpr int kBeyond = 2;
  constexpr double kMostSteps = 40.0;
  SearchPoint from = PointOf(leastSquares), to = PointOf(paraxial);
  if (sphereOnly) {
    const double halfInterval = std::max(Cross(leastSquares), Cross(paraxial));
    const auto [low, high] = std::minmax(from[0], to[0]);
    from = {low - halfInterval, 0.0, 0.0};
    to = {high + halfInterval, 0.0, 0.0};
  }
  if (from[0] > to[0]) std::swap(from, to);
  const double length = Distance(from, to);
  const int steps = std::max(1, static_cast<int>(std::ceil(std::min(length / step, kMostSteps))));
  std::vector<SearchPoint> points;
  for (int k = -kBeyond; k <= steps + kBeyond; ++k) {
    const double share = std::clamp(static_cast<double>(k) / steps, 0.0, 1.0);
    SearchPoint point;
    for (std::size_t i = 0; i < point.size(); ++i) point[i] = from[i] + share * (to[i] - from[i]);
    if (k < 0) point[0] += k * step;
    if (k > steps) point[0] += (k - steps) * step;
    points.push_back(point);
  }
  return points;
}

// The points with their values, the highest first.
using Starts = std::vector<std::pair<double, SearchPoint>>;

// Points of the scan, and points around the best two of it whose cylinders differ from its line.
Starts StartsOf(KnownFunction& merit, const std::vector<SearchPoint>& scan, double width) {
  const auto higher = [](const auto& a, const auto& b) { return a.first > b.first; };
  Starts starts;
  for (const SearchPoint& point : scan) starts.emplace_back(merit.At(point), point);
  std::stable_sort(starts.begin(), starts.end(), higher);
  if (merit.variables() == 1) return starts;
  constexpr std::size_t kCentres = 2;
  const Starts centres(starts.begin(), starts.begin() + kCentres);
  for (const auto& [value, centre] : centres) {
    for (const double j0 : {-width, 0.0, width}) {
      for (const double j45 : {-width, 0.0, width}) {
        const SearchPoint point{centre[0], centre[1] + j0, centre[2] + j45};
        if (point != centre) starts.emplace_back(merit.At(point), point);
      }
    }
  }
  std::stable_sort(starts.begin(), starts.end(), higher);
  return starts;
}

// Climbs from the highest starts that are apart from each other and from all tops; then, from the three highest of
// these tops, to the limit of the tolerance. The highest top first.
std::vector<Climb> HighestTops(KnownFunction& merit, const Starts& starts, double width, const ClimbLimits& limits) {
  constexpr std::size_t kClimbs = 9, kFine = 3;
  constexpr double kApart = 0.7;
  const auto higher = [](const Climb& a, const Climb& b) { return a.top.at.value > b.top.at.value; };
  std::vector<Climb> climbs;
  std::vector<SearchPoint> visited;
  for (const auto& [value, start] : starts) {
    if (climbs.size() == kClimbs) break;
    const bool isNear = std::any_of(visited.begin(), visited.end(), [&, from = start](const SearchPoint& place) {
      return Distance(place, from) < kApart * width;
    });
    if (isNear) continue;
    ClimbLimits coarse = limits;
    coarse.tolerance = width / 16.0;
    climbs.push_back(ClimbFrom(merit, start, coarse));
    visited.push_back(start);
    visited.push_back(climbs.back().top.point);
  }
  std::stable_sort(climbs.begin(), climbs.end(), higher);
  if (climbs.size() > kFine) climbs.resize(kFine);
  for (Climb& climb : climbs) {
    ClimbLimits fine = limits;
    fine.radius = width / 16.0;
    climb = ClimbFrom(merit, climb.top.point, fine);
  }
  std::stable_sort(climbs.begin(), climbs.end(), higher);
  return climbs;
}

}  // namespace

Dioptres FocusWidth(Millimetres pupil) { return Dioptres(1.5 / pupil.value()); }

Correction BestCorrection(QualityEvaluator& evaluator, const Eye& eye, const CorrectionRequest& request) {
  const bool sphereOnly = request.grid.sphereOnly;
  const double width = FocusWidth(eye.pupil).value();
  const PowerVector leastSquares = LeastSquaresRefraction(eye.coefficients.osa(), eye.pupil);
  const PowerVector paraxial = ParaxialRefraction(eye.coefficients.osa(), eye.pupil);
  EyeBehindLenses behind(evaluator, eye);
  const auto meritAt = [&](const SearchPoint& point) {
    const ValueAndSlope merit = behind.MeritBehind(LensAt(point));
    if (request.afterValue) request.afterValue();
    return merit;
  };
  KnownFunction merit(meritAt, sphereOnly ? 1 : 3);

  const std::vector<Climb> climbs =
      HighestTops(merit, StartsOf(merit, ScanOf(leastSquares, paraxial, width / 2.0, sphereOnly), width), width,
                  {width / 2.0, request.toleranceShare * width, request.evaluations});
  if (!std::isfinite(climbs.front().top.at.value)) behind.Rethrow();

  Correction correction;
  const auto with = [&](const PowerVector& lens) {
    return LensValue{AtDistance(lens, request.vertex), behind.ValueBehind(lens)};
  };
  const PowerVector best = LensAt(climbs.front().top.point);
  correction.evaluations = merit.evaluations();
  correction.converged = climbs.front().converged;
  correction.conditions = behind.Behind(best);
  correction.best = with(best);
  correction.none = with({});
  correction.none.lens.power.axis = Degrees(180.0);
  correction.leastSquares = with(leastSquares);
  correction.paraxial = with(paraxial);

  // Around the highest tops, then around the best lens so far, until no lens around it is better.
  constexpr int kAround = 24;
  constexpr std::size_t kTops = 2;
  std::optional<Lens> inCase;
  double highest = 0.0;
  const auto look = [&](const Refraction& wanted) {
    bool better = false;
    for (const Refraction& power : LensesNear(request.grid, ToPowerVector(wanted), kAround)) {
      const Lens lens{power, request.vertex};
      const double value = merit.At(PointOf(PowersOf(lens)));
      if (inCase && !(value > highest)) continue;
      better = true;
      highest = value;
      inCase = lens;
    }
    return better;
  };
  for (std::size_t i = 0; i < std::min(kTops, climbs.size()); ++i) {
    look(AtDistance(LensAt(climbs[i].top.point), request.vertex).power);
  }
  while (look(inCase->power)) {
  }
  correction.evaluationsInCase = merit.evaluations() - correction.evaluations;
  correction.inCase = {*inCase, behind.ValueBehind(PowersOf(*inCase))};
  return correction;
}

}  // namespace orvanel::evaluation
