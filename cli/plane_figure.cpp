// Drawing of plane figures.
#include "cli/plane_figure.h"

#include <cmath>

namespace orvanel::cli {
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
      picture.pixels.push_back(pixel(plane[static_cast<std::size_t>(row * ORVANEL_GRID_SIZE + column)]));
    }
  }
  return picture;
}

ColourPicture Bar(const std::uint32_t (&map)[256]) {
  ColourPicture bar{1, 256, {}};
  for (int i = 0; i < 256; ++i) bar.pixels.push_back(ColourAt(map, (255 - i) / 255.0));
  return bar;
}

}  // namespace

Window WindowFor(int count) {
  for (const int side : {32, 48, 64, 96, 128, 192}) {
    if (side >= count) return {ORVANEL_GRID_SIZE / 2 - side / 2, side};
  }
  return kWholePlane;
}

ColourPicture GreyWindow(const Plane& plane, Window window) {
  const GreyPicture grey = GreyPictureOf(plane);
  ColourPicture picture{window.count, window.count, {}};
  for (int row = window.first; row < window.first + window.count; ++row) {
    for (int column = window.first; column < window.first + window.count; ++column) {
      const std::uint8_t level = grey.pixels[static_cast<std::size_t>(row * ORVANEL_GRID_SIZE + column)];
      picture.pixels.push_back({level, level, level});
    }
  }
  return picture;
}

void DrawTitle(Canvas& canvas, Point corner, double x, const std::string& title, const std::string& subtitle) {
  canvas.Text({corner.x + x, corner.y + 30.0}, title, {kTitleSize, kInk, true});
  canvas.Text({corner.x + x, corner.y + 56.0}, subtitle, {kSmallSize, kFaintInk});
}

void Draw(Canvas& canvas, Point corner, const PlaneFigure& figure) {
  DrawTitle(canvas, corner, kPlot.x, figure.title, figure.subtitle);
  const Box plot{corner.x + kPlot.x, corner.y + kPlot.y, kPlot.width, kPlot.height};
  canvas.Paste(plot, Coloured(figure.values, figure.window, [&figure](double value) {
                 if (std::isnan(value)) return kBlank;
                 return ColourAt(*figure.map, (value - figure.low) / (figure.high - figure.low));
               }));
  canvas.Outline(plot, 1.5, kInk);
  DrawAxis(canvas, plot, Edge::kBottom, figure.x, 50.0);
  DrawAxis(canvas, plot, Edge::kLeft, figure.y, 68.0);
  canvas.Text({plot.x + plot.width / 2.0, plot.bottom() + 76.0}, figure.note,
              {kSmallSize, kFaintInk, false, Align::kCentre});

  const Box bar{plot.right() + kBarGap, plot.y, kBarWidth, plot.height};
  canvas.Paste(bar, Bar(*figure.map));
  canvas.Outline(bar, 1.5, kInk);
  DrawTicks(canvas, bar, Edge::kRight, figure.high, figure.low, figure.barTicks);
  canvas.Text({bar.x, corner.y + 56.0}, figure.barLabel, {kSmallSize, kInk});
}

}  // namespace orvanel::cli
