// Draws the curves on one axis, which reaches to the higher cut-off.
#include "drawing/comparison/mtf_curves.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "drawing/canvas/axis.h"
#include "drawing/canvas/dashed_line.h"
#include "drawing/plane_figure.h"

namespace orvanel::drawing {
namespace {

constexpr Box kPlot{88.0, 72.0, 632.0, 384.0};  // inside the figure

struct MtfCurve {
  std::string name;
  const Curve* values;
  double step;  // cycles/degree
  LineStyle style;
};

std::vector<MtfCurve> CurvesOf(const Results& a, const Results& b) {
  constexpr Colour kGrey{0xb4, 0xbb, 0xc3}, kBlue{0x1f, 0x5f, 0xbf}, kOrange{0xe0, 0x5a, 0x1c};
  std::vector<MtfCurve> curves;
  const auto add = [&curves](std::string name, const Results& results, const Curve& values, LineStyle style) {
    if (!values.empty()) curves.push_back({std::move(name), &values, results.sectionStep.value(), style});
  };
  const bool onePupil = a.pupil == b.pupil;
  add(onePupil ? "diffraction limit" : "diffraction limit of A", a, a.diffractionLimit, {kGrey, 6.0});
  if (!onePupil) add("diffraction limit of B", b, b.diffractionLimit, {kGrey, 4.0, {9.0, 17.0}});
  add("A", a, a.physical->mean, {kBlue, 3.5});
  add("B", b, b.physical->mean, {kOrange, 3.0, {9.0, 17.0}});
  return curves;
}

}  // namespace

void DrawMtfCurves(Surface& surface, Point corner, const Results& a, const Results& b) {
  const bool isWhole = !a.physical->mean.empty() && !b.physical->mean.empty();
  DrawTitle(surface, {corner.x + kPlot.x, corner.y}, kPlot.width, "MTF of both eyes, mean of all directions",
            isWhole ? "A whole, B dashed" : "a curve is left out: the blur is too wide for it");
  const Box plot{corner.x + kPlot.x, corner.y + kPlot.y, kPlot.width, kPlot.height};
  for (const Tick& tick : RoundTicks(0.0, 1.0, 5)) {
    surface.Fill({plot.x, plot.bottom() - plot.height * tick.value - 0.5, plot.width, 1.0}, kGridLine);
  }
  const double last = std::max(a.physical->cutOff, b.physical->cutOff).value();
  double y = plot.y + 30.0;
  for (const MtfCurve& curve : CurvesOf(a, b)) {
    std::vector<Point> points;
    for (std::size_t i = 0; i < curve.values->size(); ++i) {
      points.push_back({plot.x + plot.width * std::min(1.0, static_cast<double>(i) * curve.step / last),
                        plot.bottom() - plot.height * (*curve.values)[i]});
    }
    DrawLine(surface, points, curve.style);
    DrawLine(surface, {{plot.right() - 318.0, y - 6.0}, {plot.right() - 268.0, y - 6.0}}, curve.style);
    surface.Text({plot.right() - 256.0, y}, curve.name, {kTickTextSize, kInk});
    y += 28.0;
  }
  surface.Outline(plot, 1.5, kInk);
  DrawAxis(surface, plot, Edge::kBottom, {0.0, last, "cycles/degree"}, 50.0);
  DrawAxis(surface, plot, Edge::kLeft, {1.0, 0.0, "modulation transfer"}, 60.0);
}

}  // namespace orvanel::drawing
