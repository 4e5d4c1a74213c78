// Chooses ticks at round values and draws axes.
#include "drawing/canvas/axis.h"

#include <cmath>

#include "base/number_text.h"

namespace orvanel::drawing {
namespace {

constexpr double kTickLength = 6.0;
constexpr double kTickGap = 5.0;  // between a tick and its number

// The smallest of 1, 2, 5, 10 times a power of ten that is at least `step`.
double RoundStep(double step) {
  double power = 1.0;
  while (power > step) power /= 10.0;
  while (10.0 * power <= step) power *= 10.0;
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= step * (1.0 - 1e-9)) return factor * power;
  }
  return 10.0 * power;
}

std::string TickText(double value) {
  std::string text = NumberText(std::abs(value), 6);
  return value < 0.0 ? "\u2212" + text : text;
}

}  // namespace

std::vector<Tick> RoundTicks(double low, double high, int count) {
  std::vector<Tick> ticks;
  const double wanted = (high - low) / count;
  if (!(std::isfinite(wanted) && wanted > 0.0)) return ticks;
  const double step = RoundStep(wanted);
  const double slack = 1e-9 * step;
  for (double k = std::ceil((low - slack) / step); k * step <= high + slack; ++k) {
    ticks.push_back({k * step, TickText(k == 0.0 ? 0.0 : k * step)});
  }
  return ticks;
}

void DrawTicks(Surface& surface, const Box& box, Edge edge, double first, double last, const std::vector<Tick>& ticks) {
  const double halfDigit = 0.36 * kTickTextSize;
  for (const Tick& tick : ticks) {
    const double share = (tick.value - first) / (last - first);
    const double x = box.x + share * box.width, y = box.y + share * box.height;
    const TextStyle middle{kTickTextSize, kInk, false, Align::kCentre};
    switch (edge) {
      case Edge::kLeft:
        surface.Fill({box.x - kTickLength, y - 0.75, kTickLength, 1.5}, kInk);
        surface.Text({box.x - kTickLength - kTickGap, y + halfDigit}, tick.text,
                     {kTickTextSize, kInk, false, Align::kRight});
        break;
      case Edge::kRight:
        surface.Fill({box.right(), y - 0.75, kTickLength, 1.5}, kInk);
        surface.Text({box.right() + kTickLength + kTickGap, y + halfDigit}, tick.text, {kTickTextSize, kInk});
        break;
      case Edge::kTop:
        surface.Fill({x - 0.75, box.y - kTickLength, 1.5, kTickLength}, kInk);
        surface.Text({x, box.y - kTickLength - kTickGap}, tick.text, middle);
        break;
      case Edge::kBottom:
        surface.Fill({x - 0.75, box.bottom(), 1.5, kTickLength}, kInk);
        surface.Text({x, box.bottom() + kTickLength + kTickGap + 2.0 * halfDigit}, tick.text, middle);
        break;
    }
  }
}

void DrawAxis(Surface& surface, const Box& box, Edge edge, const Axis& axis, double labelDistance) {
  constexpr int kTicks = 7;
  const bool ascending = axis.first < axis.last;
  DrawTicks(surface, box, edge, axis.first, axis.last,
            RoundTicks(ascending ? axis.first : axis.last, ascending ? axis.last : axis.first, kTicks));
  TextStyle style{kLabelSize, kInk, false, Align::kCentre};
  Point at{box.x + box.width / 2.0, box.bottom() + labelDistance};
  if (edge == Edge::kTop) at.y = box.y - labelDistance;
  if (edge == Edge::kLeft || edge == Edge::kRight) {
    style.upwards = true;
    at = {edge == Edge::kLeft ? box.x - labelDistance : box.right() + labelDistance, box.y + box.height / 2.0};
  }
  surface.Text(at, axis.label, style);
}

}  // namespace orvanel::drawing
