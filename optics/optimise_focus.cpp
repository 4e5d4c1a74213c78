// Best Strehl ratio over the second-order terms, within bounds.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "optics/brent.h"
#include "optics/workspace.h"

namespace orvanel {
namespace {

// A point in the space of (c4, c3, c5), and a direction in it.
using Point = std::array<double, 3>;
constexpr std::array<std::size_t, 3> kIndex = {4, 3, 5};

// The field at any one place is a band-limited function of each coefficient, since the terms stay within -1 .. 1 on
// the pupil: its intensity has no frequency above 2 / wavelength. Twice as many samples as that needs are an eighth of
// a wave apart, and no maximum is then more than 1 / cos(pi/4) times as high as the samples beside it (Ehlich and
// Zeller, 1964).
constexpr double kSamplesPerWave = 8.0;
constexpr double kWorthRefining = 0.7;

constexpr int kMostRounds = 50;

// How much a unit step in this direction changes the wavefront at most.
double Magnitude(const Point& direction) {
  return std::fabs(direction[0]) + std::sqrt(direction[1] * direction[1] + direction[2] * direction[2]);
}

Point Along(const Point& from, const Point& direction, double t) {
  return {from[0] + t * direction[0], from[1] + t * direction[1], from[2] + t * direction[2]};
}

double Distance(const Point& a, const Point& b) {
  return std::max({std::fabs(a[0] - b[0]), std::fabs(a[1] - b[1]), std::fabs(a[2] - b[2])});
}

// Bounds, the count of trials, and the best point of all.
class Search {
 public:
  Search(OpticsEngine& engine, const double* coefficients, double diameter, const FocusSearch& settings)
      : engine_(engine), diameter_(diameter), settings_(settings) {
    std::copy_n(coefficients, coefficients_.size(), coefficients_.begin());
    if (!(settings_.tolerance > 0.0)) settings_.tolerance = FocusSearch{}.tolerance;
    const bool bounded = settings_.halfRange > 0.0 && std::isfinite(settings_.halfRange);
    for (std::size_t i = 0; i < kIndex.size(); ++i) {
      const double start = coefficients_[kIndex[i]];
      const double own = std::fabs(start) + 2.0 * settings.wavelength;
      const double half = i > 0 && !settings.astigmatism ? 0.0 : bounded ? settings.halfRange : own;
      start_[i] = start;
      low_[i] = start - half;
      high_[i] = start + half;
    }
  }

  FocusResult Run();

 private:
  double StrehlAt(const Point& point);
  double Measure(const Point& point);
  void SearchLine(const Point& direction, bool whole);
  void Scan(const Point& from, const Point& direction, double first, double last);
  void Refine(const Point& from, const Point& direction, double first, double last);
  void Improve();
  bool IsInside(const Point& point) const;

  OpticsEngine& engine_;
  double diameter_;
  FocusSearch settings_;
  std::array<double, kCoefficients> coefficients_{};
  Point start_{}, low_{}, high_{};
  Point best_{};
  double bestStrehl_ = -2.0;
  int trials_ = 0;
  bool exhausted_ = false;
  bool settled_ = false;
};

double Search::Measure(const Point& point) {
  for (std::size_t i = 0; i < kIndex.size(); ++i) coefficients_[kIndex[i]] = point[i];
  engine_.synthesizeWavefront(coefficients_.data(), diameter_, 1, 1, 1);
  return engine_.ComputeStrehl(settings_.wavelength);
}

double Search::StrehlAt(const Point& point) {
  if (trials_ >= settings_.maximumTrials) {
    exhausted_ = true;
    return -2.0;
  }
  ++trials_;
  const double strehl = Measure(point);
  if (strehl > bestStrehl_) {
    bestStrehl_ = strehl;
    best_ = point;
  }
  return strehl;
}

void Search::Refine(const Point& from, const Point& direction, double first, double last) {
  const double tolerance = settings_.tolerance / 3.0 / Magnitude(direction);
  MaximiseOnInterval([&](double t) { return StrehlAt(Along(from, direction, t)); }, first, last, tolerance);
}

void Search::Scan(const Point& from, const Point& direction, double first, double last) {
  const double waves = (last - first) * Magnitude(direction) / settings_.wavelength;
  const double wanted = std::ceil(waves * kSamplesPerWave);
  const auto count = static_cast<std::size_t>(std::clamp(wanted, 2.0, settings_.maximumTrials / 2.0 + 2.0));
  const double spacing = (last - first) / static_cast<double>(count);
  std::vector<double> strehls;
  for (std::size_t i = 0; i <= count; ++i) {
    strehls.push_back(StrehlAt(Along(from, direction, first + static_cast<double>(i) * spacing)));
  }
  const double highest = *std::max_element(strehls.begin(), strehls.end());
  for (std::size_t i = 0; i <= count; ++i) {
    const bool isPeak = (i == 0 || strehls[i] >= strehls[i - 1]) && (i == count || strehls[i] >= strehls[i + 1]);
    if (!isPeak || strehls[i] < kWorthRefining * highest) continue;
    const auto at = static_cast<double>(i);
    Refine(from, direction, first + std::max(at - 1.0, 0.0) * spacing,
           first + std::min(at + 1.0, static_cast<double>(count)) * spacing);
  }
}

// From the best point along a line, over all of it or within a wave's sixteenth.
void Search::SearchLine(const Point& direction, bool whole) {
  const Point from = best_;
  double first = -std::numeric_limits<double>::infinity();
  double last = -first;
  for (std::size_t i = 0; i < kIndex.size(); ++i) {
    if (direction[i] == 0.0) continue;
    const double a = (low_[i] - from[i]) / direction[i];
    const double b = (high_[i] - from[i]) / direction[i];
    first = std::max(first, std::min(a, b));
    last = std::min(last, std::max(a, b));
  }
  if (!(first < last)) return;
  if (whole) {
    Scan(from, direction, first, last);
  } else {
    const double near = settings_.wavelength / (2.0 * kSamplesPerWave) / Magnitude(direction);
    Refine(from, direction, std::max(first, -near), std::min(last, near));
  }
}

// Powell's rounds over the three coefficients: each alone, then along the way that they went together, which takes the
// place of the oldest direction.
void Search::Improve() {
  std::array<Point, 3> directions = {{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
  for (int round = 0; round < kMostRounds && !exhausted_; ++round) {
    const Point before = best_;
    for (const Point& direction : directions) SearchLine(direction, round == 0);
    const double moved = Distance(before, best_);
    if (moved <= settings_.tolerance) {
      settled_ = true;
      return;
    }
    const Point way = {(best_[0] - before[0]) / moved, (best_[1] - before[1]) / moved, (best_[2] - before[2]) / moved};
    SearchLine(way, round == 0);
    // Parallel directions would lose a dimension; begin anew with the axes every few rounds.
    if (round % 4 == 3) {
      directions = {{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
    } else {
      std::rotate(directions.begin(), directions.begin() + 1, directions.end());
      directions.back() = way;
    }
  }
}

bool Search::IsInside(const Point& point) const {
  for (std::size_t i = 0; i < kIndex.size(); ++i) {
    if (low_[i] == high_[i]) continue;
    if (point[i] - low_[i] <= settings_.tolerance || high_[i] - point[i] <= settings_.tolerance) return false;
  }
  return true;
}

FocusResult Search::Run() {
  const double atStart = StrehlAt(start_);
  if (atStart > 0.0) {
    if (settings_.astigmatism) {
      // Without second-order terms the variance of the wavefront is least.
      Point flat{};
      for (std::size_t i = 0; i < flat.size(); ++i) flat[i] = std::clamp(0.0, low_[i], high_[i]);
      StrehlAt(flat);
      Improve();
    } else {
      SearchLine({1.0, 0.0, 0.0}, true);
      settled_ = true;
    }
  } else {
    best_ = start_;
    bestStrehl_ = atStart;
  }
  FocusResult result{};
  result.converged = settled_ && !exhausted_ && IsInside(best_);
  result.trials = trials_;
  result.strehl = Measure(best_);
  result.coefficients = coefficients_;
  return result;
}

}  // namespace

FocusResult OpticsEngine::OptimiseFocus(const double* coefficients, double diameter, const FocusSearch& search) {
  const FocusResult result = Search(*this, coefficients, diameter, search).Run();
  FormPsf(search.wavelength);
  return result;
}

}  // namespace orvanel
