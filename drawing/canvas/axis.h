// Draws the scales at the edges of a figure: ticks, their numbers and a label.
#ifndef ORVANEL_DRAWING_CANVAS_AXIS_H
#define ORVANEL_DRAWING_CANVAS_AXIS_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "drawing/canvas/surface.h"

namespace orvanel::drawing {

struct Tick {
  double value;
  std::string text;
};

struct Axis {
  double first, last;  // values at the left or upper end, and at the other end
  std::string label;   // with the unit
};

constexpr double kTickTextSize = 17.0;
constexpr double kLabelSize = 18.0;

// About `count` ticks at round values from low to high.
std::vector<Tick> RoundTicks(double low, double high, int count);

enum class Edge { kLeft, kRight, kTop, kBottom };

// Draws ticks outside one edge of the box.
void DrawTicks(Surface& surface, const Box& box, Edge edge, double first, double last, const std::vector<Tick>& ticks);

// Draws round ticks and the axis' label. The left label reads upwards, `labelDistance` from the box.
void DrawAxis(Surface& surface, const Box& box, Edge edge, const Axis& axis, double labelDistance);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_CANVAS_AXIS_H
