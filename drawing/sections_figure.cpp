// Draws the curves, dashes and legend of the sections plot.
#include "drawing/sections_figure.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "drawing/canvas/axis.h"
#include "drawing/figures.h"
#include "drawing/plane_figure.h"

namespace orvanel::drawing {
namespace {

constexpr Box kPlot{88.0, 72.0, 632.0, 384.0};  // inside the figure
constexpr double kSamples = 128.0;              // steps of the sections that the plot is wide

struct Pen {
  const char* name;
  Colour colour;
  double lineWidth;
  bool dashed;
};

constexpr Pen kDiffraction{"diffraction limit", {0xb4, 0xbb, 0xc3}, 6.0, false};
constexpr Pen kHorizontal{"horizontal section", {0x1f, 0x5f, 0xbf}, 3.5, false};
constexpr Pen kVertical{"vertical section", {0xe0, 0x5a, 0x1c}, 3.0, true};
constexpr Pen kMean{"mean of all directions", {0x1a, 0x1a, 0x1a}, 3.5, false};

// Draws the line, or its dashes of equal length.
void Trace(Surface& surface, const std::vector<Point>& points, const Pen& curve) {
  if (!curve.dashed) return surface.Line(points, curve.lineWidth, curve.colour);
  constexpr double kDash = 9.0, kPeriod = 17.0;
  std::vector<Point> dash;
  double travelled = 0.0;
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    const Point a = points[i], b = points[i + 1];
    const double length = Distance(a, b);
    const int pieces =
        std::max(1, static_cast<int>(length));  // steps of about one unit, so that dashes end where they should
    for (int k = 0; k < pieces; ++k, travelled += length / pieces) {
      const double t = static_cast<double>(k) / pieces;
      if (std::fmod(travelled, kPeriod) < kDash) {
        dash.push_back({a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)});
      } else {
        surface.Line(dash, curve.lineWidth, curve.colour);
        dash.clear();
      }
    }
  }
  surface.Line(dash, curve.lineWidth, curve.colour);
}

std::vector<Point> Points(const Box& plot, const Curve& section) {
  std::vector<Point> points;
  for (std::size_t i = 0; i < section.size(); ++i) {
    points.push_back(
        {plot.x + plot.width * static_cast<double>(i) / kSamples, plot.bottom() - plot.height * section[i]});
  }
  return points;
}

// Where the sections end: the cut-off of the pupil, or the range of the classic model.
CyclesPerDegree CutOffOf(const Results& results) {
  return results.physical ? results.physical->cutOff : results.scales.frequencyRange;
}

void DrawLegend(Surface& surface, const Box& plot, const std::vector<Pen>& pens) {
  double y = plot.y + 30.0;
  for (const Pen& curve : pens) {
    Trace(surface, {{plot.right() - 318.0, y - 6.0}, {plot.right() - 268.0, y - 6.0}}, curve);
    surface.Text({plot.right() - 256.0, y}, curve.name, {kTickTextSize, kInk});
    y += 28.0;
  }
}

}  // namespace

void DrawSections(Surface& surface, Point corner, const Results& results) {
  DrawTitle(surface, {corner.x + kPlot.x, corner.y}, kPlot.width, "MTF sections",
            NumberText(results.pupil.value(), 4) + " mm pupil, " + ModelText(results) + "; cut-off " +
                NumberText(CutOffOf(results).value(), 5) + " cycles/degree");
  const Box plot{corner.x + kPlot.x, corner.y + kPlot.y, kPlot.width, kPlot.height};
  for (const Tick& tick : RoundTicks(0.0, 1.0, 5)) {
    surface.Fill({plot.x, plot.bottom() - plot.height * tick.value - 0.5, plot.width, 1.0}, kGridLine);
  }
  Trace(surface, Points(plot, results.diffractionLimit), kDiffraction);
  Trace(surface, Points(plot, results.rowSection), kHorizontal);
  Trace(surface, Points(plot, results.columnSection), kVertical);
  std::vector<Pen> pens = {kDiffraction, kHorizontal, kVertical};
  if (results.physical && !results.physical->mean.empty()) {
    Trace(surface, Points(plot, results.physical->mean), kMean);
    pens.push_back(kMean);
  }
  DrawLegend(surface, plot, pens);
  surface.Outline(plot, 1.5, kInk);

  DrawAxis(surface, plot, Edge::kBottom, {0.0, kSamples * results.sectionStep.value(), "cycles/degree"}, 50.0);
  DrawAxis(surface, plot, Edge::kLeft, {1.0, 0.0, "modulation transfer"}, 60.0);
  surface.Text({plot.x + plot.width / 2.0, plot.bottom() + 100.0}, "view: retina and patient alike",
               {kSmallSize, kFaintInk, false, Align::kCentre});
}

}  // namespace orvanel::drawing
