// Lays out optotypes in lines, or one optotype with crowding bars.
#ifndef ORVANEL_TARGETS_CHARTS_LAYOUT_H
#define ORVANEL_TARGETS_CHARTS_LAYOUT_H

#include <optional>
#include <vector>

#include "base/layers.h"
#include "targets/charts/shape.h"

namespace orvanel::targets::charts {

struct LineOfOptotypes {
  double height = 0.0;         // of an optotype, in any unit
  std::vector<int> optotypes;  // their places in the set
};

struct PlacedOptotype {
  int optotype;
  Point centre;
  double height;
};

// The unit is that of the heights. The origin is the middle of everything.
struct Layout {
  double width = 0.0, height = 0.0;
  std::vector<PlacedOptotype> optotypes;
  Shape bars;
};

// The gaps in a line are one optotype wide, and the gap above a line is as high as its optotypes. With five letters in
// a line and steps of 0.1 logMAR, this is the chart of the Early Treatment Diabetic Retinopathy Study (ETDRS). Source:
// Bailey and Lovie (1976), New design principles for visual acuity letter charts.
Layout LayOut(const std::vector<LineOfOptotypes>& lines);

// One optotype between four bars, which are as long as it is high, and one stroke wide.
//   gap  between the optotype and each bar, in heights of the optotype
Layout LayOutCrowded(int optotype, double height, double gap);

}  // namespace orvanel::targets::charts

#endif  // ORVANEL_TARGETS_CHARTS_LAYOUT_H
