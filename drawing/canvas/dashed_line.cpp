// Walks along the line, and draws each dash as a separate line.
#include "drawing/canvas/dashed_line.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace orvanel::drawing {

void DrawLine(Surface& surface, const std::vector<Point>& points, const LineStyle& style) {
  if (style.dashes.period <= 0.0) return surface.Line(points, style.width, style.colour);
  std::vector<Point> dash;
  double travelled = 0.0;
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    const Point a = points[i], b = points[i + 1];
    const double length = Distance(a, b);
    const int pieces =
        std::max(1, static_cast<int>(length));  // steps of about one unit, so that dashes end where they should
    for (int k = 0; k < pieces; ++k, travelled += length / pieces) {
      const double t = static_cast<double>(k) / pieces;
      if (std::fmod(travelled, style.dashes.period) < style.dashes.dash) {
        dash.push_back({a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)});
      } else {
        surface.Line(dash, style.width, style.colour);
        dash.clear();
      }
    }
  }
  surface.Line(dash, style.width, style.colour);
}

}  // namespace orvanel::drawing
