// Interpolates between samples, and follows the curve from its best place to both sides.
#include "evaluation/focus_curve.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace orvanel::evaluation {
namespace {

// Samples without gaps. Higher ones are better.
class Curve {
 public:
  Curve(std::vector<double> x, std::vector<double> y, bool isSmooth)
      : x_(std::move(x)), y_(std::move(y)), slopes_(isSmooth ? SlopesOf() : std::vector<double>()) {}

  std::size_t size() const { return x_.size(); }
  double x(std::size_t i) const { return x_[i]; }
  double y(std::size_t i) const { return y_[i]; }

  // In the interval after sample i; t from 0 to 1.
  double At(std::size_t i, double t) const {
    const double rise = y_[i + 1] - y_[i];
    if (slopes_.empty()) return y_[i] + t * rise;
    const double h = x_[i + 1] - x_[i], first = h * slopes_[i] - rise, last = rise - h * slopes_[i + 1];
    return y_[i] + t * rise + t * (1.0 - t) * ((1.0 - t) * first + t * last);
  }

  // The places of extrema of the cubic after sample i, from 0 to 1.
  std::vector<double> ExtremaIn(std::size_t i) const {
    const double rise = y_[i + 1] - y_[i];
    const double h = x_[i + 1] - x_[i], first = h * slopes_[i] - rise, last = rise - h * slopes_[i + 1];
    // The derivative is c + b t + a t^2.
    const double c = rise + first, b = 2.0 * last - 4.0 * first, a = 3.0 * (first - last);
    std::vector<double> roots;
    const double discriminant = b * b - 4.0 * a * c;
    if (discriminant < 0.0) return roots;
    const double q = -0.5 * (b + std::copysign(std::sqrt(discriminant), b));
    for (const double t : {q != 0.0 ? c / q : 0.0, a != 0.0 ? q / a : 0.0}) {
      if (t > 0.0 && t < 1.0) roots.push_back(t);
    }
    return roots;
  }

 private:
  // Of the parabola through each sample and its two neighbours; at the ends, of that through the last three.
  std::vector<double> SlopesOf() const {
    const std::size_t n = x_.size();
    std::vector<double> slopes(n, 0.0);
    if (n == 2) slopes.assign(n, (y_[1] - y_[0]) / (x_[1] - x_[0]));
    if (n < 3) return slopes;
    for (std::size_t i = 0; i < n; ++i) {
      const std::size_t middle = std::clamp<std::size_t>(i, 1, n - 2);
      const double before = x_[middle] - x_[middle - 1], after = x_[middle + 1] - x_[middle];
      const double left = (y_[middle] - y_[middle - 1]) / before, right = (y_[middle + 1] - y_[middle]) / after;
      const double bend = (right - left) / (before + after);
      slopes[i] = left + bend * (2.0 * x_[i] - x_[middle - 1] - x_[middle]);
    }
    return slopes;
  }

  std::vector<double> x_, y_, slopes_;
};

struct Top {
  std::size_t interval = 0;  // the sample before it
  double t = 0.0;            // from that sample to the next
  double value = 0.0;
  bool atEdge = false;
};

Top TopOf(const Curve& curve, bool isSmooth) {
  std::size_t first = 0;
  for (std::size_t i = 1; i < curve.size(); ++i) {
    if (curve.y(i) > curve.y(first)) first = i;
  }
  std::size_t last = first;
  while (last + 1 < curve.size() && curve.y(last + 1) == curve.y(first)) ++last;
  Top top{first, 0.0, curve.y(first), first == 0 || last + 1 == curve.size()};
  if (top.atEdge) {
    // The sample at the edge, so that a plateau does not look like a maximum.
    if (first != 0) top.interval = curve.size() - 1;
    return top;
  }
  constexpr std::size_t kPlateau = 2;
  if (!isSmooth || last - first >= kPlateau) {
    const double middle = (curve.x(first) + curve.x(last)) / 2.0;
    while (curve.x(top.interval + 1) <= middle) ++top.interval;
    top.t = (middle - curve.x(top.interval)) / (curve.x(top.interval + 1) - curve.x(top.interval));
    return top;
  }
  for (const std::size_t i : {first - 1, first}) {
    for (const double t : curve.ExtremaIn(i)) {
      const double value = curve.At(i, t);
      if (value > top.value) top = {i, t, value, false};
    }
  }
  return top;
}

double PlaceOf(const Curve& curve, std::size_t interval, double t) {
  if (t == 0.0) return curve.x(interval);
  return curve.x(interval) + t * (curve.x(interval + 1) - curve.x(interval));
}

// Where the curve falls below the threshold between two places of an interval. At the first place it is above it.
double Crossing(const Curve& curve, std::size_t interval, double above, double below, double threshold) {
  constexpr int kHalvings = 50;
  for (int k = 0; k < kHalvings; ++k) {
    const double t = (above + below) / 2.0;
    (curve.At(interval, t) >= threshold ? above : below) = t;
  }
  return PlaceOf(curve, interval, below);
}

// The interval around the top in which the curve is at the threshold or above.
DepthOfFocus DepthOf(const Curve& curve, const Top& top, double threshold) {
  DepthOfFocus depth;
  depth.from = curve.x(0);
  depth.to = curve.x(curve.size() - 1);
  for (std::size_t i = top.interval; i + 1 < curve.size(); ++i) {
    if (curve.y(i + 1) >= threshold) continue;
    depth.to = Crossing(curve, i, i == top.interval ? top.t : 0.0, 1.0, threshold);
    depth.endsAbove = true;
    break;
  }
  for (std::size_t i = top.interval + (top.t > 0.0 ? 1 : 0); i-- > 0;) {
    if (curve.y(i) >= threshold) continue;
    depth.from = Crossing(curve, i, i == top.interval ? top.t : 1.0, 0.0, threshold);
    depth.endsBelow = true;
    break;
  }
  return depth;
}

}  // namespace

std::optional<FocusOptimum> OptimumOf(std::span<const double> lenses, std::span<const double> values,
                                      const FocusShape& shape, std::span<const double> shares) {
  const double sign = shape.higherIsBetter ? 1.0 : -1.0;
  std::optional<std::size_t> best;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (std::isfinite(values[i]) && (!best || sign * values[i] > sign * values[*best])) best = i;
  }
  if (!best) return std::nullopt;
  std::size_t begin = *best, end = *best + 1;
  while (begin > 0 && std::isfinite(values[begin - 1])) --begin;
  while (end < values.size() && std::isfinite(values[end])) ++end;
  std::vector<double> x, y;
  for (std::size_t i = begin; i < end; ++i) {
    x.push_back(lenses[i]);
    y.push_back(sign * values[i]);
  }
  const Curve curve(std::move(x), std::move(y), shape.isSmooth);
  const Top top = TopOf(curve, shape.isSmooth);
  FocusOptimum optimum{PlaceOf(curve, top.interval, top.t), sign * top.value, top.atEdge, {}, false};
  if (!shape.hasZero || !(optimum.value > 0.0)) return optimum;
  for (const double share : shares) {
    const double threshold = shape.higherIsBetter ? optimum.value * share : optimum.value / share;
    DepthOfFocus depth = DepthOf(curve, top, sign * threshold);
    depth.share = share;
    depth.threshold = threshold;
    int samples = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
      const bool isIn = lenses[i] >= depth.from && lenses[i] <= depth.to;
      samples += isIn ? 1 : 0;
      depth.again = depth.again || (!isIn && sign * values[i] >= sign * threshold);
    }
    optimum.coarse = samples < kFewestSamples;
    optimum.depths.push_back(depth);
  }
  return optimum;
}

}  // namespace orvanel::evaluation
