// Lays out the chart: rows of rings, their captions and a scale bar.
#include "drawing/chart_sheet.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "drawing/canvas/axis.h"
#include "drawing/canvas/canvas.h"
#include "drawing/plane_figure.h"
#include "drawing/sheet.h"
#include "evaluation/model_notes.h"
#include "evaluation/rings.h"

namespace orvanel::drawing {
namespace {

constexpr double kMargin = 60.0;
constexpr double kLargestPanel = 512.0;
constexpr double kCaptionHeight = 70.0;
constexpr double kGutter = 28.0;
constexpr double kMinContent = 1600.0;
constexpr double kBarHeight = 84.0;

// The window of a ring, with room for its blur.
Window RingWindow(const Ring& ring) {
  constexpr int kMinRoom = 24;
  return WindowFor(ring.diameter + std::max(ring.diameter / 2, kMinRoom), ring.seen);
}

// The cells of the rings, and the magnification, which is the same for all rings.
struct Grid {
  double perMinute;                     // pixels of an arc minute
  std::size_t columns;                  // cells in a row
  std::vector<double> widths, heights;  // of columns and rows

  double Panel(const Ring& ring) const { return perMinute * ring.pixel.value() * RingWindow(ring).count; }
};

std::size_t Columns(const std::vector<ShownRing>& rings) {
  constexpr std::size_t kMaxOfOneGap = 5;
  const double acuity = rings[0].ring->effectiveAcuity;
  const auto first = [acuity](const ShownRing& shown) { return shown.ring->effectiveAcuity == acuity; };
  const auto gaps = static_cast<std::size_t>(std::count_if(rings.begin(), rings.end(), first));
  return gaps > 1 ? gaps : std::min(rings.size(), kMaxOfOneGap);
}

// Where all samples have one size, a sample is a whole number of pixels.
double MagnificationOf(const std::vector<ShownRing>& rings) {
  double widest = 0.0, smallest = rings[0].ring->pixel.value(), largest = smallest;
  for (const ShownRing& shown : rings) {
    const double pixel = shown.ring->pixel.value();
    widest = std::max(widest, pixel * RingWindow(*shown.ring).count);
    smallest = std::min(smallest, pixel);
    largest = std::max(largest, pixel);
  }
  const double perMinute = kLargestPanel / widest;
  return smallest < largest ? perMinute : std::max(1.0, std::floor(perMinute * smallest)) / smallest;
}

Grid GridOf(const std::vector<ShownRing>& rings) {
  Grid grid{MagnificationOf(rings), Columns(rings), {}, {}};
  grid.widths.resize(grid.columns, kViewWidth);
  grid.heights.resize((rings.size() + grid.columns - 1) / grid.columns, 0.0);
  for (std::size_t i = 0; i < rings.size(); ++i) {
    const double panel = grid.Panel(*rings[i].ring);
    double &width = grid.widths[i % grid.columns], &height = grid.heights[i / grid.columns];
    width = std::max(width, panel);
    height = std::max(height, panel + kCaptionHeight + kPanelLabelHeight + kGutter);
  }
  return grid;
}

// Describes the part of the field that the panel shows.
std::string PanelText(const Ring& ring, Window window) {
  if (ring.diameter > ring.seen.columns()) {
    return std::to_string(ring.diameter) + " samples across a field of " + std::to_string(ring.seen.columns());
  }
  return std::to_string(window.count) + " samples, " + NumberText(window.count * ring.pixel.value(), 3) + "\u2032";
}

void DrawRing(Canvas& canvas, Point corner, double width, const Grid& grid, const ShownRing& shown,
              const SimulatedEye& simulated) {
  const Ring& ring = *shown.ring;
  const Window window = RingWindow(ring);
  const double panel = grid.Panel(ring);
  DrawTitle(canvas, corner, width, "Acuity " + NumberText(ring.effectiveAcuity, 3) + ", gap " + Word(ring.request.gap),
            RequestedText(shown) + "; " + NumberText(ring.diameter * ring.pixel.value(), 3) + "\u2032 wide",
            IsFarOff(ring) ? kWarningInk : kFaintInk);
  DrawPanel(canvas, {corner.x, corner.y + kCaptionHeight, panel, panel}, GreyWindow(ring.seen, window),
            PanelText(ring, window), simulated.eye.side);
}

}  // namespace

ColourPicture DrawChart(const SimulatedEye& simulated) {
  const std::vector<ShownRing> rings = ShownRings(simulated.results.rings);
  const Grid grid = GridOf(rings);
  double content = -kGutter, below = 0.0;
  for (const double width : grid.widths) content += width + kGutter;
  for (const double height : grid.heights) below += height;
  content = std::max(content, kMinContent);

  const SheetHead head(simulated, content);
  std::string text =
      "Retinal images of the rings. Acuities are those of the rings as drawn; \u2032 is a minute of arc.";
  for (const std::string& sentence : ModelNotes(simulated.results)) text += " " + sentence;
  const Paragraph note(text, {18.0, kInk}, content);
  const double bar = head.height() + 14.0 + note.height(), top = bar + kBarHeight;
  Canvas canvas(content + 2.0 * kMargin, top + below + kMargin / 2.0, 1.0);

  head.Draw(canvas, {kMargin, 0.0});
  canvas.Fill({kMargin, head.height(), content, 2.0}, kGridLine);
  note.Draw(canvas, {kMargin, head.height() + 14.0});
  DrawMinutes(canvas, {kMargin, bar + 34.0}, grid.perMinute, kViewWidth, "; all rings at this magnification");
  Point corner{kMargin, top};
  for (std::size_t i = 0; i < rings.size(); ++i) {
    const double width = grid.widths[i % grid.columns];
    DrawRing(canvas, corner, width, grid, rings[i], simulated);
    corner.x += width + kGutter;
    if (i % grid.columns + 1 == grid.columns) corner = {kMargin, corner.y + grid.heights[i / grid.columns]};
  }
  return canvas.picture();
}

}  // namespace orvanel::drawing
