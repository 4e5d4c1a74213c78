// Finds the best focus and the depth of focus on a sampled curve of a metric over lenses.
#ifndef ORVANEL_EVALUATION_FOCUS_CURVE_H
#define ORVANEL_EVALUATION_FOCUS_CURVE_H

#include <optional>
#include <span>
#include <vector>

#include "base/layers.h"

namespace orvanel::evaluation {

// The interval around the best focus in which a metric keeps a share of its best value. Where low values are better, it
// ends where the value is the best one divided by the share.
struct DepthOfFocus {
  double share = 0.0;
  double threshold = 0.0;  // the value at which the interval ends
  double from = 0.0, to = 0.0;
  bool endsBelow = false,
       endsAbove = false;  // false: from or to is the last lens with a value, and the interval longer
  bool again = false;      // lenses outside of the interval are better than the threshold too

  double width() const { return to - from; }
  bool isWhole() const { return endsBelow && endsAbove; }
};

struct FocusOptimum {
  double lens = 0.0, value = 0.0;
  bool atEdge = false;               // the best lens is the last with a value: the optimum may be beyond it
  std::vector<DepthOfFocus> depths;  // of the shares; empty if the metric has no zero, or its best value is not above 0
  bool coarse = false;               // fewer than kFewestSamples lenses are in the interval of the lowest share
};
constexpr int kFewestSamples = 4;  // with which a bell curve is known within 2 % of its width

struct FocusShape {
  bool higherIsBetter = true;
  bool isSmooth = true;
  bool hasZero = true;
};

// The optimum of samples. Between samples, smooth metrics are cubic, with the slopes of the parabolas through three
// samples; the others are linear, and the middle of equally good samples is their optimum. Empty if no sample is a
// number.
//   lenses  rising
//   values  one for each lens; not a number where there is none
//   shares  from 0 to 1, both excluded, falling
std::optional<FocusOptimum> OptimumOf(std::span<const double> lenses, std::span<const double> values,
                                      const FocusShape& shape, std::span<const double> shares);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_FOCUS_CURVE_H
