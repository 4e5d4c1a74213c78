// The steps of the two best-focus walks.
#ifndef ORVANEL_OPTICS_BEST_FOCUS_H
#define ORVANEL_OPTICS_BEST_FOCUS_H

#include "orvanel/optics_engine.h"

namespace orvanel {

// Walks `position` in steps while `gains(value(), best)`, turns round once at the first loss, and returns the last
// position that gained. value() judges the position as it stands.
template <class Value, class Gains>
double Walk(double& position, double step, Value value, Gains gains) {
  double best = value();
  bool turned = false;
  for (;;) {
    position = position + step;
    const double trial = value();
    if (gains(trial, best)) {
      best = trial;
    } else if (!turned) {
      position = position - step;
      step = step * -1.0;
      turned = true;
    } else {
      return position - step;
    }
  }
}

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_BEST_FOCUS_H
