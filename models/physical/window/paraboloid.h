// Climbs to the peak of a function of two directions by Newton's method.
#ifndef ORVANEL_MODELS_PHYSICAL_WINDOW_PARABOLOID_H
#define ORVANEL_MODELS_PHYSICAL_WINDOW_PARABOLOID_H

#include <functional>

namespace orvanel::physical {

// Value, slope and curvature at a place.
struct Paraboloid {
  double value, x, y, xx, xy, yy;
};

// From the place to the peak, or uphill where there is none.
struct Step {
  double x, y;
  bool toPeak;
};
Step StepFrom(const Paraboloid& at);
double Length(const Step& step);
Step Shortened(Step step, double longest);
double Gain(const Paraboloid& at, const Step& step);  // of the value

// A highest place, in the sense of DirectionGrid.
struct Peak {
  double value = 0.0;
  double x = 0.0;  // arcmin
  double y = 0.0;
  bool isolated = true;  // false where rounding picks it from a ring, a ridge or several places of equal height
};

// Uphill from a place, by Newton's steps where the function is curved like a hill.
//   longest  of a step
//   nearest  a step so short ends the climb: from there the parabola is exact
Peak Climb(const std::function<Paraboloid(double x, double y)>& at, double x, double y, double longest, double nearest);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_WINDOW_PARABOLOID_H
