// Draws plane figures sample by sample.
#include "drawing/plane_figure.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "drawing/canvas/text_layout.h"

namespace orvanel::drawing {
namespace {

constexpr Colour kBlank{0xd8, 0xdc, 0xe0};
constexpr Box kPlot{100.0, 72.0, 384.0, 384.0};  // inside the figure
constexpr double kBarGap = 16.0, kBarWidth = 18.0;

// Visits the samples of a window in row-major order.
template <class Pixel>
ColourPicture Coloured(const Plane& plane, Window window, const Pixel& pixel) {
  ColourPicture picture{window.count, window.count, {}};
  for (int row = window.first; row < window.first + window.count; ++row) {
    for (int column = window.first; column < window.first + window.count; ++column) {
      picture.pixels.push_back(pixel(plane.At(row, column)));
    }
  }
  return picture;
}

ColourPicture Bar(const std::uint32_t (&map)[256]) {
  ColourPicture bar{1, 256, {}};
  for (int i = 0; i < 256; ++i) bar.pixels.push_back(ColourAt(map, (255 - i) / 255.0));
  return bar;
}

// A bar of a round number of arc minutes at the lower left, about a quarter as long as the plot is wide.
void DrawScaleBar(Surface& surface, const Box& plot, const Axis& x) {
  constexpr Colour kWhite{0xff, 0xff, 0xff};
  const double width = x.last - x.first;
  const double minutes = RoundTicks(0.0, width / 4.0, 1).back().value;
  if (!(minutes > 0.0)) return;
  const Point start{plot.x + 16.0, plot.bottom() - 18.0};
  surface.Fill({start.x, start.y, plot.width * minutes / width, 4.0}, kWhite);
  surface.Text({start.x, start.y - 8.0}, NumberText(minutes, 4) + "\u2032", {kLabelSize, kWhite, true});
}

}  // namespace

Window WholeOf(const Plane& plane) { return {0, plane.columns()}; }

Window WindowFor(int count, const Plane& plane) {
  const int whole = plane.columns();
  for (const int side : {32, 48, 64, 96, 128, 192}) {
    if (side >= count && side < whole) return {whole / 2 - side / 2, side};
  }
  return WholeOf(plane);
}

ColourPicture GreyWindow(const Plane& plane, Window window) {
  const GreyPicture grey = GreyPictureOf(plane);
  ColourPicture picture{window.count, window.count, {}};
  for (int row = window.first; row < window.first + window.count; ++row) {
    for (int column = window.first; column < window.first + window.count; ++column) {
      const std::uint8_t level = grey.pixels[static_cast<std::size_t>(row * plane.columns() + column)];
      picture.pixels.push_back({level, level, level});
    }
  }
  return picture;
}

void DrawTitle(Surface& surface, Point corner, double width, const std::string& title, const std::string& subtitle,
               Colour colour) {
  surface.Text({corner.x, corner.y + 30.0}, title, {kTitleSize, kInk, true});
  surface.Text({corner.x, corner.y + 56.0}, subtitle, Fitted(subtitle, {kSmallSize, colour}, width));
}

void DrawView(Surface& surface, const Box& panel, double down, View view, Side side) {
  constexpr double kGap = 14.0;
  const TextStyle style{kSmallSize, kFaintInk};
  const std::string caption(Caption(view));
  const auto [left, right] = SideWords(view, side);
  const double middle = panel.x + panel.width / 2.0, y = panel.bottom() + down;
  const double reach = surface.TextWidth(caption, style) / 2.0 + kGap;
  TextStyle centred = style, ending = style;
  centred.align = Align::kCentre;
  ending.align = Align::kRight;
  surface.Text({middle, y}, caption, centred);
  surface.Text({std::min(panel.x, middle - reach - surface.TextWidth(left, style)), y}, left, style);
  surface.Text({std::max(panel.right(), middle + reach + surface.TextWidth(right, style)), y}, right, ending);
}

void Draw(Surface& surface, Point corner, const PlaneFigure& figure) {
  DrawTitle(surface, {corner.x + kPlot.x, corner.y}, kPlot.width, figure.title, figure.subtitle);
  const Box plot{corner.x + kPlot.x, corner.y + kPlot.y, kPlot.width, kPlot.height};
  surface.Paste(plot, Coloured(figure.values, figure.window, [&figure](double value) {
                  if (std::isnan(value)) return kBlank;
                  return ColourAt(*figure.map, (value - figure.low) / (figure.high - figure.low));
                }));
  if (figure.scaleBar) DrawScaleBar(surface, plot, figure.x);
  surface.Outline(plot, 1.5, kInk);
  DrawAxis(surface, plot, Edge::kBottom, figure.x, 50.0);
  DrawAxis(surface, plot, Edge::kLeft, figure.y, 68.0);
  surface.Text({plot.x + plot.width / 2.0, plot.bottom() + 76.0}, figure.note,
               {kSmallSize, kFaintInk, false, Align::kCentre});
  DrawView(surface, plot, 100.0, figure.view, figure.side);

  const Box bar{plot.right() + kBarGap, plot.y, kBarWidth, plot.height};
  surface.Paste(bar, Bar(*figure.map));
  surface.Outline(bar, 1.5, kInk);
  DrawTicks(surface, bar, Edge::kRight, figure.high, figure.low, figure.barTicks);
  surface.Text({bar.x, corner.y + 56.0}, figure.barLabel, {kSmallSize, kInk});
}

}  // namespace orvanel::drawing
