// Newton's step in two directions.
#include "models/physical/window/paraboloid.h"

#include <cmath>

namespace orvanel::physical {

Step StepFrom(const Paraboloid& at) {
  const double determinant = at.xx * at.yy - at.xy * at.xy;
  if (at.xx < 0.0 && determinant > 0.0) {
    return {(at.xy * at.y - at.yy * at.x) / determinant, (at.xy * at.x - at.xx * at.y) / determinant, true};
  }
  const double curvature = std::sqrt(at.xx * at.xx + 2.0 * at.xy * at.xy + at.yy * at.yy);
  if (curvature == 0.0) return {0.0, 0.0, false};
  return {at.x / curvature, at.y / curvature, false};
}
double Length(const Step& step) { return std::sqrt(step.x * step.x + step.y * step.y); }
Step Shortened(Step step, double longest) {
  const double length = Length(step);
  if (length <= longest) return step;
  return {step.x * longest / length, step.y * longest / length, false};
}
double Gain(const Paraboloid& at, const Step& step) { return 0.5 * (at.x * step.x + at.y * step.y); }

namespace {

// The curvature along one direction is next to nothing beside that along the other.
bool IsRidge(const Paraboloid& at) {
  constexpr double kNothing = 1e-3;
  const double mean = std::fabs(at.xx + at.yy) / 2.0, half = (at.xx - at.yy) / 2.0;
  const double apart = std::sqrt(half * half + at.xy * at.xy);
  return std::fabs(mean - apart) <= kNothing * (mean + apart);
}

}  // namespace

Peak Climb(const std::function<Paraboloid(double x, double y)>& at, double x, double y, double longest,
           double nearest) {
  Paraboloid here = at(x, y);
  constexpr int kSteps = 60;
  for (int i = 0; i < kSteps; ++i) {
    Step step = Shortened(StepFrom(here), longest);
    if (Length(step) <= nearest) return {here.value + Gain(here, step), x + step.x, y + step.y, !IsRidge(here)};
    Paraboloid there = at(x + step.x, y + step.y);
    while (there.value < here.value && Length(step) > nearest) {
      step = {0.25 * step.x, 0.25 * step.y, false};
      there = at(x + step.x, y + step.y);
    }
    if (there.value < here.value) break;
    x += step.x;
    y += step.y;
    here = there;
  }
  return {here.value, x, y, !IsRidge(here)};
}

}  // namespace orvanel::physical
