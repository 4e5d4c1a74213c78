// Defines the walk of the two best-focus searches.
#ifndef ORVANEL_MODELS_CLASSIC_BEST_FOCUS_H
#define ORVANEL_MODELS_CLASSIC_BEST_FOCUS_H

#include <cstdint>
#include <limits>

#include "orvanel/optics_engine.h"

namespace orvanel {

constexpr std::int64_t kNoLimit = std::numeric_limits<std::int64_t>::max();

// Walks `position` in steps while `gains(value(), best)`. Turns at the first loss, and ends at the second or after
// maximumTrials values. value() evaluates the current position. The result has the last position that gained.
template <class Value, class Gains>
WalkResult Walk(double& position, double step, Value value, Gains gains, std::int64_t maximumTrials = kNoLimit) {
  double best = value();
  std::int64_t trials = 1;
  bool turned = false;
  while (trials < maximumTrials) {
    position = position + step;
    const double trial = value();
    ++trials;
    if (gains(trial, best)) {
      best = trial;
    } else if (!turned) {
      position = position - step;
      step = step * -1.0;
      turned = true;
    } else {
      return {position - step, best, trials, true};
    }
  }
  return {position, best, trials, false};
}

}  // namespace orvanel

#endif  // ORVANEL_MODELS_CLASSIC_BEST_FOCUS_H
