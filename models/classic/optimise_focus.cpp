// Optimises the Strehl ratio over the second-order terms, within bounds.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "models/classic/brent.h"
#include "models/classic/workspace.h"
#include "orvanel/sampling.h"

namespace orvanel {
namespace {

// A point in the space of (c4, c3, c5), and a direction in it.
using Point = std::array<double, 3>;
constexpr std::array<std::size_t, 3> kIndex = {4, 3, 5};

// The field at any one place is a band-limited function of each coefficient, since the terms stay within -1 .. 1 on the
// pupil. Its intensity has no frequency above 2 / wavelength. Samples an eighth of a wave apart are twice as many as
// that needs. No maximum is then more than 1 / cos(pi/4) times as high as the samples beside it (Ehlich and Zeller,
// 1964).
constexpr double kSamplesPerWave = 8.0;
constexpr double kWorthRefining = 0.7;

constexpr int kMostRounds = 50;

// Values in place of the Strehl ratio for points that cannot be tried or are skipped: below every Strehl ratio.
constexpr double kExhausted = -2.0;
constexpr double kUndersampled = -3.0;

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
    if (settings.maximumUndersampled <= 0.4) KeepSampled();
  }

  FocusResult Run();

 private:
  void KeepSampled();
  bool IsUndersampled() const;
  void Synthesize(const Point& point);
  double StrehlAt(const Point& point);
  double Measure(const Point& point);
  void SearchLine(const Point& direction, bool whole);
  void Scan(const Point& from, const Point& direction, double first, double last);
  void Refine(const Point& from, const Point& direction, double first, double last);
  void Improve();
  bool IsInside(const Point& point) const;
  bool IsAtUndersampled();

  OpticsEngine& engine_;
  double diameter_;
  FocusSearch settings_;
  std::array<double, kCoefficients> coefficients_{};
  Point start_{}, low_{}, high_{};
  Point best_{};
  double bestStrehl_ = kExhausted;
  int trials_ = 0;
  bool exhausted_ = false;
  bool settled_ = false;
};

// Ends the ranges where more than half of the pupil is undersampled. In the other half the wavefront changes by half a
// wave at most along a row or column; terms of higher orders may take away their own largest step. The terms of second
// order have a gradient 2 Q v, Q a symmetric matrix. More than half of the disc has |e v| >= 0.4 along either
// eigenvector e. So such a half cannot remain if an eigenvalue q of Q has 2 |q| 0.4 above sqrt(2) times the change for
// a radius. The bounds follow: c4 is a quarter of the trace of Q, and c3 and c5 do not exceed its largest eigenvalue.
void Search::KeepSampled() {
  engine_.synthesizeWavefront(coefficients_.data(), diameter_, 0, 0, 0);
  const int samples = engine_.pupilSamples;
  const double step =
      settings_.wavelength / 2.0 + LargestStep(engine_.wavefrontPlane.data(), engine_.gridSize, samples);
  const double largestEigenvalue = std::sqrt(2.0) * step * (samples - 1) / 2.0 / 0.8;
  for (std::size_t i = 0; i < kIndex.size(); ++i) {
    if (low_[i] == high_[i]) continue;
    const double reach = kIndex[i] == 4 ? largestEigenvalue / 2.0 : largestEigenvalue;
    low_[i] = std::max(low_[i], -reach);
    high_[i] = std::min(high_[i], reach);
    if (low_[i] > high_[i]) low_[i] = high_[i] = start_[i];  // nothing to search
  }
}

bool Search::IsUndersampled() const {
  return settings_.maximumUndersampled < 1.0 &&
         UndersampledShare(engine_.wavefrontPlane.data(), engine_.gridSize, engine_.pupilSamples,
                           settings_.wavelength) > settings_.maximumUndersampled;
}

void Search::Synthesize(const Point& point) {
  for (std::size_t i = 0; i < kIndex.size(); ++i) coefficients_[kIndex[i]] = point[i];
  engine_.synthesizeWavefront(coefficients_.data(), diameter_, 1, 1, 1);
}

double Search::Measure(const Point& point) {
  Synthesize(point);
  return engine_.ComputeStrehl(settings_.wavelength);
}

double Search::StrehlAt(const Point& point) {
  if (trials_ >= settings_.maximumTrials) {
    exhausted_ = true;
    return kExhausted;
  }
  ++trials_;
  Synthesize(point);
  if (IsUndersampled()) return kUndersampled;
  const double strehl = engine_.ComputeStrehl(settings_.wavelength);
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

// Powell's rounds over the three coefficients: each alone, then along their common displacement, which
// replaces the oldest direction.
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
    // Parallel directions would lose a dimension: start over with the axes every few rounds.
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

// Whether the points beside the best one were skipped, so that it is only the last one before them.
bool Search::IsAtUndersampled() {
  if (settings_.maximumUndersampled >= 1.0) return false;
  for (std::size_t i = 0; i < kIndex.size(); ++i) {
    if (low_[i] == high_[i]) continue;
    for (const double side : {-2.0, 2.0}) {
      Point beside = best_;
      beside[i] += side * settings_.tolerance;
      Synthesize(beside);
      if (IsUndersampled()) return true;
    }
  }
  return false;
}

FocusResult Search::Run() {
  best_ = start_;
  const double atStart = StrehlAt(start_);
  if (atStart > 0.0 || atStart == kUndersampled) {
    if (settings_.astigmatism) {
      // Without second-order terms the variance of the wavefront is least.
      Point flat{};
      for (std::size_t i = 0; i < flat.size(); ++i) flat[i] = std::clamp(0.0, low_[i], high_[i]);
      StrehlAt(flat);
      if (bestStrehl_ > kExhausted) Improve();
    } else {
      SearchLine({1.0, 0.0, 0.0}, true);
      settled_ = true;
    }
  } else {
    bestStrehl_ = atStart;
  }
  FocusResult result{};
  result.converged = settled_ && !exhausted_ && bestStrehl_ > kExhausted && IsInside(best_) && !IsAtUndersampled();
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
