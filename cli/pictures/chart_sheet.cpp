// Layout of the chart.
#include "cli/pictures/chart_sheet.h"

#include <algorithm>

#include "cli/canvas.h"
#include "cli/number_text.h"
#include "cli/plane_figure.h"
#include "cli/sheet.h"

namespace orvanel::cli {
namespace {

constexpr double kMargin = 60.0;
constexpr double kPanel = 384.0;  // a whole number of pixels for a sample of most windows
constexpr double kThumbnail = 64.0;
constexpr double kCaptionHeight = 80.0;
constexpr double kLabelHeight = 34.0;
constexpr double kGutter = 28.0;
constexpr double kLeastContent = 4.0 * kPanel + 3.0 * kGutter;
constexpr double kCellHeight = kCaptionHeight + kPanel + kLabelHeight + kGutter;
constexpr double kHeadingHeight = 84.0;

// The window of a ring: with room for its blur.
Window RingWindow(const Ring& ring) {
  constexpr int kLeastRoom = 24;
  return WindowFor(ring.diameter + std::max(ring.diameter / 2, kLeastRoom));
}

// What part of the field the panel shows, on both scales.
std::string PanelText(const Ring& ring, Window window, const Scales& scales) {
  if (ring.diameter > ORVANEL_GRID_SIZE) {
    return std::to_string(ring.diameter) + " samples across a field of 256";
  }
  return std::to_string(window.count) + " samples, " + Text(window.count * scales.library.pitch.value(), 3) +
         "\u2032 (" + Text(window.count * scales.optical.pitch.value(), 3) + "\u2032 optical scale)";
}

void DrawRing(Canvas& canvas, Point corner, const Ring& ring, const Scales& scales) {
  const Window window = RingWindow(ring);
  const auto line = [&](double down, const std::string& text, const TextStyle& style) {
    canvas.Text({corner.x, corner.y + down}, canvas.Shortened(text, style, kPanel - kThumbnail - 8.0), style);
  };
  line(34.0, "Acuity " + Text(ring.request.acuity, 4) + ", gap " + Word(ring.request.gap), {kTitleSize, kInk, true});
  line(
      62.0,
      "drawn as " + Text(ring.effectiveAcuity, 3) + "; optical scale " + Text(Acuity(ring.diameter, scales.optical), 3),
      {kSmallSize, kFaintInk});
  const Box thumbnail{corner.x + kPanel - kThumbnail, corner.y + 6.0, kThumbnail, kThumbnail};
  canvas.Paste(thumbnail, GreyWindow(ring.original, window));
  canvas.Outline(thumbnail, 1.5, kFaintInk);
  DrawPanel(canvas, {corner.x, corner.y + kCaptionHeight, kPanel, kPanel}, GreyWindow(ring.seen, window),
            PanelText(ring, window, scales));
}

int Columns(const std::vector<Ring>& rings) {
  constexpr int kMostOfOneGap = 5;
  const auto first = [&rings](const Ring& ring) { return ring.request.acuity == rings[0].request.acuity; };
  const int gaps = static_cast<int>(std::count_if(rings.begin(), rings.end(), first));
  return gaps > 1 ? gaps : std::min(static_cast<int>(rings.size()), kMostOfOneGap);
}

}  // namespace

ColourPicture DrawChart(const Results& results) {
  const std::vector<Ring>& rings = results.simulation.rings;
  const Scales& scales = results.scales;
  const int columns = Columns(rings);
  const int rows = (static_cast<int>(rings.size()) + columns - 1) / columns;
  const double content = std::max(kLeastContent, columns * (kPanel + kGutter) - kGutter);
  const double top = kHeaderHeight + kHeadingHeight;
  Canvas canvas(content + 2.0 * kMargin, top + rows * kCellHeight + kMargin / 2.0, 1.0);

  DrawSheetHeader(canvas, {kMargin, 0.0, content, kHeaderHeight}, results);
  canvas.Fill({kMargin, kHeaderHeight, content, 2.0}, kGridLine);
  const TextStyle note{18.0, kInk};
  canvas.Text({kMargin, kHeaderHeight + 32.0},
              "Rings as seen, total light kept; small above each, the ring as drawn. Acuities and angles are on the "
              "library scale,",
              note);
  canvas.Text(
      {kMargin, kHeaderHeight + 58.0},
      "that of a pupil of twice the diameter; the optical scale is that of the pupil as stated, whose cut-off is " +
          Text(scales.opticalCutOff.value(), 4) + " cycles/degree; ratio " + Text(scales.ratio, 5) +
          ". \u2032 is a minute of arc.",
      note);
  int cell = 0;
  for (const Ring& ring : rings) {
    DrawRing(canvas, {kMargin + cell % columns * (kPanel + kGutter), top + cell / columns * kCellHeight}, ring, scales);
    ++cell;
  }
  return canvas.picture();
}

}  // namespace orvanel::cli
