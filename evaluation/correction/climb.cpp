// Fits quadratic models by least squares, and solves for their maxima within a radius.
#include "evaluation/correction/climb.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace orvanel::evaluation {
namespace {

constexpr std::size_t kVariables = 3;
constexpr std::size_t kUnknowns = 1 + kVariables + kVariables * (kVariables + 1) / 2;  // of a quadratic
using Row = std::array<double, kUnknowns>;
using Square = std::array<std::array<double, kVariables>, kVariables>;

// value + slope s + s curvature s / 2, in steps s from the centre in units of the radius.
struct Quadratic {
  SearchPoint slope{};
  Square curvature{};

  double At(const SearchPoint& s) const {
    double sum = 0.0;
    for (std::size_t i = 0; i < kVariables; ++i) {
      sum += slope[i] * s[i];
      for (std::size_t k = 0; k < kVariables; ++k) sum += 0.5 * s[i] * curvature[i][k] * s[k];
    }
    return sum;
  }
};

// The place of the curvature of variables i <= k among the unknowns.
std::size_t CurvatureAt(std::size_t i, std::size_t k) {
  constexpr std::array<std::size_t, kVariables> kFirst = {0, 3, 5};
  return 1 + kVariables + kFirst[i] + k - i;
}

Row ValueRow(const SearchPoint& s) {
  Row row{};
  row[0] = 1.0;
  for (std::size_t i = 0; i < kVariables; ++i) {
    row[1 + i] = s[i];
    for (std::size_t k = i; k < kVariables; ++k) row[CurvatureAt(i, k)] = (i == k ? 0.5 : 1.0) * s[i] * s[k];
  }
  return row;
}

Row SlopeRow(const SearchPoint& s, std::size_t i) {
  Row row{};
  row[1 + i] = 1.0;
  for (std::size_t k = 0; k < kVariables; ++k) row[CurvatureAt(std::min(i, k), std::max(i, k))] = s[k];
  return row;
}

// Solves matrix x = right in place, for a symmetric positive definite matrix of this size. False for others.
template <std::size_t N>
bool SolvePositive(std::array<std::array<double, N>, N> matrix, std::array<double, N>& right) {
  for (std::size_t j = 0; j < N; ++j) {
    for (std::size_t k = 0; k < j; ++k) matrix[j][j] -= matrix[j][k] * matrix[j][k];
    if (!(matrix[j][j] > 0.0)) return false;
    matrix[j][j] = std::sqrt(matrix[j][j]);
    for (std::size_t i = j + 1; i < N; ++i) {
      for (std::size_t k = 0; k < j; ++k) matrix[i][j] -= matrix[i][k] * matrix[j][k];
      matrix[i][j] /= matrix[j][j];
    }
  }
  for (std::size_t i = 0; i < N; ++i) {
    for (std::size_t k = 0; k < i; ++k) right[i] -= matrix[i][k] * right[k];
    right[i] /= matrix[i][i];
  }
  for (std::size_t i = N; i-- > 0;) {
    for (std::size_t k = i + 1; k < N; ++k) right[i] -= matrix[k][i] * right[k];
    right[i] /= matrix[i][i];
  }
  return true;
}

double Length(const SearchPoint& s) { return std::sqrt(s[0] * s[0] + s[1] * s[1] + s[2] * s[2]); }

// The step of length 1 at most with the highest model value: (shift - curvature) s = slope, with the smallest shift
// that makes the matrix positive definite and the step short enough.
SearchPoint HighestStep(const Quadratic& model) {
  const auto step = [&](double shift, SearchPoint& s) {
    Square matrix{};
    for (std::size_t i = 0; i < kVariables; ++i) {
      for (std::size_t k = 0; k < kVariables; ++k) matrix[i][k] = (i == k ? shift : 0.0) - model.curvature[i][k];
    }
    s = model.slope;
    return SolvePositive(matrix, s) && Length(s) <= 1.0;
  };
  double scale = Length(model.slope);
  for (const auto& row : model.curvature) scale += std::fabs(row[0]) + std::fabs(row[1]) + std::fabs(row[2]);
  SearchPoint best{};
  if (!(scale > 0.0)) return best;
  double low = 1e-9 * scale, high = 4.0 * scale;
  if (step(low, best)) return best;
  constexpr int kHalvings = 40;
  SearchPoint trial{};
  step(high, best);
  for (int i = 0; i < kHalvings; ++i) {
    const double middle = std::sqrt(low * high);
    if (step(middle, trial)) {
      high = middle;
      best = trial;
    } else {
      low = middle;
    }
  }
  return best;
}

class Climber {
 public:
  Climber(KnownFunction& function, const SearchPoint& start, const ClimbLimits& limits)
      : function_(function), limits_(limits), radius_(limits.radius), centre_(function.IndexOf(start)) {}

  Climb Run() {
    if (!std::isfinite(Value(centre_))) return {Centre(), false};
    while (radius_ >= limits_.tolerance && function_.evaluations() < limits_.evaluations) {
      Gather();
      if (!IsDetermined()) {
        Explore();
        continue;
      }
      Fit();
      Advance();
    }
    return {Centre(), radius_ < limits_.tolerance};
  }

 private:
  const KnownFunction::Known& Centre() const { return function_.all()[centre_]; }

  SearchPoint StepTo(const SearchPoint& point) const {
    SearchPoint s{};
    for (std::size_t i = 0; i < Variables(); ++i) s[i] = (point[i] - Centre().point[i]) / radius_;
    return s;
  }
  SearchPoint PointAt(const SearchPoint& s) const {
    SearchPoint point = Centre().point;
    for (std::size_t i = 0; i < Variables(); ++i) point[i] += radius_ * s[i];
    return point;
  }
  std::size_t Variables() const { return static_cast<std::size_t>(function_.variables()); }

  // Finds the known points around the centre.
  void Gather() {
    near_.clear();
    for (std::size_t i = 0; i < function_.all().size(); ++i) {
      if (Length(StepTo(function_.all()[i].point)) <= kReach) near_.push_back(i);
    }
  }

  // A slope at the centre, or enough points on all sides of it.
  bool IsDetermined() const {
    if (Centre().at.slope) return true;
    return near_.size() > 2 * Variables();
  }

  // Evaluates the point, of those one radius from the centre along a variable, that is farthest from all known ones.
  void Explore() {
    SearchPoint best{};
    double farthest = -1.0;
    for (std::size_t i = 0; i < Variables(); ++i) {
      for (const double side : {1.0, -1.0}) {
        SearchPoint s{};
        s[i] = side;
        double nearest = std::numeric_limits<double>::infinity();
        for (const std::size_t known : near_)
          nearest = std::min(nearest, Distance(s, StepTo(function_.all()[known].point)));
        if (nearest > farthest) {
          farthest = nearest;
          best = s;
        }
      }
    }
    const std::size_t at = function_.IndexOf(PointAt(best));
    if (Value(at) > Value(centre_)) centre_ = at;
  }

  double Value(std::size_t i) const { return function_.all()[i].at.value; }

  // The quadratic of least squared differences. Where the points leave it open, it is the one closest to the last.
  void Fit() {
    const double size = radius_ * radius_;
    Quadratic model;
    for (std::size_t i = 0; i < kVariables; ++i) {
      for (std::size_t k = 0; k < kVariables; ++k) model.curvature[i][k] = curvature_[i][k] * size;
    }
    std::array<Row, kUnknowns> matrix{};
    Row right{};
    const auto add = [&](const Row& row, double wanted, double weight) {
      for (std::size_t i = 0; i < kUnknowns; ++i) {
        right[i] += weight * row[i] * wanted;
        for (std::size_t k = 0; k < kUnknowns; ++k) matrix[i][k] += weight * row[i] * row[k];
      }
    };
    for (const std::size_t index : near_) {
      const KnownFunction::Known& known = function_.all()[index];
      if (!std::isfinite(known.at.value)) continue;
      const SearchPoint s = StepTo(known.point);
      const double length = Length(s);
      const double weight = 1.0 / (1.0 + length * length * length * length);
      add(ValueRow(s), known.at.value - Centre().at.value - model.At(s), weight);
      if (!known.at.slope) continue;
      for (std::size_t i = 0; i < Variables(); ++i) {
        double expected = 0.0;
        for (std::size_t k = 0; k < kVariables; ++k) expected += model.curvature[i][k] * s[k];
        add(SlopeRow(s, i), (*known.at.slope)[i] * radius_ - expected, weight);
      }
    }
    constexpr double kFirm = 1e-9;
    for (std::size_t i = 0; i < kUnknowns; ++i) matrix[i][i] += kFirm;
    model_ = model;
    if (!SolvePositive(matrix, right)) return;
    for (std::size_t i = 0; i < Variables(); ++i) {
      model_.slope[i] = right[1 + i];
      for (std::size_t k = 0; k < Variables(); ++k) {
        model_.curvature[i][k] += right[CurvatureAt(std::min(i, k), std::max(i, k))];
        curvature_[i][k] = model_.curvature[i][k] / size;
      }
    }
  }

  // One step to the maximum of the model.
  void Advance() {
    const SearchPoint step = HighestStep(model_);
    const double length = Length(step), promised = model_.At(step);
    constexpr double kShort = 0.1;
    if (!(length * radius_ >= kShort * limits_.tolerance) || !(promised > 0.0)) {
      Shrink();
      return;
    }
    const std::size_t before = function_.all().size(), at = function_.IndexOf(PointAt(step));
    const double gained = Value(at) - Value(centre_);
    if (gained > 0.0) centre_ = at;
    constexpr double kGood = 0.7, kPoor = 0.1, kRim = 0.9;
    if (gained >= kGood * promised && length >= kRim) {
      radius_ = std::min(2.0 * radius_, limits_.radius);
    } else if (gained < kPoor * promised || function_.all().size() == before) {
      Shrink();
    } else if (length < 0.5) {
      radius_ = std::max(2.0 * length * radius_, 0.25 * radius_);
    }
  }

  void Shrink() { radius_ *= 0.4; }

  static constexpr double kReach = 2.0;  // radii

  KnownFunction& function_;
  ClimbLimits limits_;
  double radius_;
  std::size_t centre_;
  std::vector<std::size_t> near_;
  Square curvature_{};
  Quadratic model_;
};

}  // namespace

KnownFunction::KnownFunction(std::function<ValueAndSlope(const SearchPoint&)> function, int variables)
    : function_(std::move(function)), variables_(variables) {}

std::size_t KnownFunction::IndexOf(const SearchPoint& point) {
  const auto found = std::find_if(all_.begin(), all_.end(), [&](const Known& known) { return known.point == point; });
  if (found != all_.end()) return static_cast<std::size_t>(found - all_.begin());
  ValueAndSlope at = function_(point);
  if (std::isnan(at.value)) at = {-std::numeric_limits<double>::infinity(), {}};
  all_.push_back({point, at});
  return all_.size() - 1;
}

double Distance(const SearchPoint& a, const SearchPoint& b) { return Length({a[0] - b[0], a[1] - b[1], a[2] - b[2]}); }

Climb ClimbFrom(KnownFunction& function, const SearchPoint& start, const ClimbLimits& limits) {
  return Climber(function, start, limits).Run();
}

}  // namespace orvanel::evaluation
