// Draws a plane as a figure: colours, axes and a colour bar.
#ifndef ORVANEL_DRAWING_PLANE_FIGURE_H
#define ORVANEL_DRAWING_PLANE_FIGURE_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "drawing/canvas/axis.h"
#include "drawing/canvas/colour_map.h"
#include "drawing/canvas/surface.h"
#include "eye/view.h"
#include "targets/plane.h"

namespace orvanel::drawing {

// The central samples of a square plane, `count` on each side.
struct Window {
  int first, count;
};

Window WholeOf(const Plane& plane);

// The smallest of a few windows of a square plane that contains `count` samples around the centre.
Window WindowFor(int count, const Plane& plane);

struct PlaneFigure {
  std::string title, subtitle, note;
  Plane values;  // NaN samples stay blank
  Window window;
  Axis x, y;
  const std::uint32_t (*map)[256];
  double low, high;  // values at the ends of the map
  std::vector<Tick> barTicks;
  std::string barLabel;
  View view;
  Side side;              // of the eye; marks nasal and temporal unless unknown
  bool scaleBar = false;  // a bar of a round number of arc minutes, on the plane
};

constexpr double kFigureHeight = 566.0;
constexpr double kPlaneFigureWidth = 600.0;
constexpr double kTitleSize = 24.0;
constexpr double kSmallSize = 16.0;

// Draws title and subtitle above a panel; the subtitle is shortened to the panel's width.
void DrawTitle(Surface& surface, Point corner, double width, const std::string& title, const std::string& subtitle,
               Colour colour = kFaintInk);

// Draws the name of the view centred below a panel, with nasal and temporal at its sides where they are known.
//   down  from the panel to the text's baseline
void DrawView(Surface& surface, const Box& panel, double down, View view, Side side);

void Draw(Surface& surface, Point corner, const PlaneFigure& figure);

// A window of a grey plane; 0.0 is black, 1.0 is white.
ColourPicture GreyWindow(const Plane& plane, Window window);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_PLANE_FIGURE_H
