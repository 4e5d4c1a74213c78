// Searches local maxima of a function of up to three variables, by quadratic models of the values known so far.
#ifndef ORVANEL_EVALUATION_CORRECTION_CLIMB_H
#define ORVANEL_EVALUATION_CORRECTION_CLIMB_H

#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "base/layers.h"

namespace orvanel::evaluation {

using SearchPoint = std::array<double, 3>;

// The value of a function at a point, and its slope along each variable where the function knows it.
struct ValueAndSlope {
  double value = 0.0;
  std::optional<SearchPoint> slope;
};

// A function with all its values so far. Equal points are evaluated once.
class KnownFunction {
 public:
  struct Known {
    SearchPoint point;
    ValueAndSlope at;
  };

  // A value that is not a number counts as the lowest.
  //   variables  1 to 3; the further coordinates of all points stay as they are
  KnownFunction(std::function<ValueAndSlope(const SearchPoint&)> function, int variables);

  double At(const SearchPoint& point) { return all_[IndexOf(point)].at.value; }
  std::size_t IndexOf(const SearchPoint& point);

  int variables() const { return variables_; }
  const std::vector<Known>& all() const { return all_; }
  int evaluations() const { return static_cast<int>(all_.size()); }

 private:
  std::function<ValueAndSlope(const SearchPoint&)> function_;
  int variables_;
  std::vector<Known> all_;
};

// The Euclidean distance.
double Distance(const SearchPoint& a, const SearchPoint& b);

struct ClimbLimits {
  double radius = 0.0;     // of the first steps
  double tolerance = 0.0;  // the climb ends when its steps are shorter
  int evaluations = 0;     // in all, of the function
};

struct Climb {
  KnownFunction::Known top;
  bool converged = false;  // false if the evaluations were not enough
};

// Climbs from a point. Each step fits a quadratic model to the known values around the best one, and goes to the
// maximum of the model within a radius. The radius grows and shrinks with the success of the model. Slopes are fitted
// too, where they are known. Of a function with corners, the model is only a guide: the values around the top decide.
// Source: Conn, Scheinberg and Vicente (2009), Introduction to derivative-free optimization, chapters 5 and 10.
Climb ClimbFrom(KnownFunction& function, const SearchPoint& start, const ClimbLimits& limits);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_CORRECTION_CLIMB_H
