// Draws the curves and the legend of the sections plot.
#include "drawing/sections_figure.h"

#include "base/number_text.h"
#include "drawing/canvas/axis.h"
#include "drawing/canvas/dashed_line.h"
#include "drawing/figures.h"
#include "drawing/plane_figure.h"

namespace orvanel::drawing {
namespace {

constexpr Box kPlot{88.0, 72.0, 632.0, 384.0};  // inside the figure
constexpr double kSamples = 128.0;              // steps of the sections that the plot is wide

struct Pen {
  const char* name;
  LineStyle style;
};

constexpr Pen kDiffraction{"diffraction limit", {{0xb4, 0xbb, 0xc3}, 6.0}};
constexpr Pen kHorizontal{"horizontal section", {{0x1f, 0x5f, 0xbf}, 3.5}};
constexpr Pen kVertical{"vertical section", {{0xe0, 0x5a, 0x1c}, 3.0, {9.0, 17.0}}};
constexpr Pen kMean{"mean of all directions", {{0x1a, 0x1a, 0x1a}, 3.5}};

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
    DrawLine(surface, {{plot.right() - 318.0, y - 6.0}, {plot.right() - 268.0, y - 6.0}}, curve.style);
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
  DrawLine(surface, Points(plot, results.diffractionLimit), kDiffraction.style);
  DrawLine(surface, Points(plot, results.rowSection), kHorizontal.style);
  DrawLine(surface, Points(plot, results.columnSection), kVertical.style);
  std::vector<Pen> pens = {kDiffraction, kHorizontal, kVertical};
  if (results.physical && !results.physical->mean.empty()) {
    DrawLine(surface, Points(plot, results.physical->mean), kMean.style);
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
