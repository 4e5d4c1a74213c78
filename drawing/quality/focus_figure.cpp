// Lays out the plots one below the other, with a legend beside each.
#include "drawing/quality/focus_figure.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "base/number_text.h"
#include "drawing/canvas/axis.h"
#include "drawing/canvas/canvas.h"
#include "drawing/canvas/dashed_line.h"
#include "drawing/canvas/font.h"
#include "drawing/canvas/text_layout.h"
#include "drawing/plane_figure.h"
#include "drawing/sheet.h"

namespace orvanel::drawing {
namespace {

constexpr double kMargin = 48.0;
constexpr double kAxisWidth = 96.0, kPlotWidth = 760.0, kPlotHeight = 420.0, kAxisHeight = 84.0;
constexpr double kLegendGap = 28.0, kLegendWidth = 360.0, kLegendEntry = 84.0;
constexpr double kContent = kAxisWidth + kPlotWidth + kLegendGap + kLegendWidth;
constexpr int kDigits = 4;

// Colours that people with any colour vision can tell apart, and lines that differ without colour. Later lines are
// thinner and dashed, so that a curve below another one of the same values is seen.
constexpr LineStyle kLines[] = {{{0x00, 0x72, 0xb2}, 6.0},
                                {{0xd5, 0x5e, 0x00}, 4.0, {14.0, 22.0}},
                                {{0x00, 0x9e, 0x73}, 3.5},
                                {{0xcc, 0x79, 0xa7}, 3.5, {4.0, 10.0}},
                                {{0x22, 0x26, 0x2b}, 2.5, {20.0, 26.0}}};

// The curves of one plot.
using Curves = std::vector<const FocusCurve*>;

std::vector<Curves> PlotsOf(const ThroughFocus& focus) {
  std::vector<Curves> plots;
  for (const FocusCurve& curve : focus.curves) {
    const auto fits = std::find_if(plots.begin(), plots.end(), [&curve](const Curves& plot) {
      return std::string_view(plot.front()->column.unit) == curve.column.unit && plot.size() < std::size(kLines);
    });
    if (fits != plots.end()) {
      fits->push_back(&curve);
    } else {
      plots.push_back({&curve});
    }
  }
  return plots;
}

struct Scale {
  Box box;
  double first, last;  // lenses
  double low, high;    // values

  Point At(double lens, double value) const {
    return {box.x + box.width * (lens - first) / (last - first),
            box.bottom() - box.height * (value - low) / (high - low)};
  }
};

Scale ScaleOf(const Box& box, const ThroughFocus& focus, const Curves& curves) {
  constexpr double kAir = 0.06;
  Scale scale{box, focus.lenses.front(), focus.lenses.back(), 0.0, 0.0};
  if (scale.first == scale.last) scale.last += 1.0;
  for (const FocusCurve* const curve : curves) {
    for (const double value : curve->values) {
      if (!std::isfinite(value)) continue;
      scale.low = std::min(scale.low, value);
      scale.high = std::max(scale.high, value);
    }
    if (curve->optimum) scale.high = std::max(scale.high, curve->optimum->value);
  }
  if (scale.high == scale.low) scale.high = scale.low + 1.0;
  const double air = kAir * (scale.high - scale.low);
  scale.high += air;
  if (scale.low < 0.0) scale.low -= air;
  return scale;
}

// Samples, the optimum, and the ends of the depths: lines through all of them, broken where a value is missing.
void DrawCurve(Canvas& canvas, const Scale& scale, const ThroughFocus& focus, const FocusCurve& curve,
               const LineStyle& style) {
  struct Vertex {
    double lens, value;
  };
  std::vector<Vertex> vertices;
  for (std::size_t i = 0; i < focus.lenses.size(); ++i) vertices.push_back({focus.lenses[i], curve.values[i]});
  if (curve.optimum) {
    vertices.push_back({curve.optimum->lens, curve.optimum->value});
    for (const DepthOfFocus& depth : curve.optimum->depths) {
      if (depth.endsBelow) vertices.push_back({depth.from, depth.threshold});
      if (depth.endsAbove) vertices.push_back({depth.to, depth.threshold});
    }
  }
  std::stable_sort(vertices.begin(), vertices.end(), [](const Vertex& a, const Vertex& b) { return a.lens < b.lens; });
  std::vector<Point> points;
  for (const Vertex& vertex : vertices) {
    if (std::isfinite(vertex.value)) {
      points.push_back(scale.At(vertex.lens, vertex.value));
      continue;
    }
    DrawLine(canvas, points, style);
    points.clear();
  }
  DrawLine(canvas, points, style);
}

// The optimum as a square on the curve, the depths as bars at their thresholds. A bar has no end where the curve does
// not fall within the lenses.
void DrawMarks(Canvas& canvas, const Scale& scale, const FocusOptimum& optimum, Colour colour) {
  constexpr double kSquare = 13.0, kBar = 2.0, kEnd = 7.0;
  for (const DepthOfFocus& depth : optimum.depths) {
    const Point from = scale.At(depth.from, depth.threshold), to = scale.At(depth.to, depth.threshold);
    canvas.Line({from, to}, kBar, colour);
    for (const auto& [ends, at] : {std::pair{depth.endsBelow, from}, std::pair{depth.endsAbove, to}}) {
      if (ends) canvas.Line({{at.x, at.y - kEnd}, {at.x, at.y + kEnd}}, kBar, colour);
    }
  }
  const Point top = scale.At(optimum.lens, optimum.value);
  canvas.Fill({top.x - kSquare / 2.0, top.y - kSquare / 2.0, kSquare, kSquare}, kPaper);
  canvas.Outline({top.x - kSquare / 2.0 + 3.0, top.y - kSquare / 2.0 + 3.0, kSquare - 6.0, kSquare - 6.0}, 3.0, colour);
}

std::string DepthText(const DepthOfFocus& depth, bool higherIsBetter) {
  return (higherIsBetter ? NumberText(100.0 * depth.share, 3) + " %: "
                         : "\u00d7" + NumberText(1.0 / depth.share, 3) + ": ") +
         (depth.isWhole() ? "" : "more than ") + NumberText(depth.width(), 3) + " D";
}

void DrawLegend(Canvas& canvas, Point corner, const FocusCurve& curve, const LineStyle& style) {
  constexpr double kSample = 54.0, kGap = 12.0, kLeading = 23.0;
  DrawLine(canvas, {{corner.x, corner.y + 12.0}, {corner.x + kSample, corner.y + 12.0}}, style);
  const double x = corner.x + kSample + kGap, width = kLegendWidth - kSample - kGap;
  double y = corner.y + 18.0;
  const auto line = [&](const std::string& text, bool bold) {
    const TextStyle plain = Fitted(text, {kTickTextSize, kInk, bold}, width);
    canvas.Text({x, y}, text, plain);
    y += kLeading;
  };
  line(curve.column.name, true);
  if (!curve.optimum) return line("no value", false);
  const FocusOptimum& best = *curve.optimum;
  line("best " + NumberText(best.value, kDigits) + " with " + NumberText(best.lens, 3) + " D" +
           (best.atEdge ? ", the last lens" : ""),
       false);
  std::string depths;
  for (const DepthOfFocus& depth : best.depths) {
    depths += (depths.empty() ? "" : "; ") + DepthText(depth, curve.column.higherIsBetter);
  }
  line(depths.empty() ? "no depth of focus" : depths, false);
}

void DrawPlot(Canvas& canvas, Point corner, const ThroughFocus& focus, const Curves& curves) {
  const Box box{corner.x + kAxisWidth, corner.y, kPlotWidth, kPlotHeight};
  const Scale scale = ScaleOf(box, focus, curves);
  for (const Tick& tick : RoundTicks(scale.low, scale.high, 7)) {
    canvas.Fill({box.x, scale.At(scale.first, tick.value).y - 0.5, box.width, 1.0}, kGridLine);
  }
  for (const Tick& tick : RoundTicks(scale.first, scale.last, 7)) {
    canvas.Fill({scale.At(tick.value, scale.low).x - 0.5, box.y, 1.0, box.height}, kGridLine);
  }
  for (std::size_t i = 0; i < curves.size(); ++i) DrawCurve(canvas, scale, focus, *curves[i], kLines[i]);
  for (std::size_t i = 0; i < curves.size(); ++i) {
    if (curves[i]->optimum) DrawMarks(canvas, scale, *curves[i]->optimum, kLines[i].colour);
    DrawLegend(canvas, {box.right() + kLegendGap, box.y + kLegendEntry * static_cast<double>(i)}, *curves[i],
               kLines[i]);
  }
  canvas.Outline(box, 1.5, kInk);
  const std::string unit = curves.front()->column.unit;
  DrawAxis(canvas, box, Edge::kBottom, {scale.first, scale.last, "lens before the eye, dioptres"}, 56.0);
  DrawAxis(canvas, box, Edge::kLeft, {scale.high, scale.low, unit == "1" ? "metric, a ratio" : "metric, " + unit},
           72.0);
}

}  // namespace

ColourPicture DrawFocusSheet(const FocusSheet& sheet, const ThroughFocus& focus) {
  const std::vector<Curves> plots = PlotsOf(focus);
  const std::string title = IsDrawable(sheet.name) ? sheet.name : "An eye";
  const Paragraph name(title, Fitted(title, {32.0, kInk, true}, kContent), kContent, 2);
  const Paragraph conditions(sheet.conditions, {19.0, kInk}, kContent);
  const Paragraph note(
      "A plus lens makes the eye short-sighted. Squares mark the best focus, bars the depth of focus at each share of "
      "the best value. A bar without an end goes on outside of the range.",
      {kSmallSize, kFaintInk}, kContent);
  std::vector<Paragraph> warnings;
  double height = 0.0;
  for (const std::string& text : sheet.warnings) {
    warnings.emplace_back("Warning: " + text, TextStyle{kSmallSize, kWarningInk}, kContent);
    height += warnings.back().height();
  }
  const double top = kMargin + name.height() + conditions.height() + 24.0;
  const double plot = kPlotHeight + kAxisHeight;
  Canvas canvas(kContent + 2.0 * kMargin,
                top + static_cast<double>(plots.size()) * plot + note.height() + height + kMargin, 1.0);
  name.Draw(canvas, {kMargin, kMargin});
  conditions.Draw(canvas, {kMargin, kMargin + name.height()});
  double y = top;
  for (const Curves& curves : plots) {
    DrawPlot(canvas, {kMargin, y}, focus, curves);
    y += plot;
  }
  note.Draw(canvas, {kMargin, y});
  y += note.height();
  for (const Paragraph& warning : warnings) {
    warning.Draw(canvas, {kMargin, y});
    y += warning.height();
  }
  return canvas.picture();
}

}  // namespace orvanel::drawing
