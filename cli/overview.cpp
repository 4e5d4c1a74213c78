// Layout of the sheet: the eye, its optics in one row of figures, and below what it sees, two panels to a column.
#include "cli/overview.h"

#include <algorithm>
#include <sstream>

#include "cli/canvas.h"
#include "cli/figures.h"
#include "cli/number_text.h"
#include "cli/sections_figure.h"
#include "cli/sheet.h"

namespace orvanel::cli {
namespace {

constexpr double kMargin = 60.0;
constexpr double kContent = 4.0 * kPlaneFigureWidth + kSectionsFigureWidth + 24.0;
constexpr double kSheetWidth = kContent + 2.0 * kMargin;
constexpr double kWarningHeight = 30.0;
constexpr double kHeadingHeight = 76.0;

constexpr int kColumns = 7;
constexpr double kPanel = 408.0;
constexpr double kGutter = (kContent - kColumns * kPanel) / (kColumns - 1);
constexpr double kCaptionHeight = 66.0;  // above each panel's column
constexpr double kLabelHeight = 30.0;    // below each panel
constexpr double kCellHeight = kCaptionHeight + 2.0 * (kPanel + kLabelHeight) + 24.0;

constexpr double kBodySize = 19.0;
constexpr Colour kWarningInk{0xb0, 0x2a, 0x1c};

void DrawWarnings(Canvas& canvas, double y, const std::vector<std::string>& warnings) {
  const TextStyle style{kBodySize, kWarningInk, true};
  for (const std::string& warning : warnings) {
    canvas.Text({kMargin, y + 10.0}, canvas.Shortened("Warning: " + warning, style, kContent), style);
    y += kWarningHeight;
  }
}

void DrawHeading(Canvas& canvas, double y, const std::string& text) {
  canvas.Fill({kMargin, y, kContent, 2.0}, kGridLine);
  canvas.Text({kMargin, y + 48.0}, text, {32.0, kInk, true});
}

void DrawOptics(Canvas& canvas, double y, const Simulation& simulation, const Scales& scales) {
  Point corner{kMargin, y};
  for (const PlaneFigure& figure : {WavefrontFigure(simulation), PsfFigure(simulation, scales),
                                    PsfLogFigure(simulation, scales), MtfFigure(simulation, scales)}) {
    Draw(canvas, corner, figure);
    corner.x += kPlaneFigureWidth;
  }
  DrawSections(canvas, {corner.x + 24.0, corner.y}, simulation, scales);
}

// A paragraph of lines no wider than a panel; returns where the next would begin.
double DrawParagraph(Canvas& canvas, Point at, const std::string& text, const TextStyle& style) {
  const double leading = 1.42 * style.size;
  std::istringstream words(text);
  std::string line;
  for (std::string word; words >> word;) {
    const std::string longer = line.empty() ? word : line + " " + word;
    if (canvas.TextWidth(longer, style) <= kPanel) {
      line = longer;
      continue;
    }
    canvas.Text(at, line, style);
    at.y += leading;
    line = word;
  }
  canvas.Text(at, line, style);
  return at.y + 1.9 * leading;
}

void DrawScaleNote(Canvas& canvas, Point corner, const Simulation& simulation, const Scales& scales) {
  const std::string pupil = Text(simulation.pupil.value(), 4) + " mm";
  const TextStyle body{kBodySize, kInk};
  Point at{corner.x, corner.y + kBodySize};
  canvas.Text({corner.x, corner.y - kCaptionHeight + 30.0}, "Two scales", {kTitleSize, kInk, true});
  at.y = DrawParagraph(canvas, at,
                       "Library scale: the library takes the pupil value so that its frequencies, retinal lengths and "
                       "ring sizes (acuities) are those of a pupil of twice the diameter.",
                       body);
  at.y = DrawParagraph(canvas, at, "Optical scale: those of the " + pupil + " pupil as stated.", body);
  at.y = DrawParagraph(canvas, at,
                       "Frequency range " + Text(simulation.frequencyRange.value(), 5) +
                           " cycles/degree (library scale); optical cut-off " + Text(scales.opticalCutOff.value(), 5) +
                           " cycles/degree; ratio " + Text(scales.ratio, 5) + ".",
                       body);
  DrawParagraph(canvas, at,
                "The whole field of 256 samples is " + Text(FieldOf(scales.library).value(), 4) +
                    " arc minutes wide on the library scale and " + Text(FieldOf(scales.optical).value(), 4) +
                    " on the optical scale.",
                body);
}

Box PanelBox(double x, double y) { return {x, y, kPanel, kPanel}; }

void DrawCaption(Canvas& canvas, Point corner, const std::string& title, const std::string& subtitle) {
  canvas.Text({corner.x, corner.y + 30.0}, title, {kTitleSize, kInk, true});
  canvas.Text({corner.x, corner.y + 54.0}, subtitle, {kSmallSize, kFaintInk});
}

Point CellCorner(double top, int cell) {
  return {kMargin + cell % kColumns * (kPanel + kGutter), top + cell / kColumns * kCellHeight};
}

void DrawStar(Canvas& canvas, double top, const Simulation& simulation, const Scales& scales) {
  const double upper = kCaptionHeight, lower = kCaptionHeight + kPanel + kLabelHeight;
  const Point first = CellCorner(top, 0), second = CellCorner(top, 1);
  DrawCaption(canvas, first, "Sector star", "40 sectors, whole field");
  DrawPanel(canvas, PanelBox(first.x, first.y + upper), GreyWindow(simulation.starOriginal, kWholePlane), "original");
  DrawPanel(canvas, PanelBox(first.x, first.y + lower), GreyWindow(simulation.starStretched, kWholePlane),
            "as seen, stretched from black to white");
  DrawScaleNote(canvas, {second.x, second.y + upper}, simulation, scales);
  DrawPanel(canvas, PanelBox(second.x, second.y + lower), GreyWindow(simulation.starTotalLight, kWholePlane),
            "as seen, total light kept");
}

void DrawRings(Canvas& canvas, double top, const Simulation& simulation, const Scales& scales) {
  int largest = 0;
  for (const Ring& ring : simulation.rings) largest = std::max(largest, std::min(ring.diameter, ORVANEL_GRID_SIZE));
  const Window window = WindowFor(largest + largest / 2);
  const std::string part = window.count == ORVANEL_GRID_SIZE
                               ? std::string(", whole field")
                               : ", central " + std::to_string(window.count) + " of 256 samples";
  int cell = 2;
  for (const Ring& ring : simulation.rings) {
    const Point corner = CellCorner(top, cell++);
    DrawCaption(canvas, corner, "Acuity " + Text(ring.request.acuity, 4) + ", gap " + Word(ring.request.gap),
                "drawn as " + Text(ring.effectiveAcuity, 3) + ", " + std::to_string(ring.diameter) +
                    " samples; optical scale " + Text(Acuity(ring.diameter, scales.optical), 3));
    DrawPanel(canvas, PanelBox(corner.x, corner.y + kCaptionHeight), GreyWindow(ring.original, window),
              "original" + part);
    DrawPanel(canvas, PanelBox(corner.x, corner.y + kCaptionHeight + kPanel + kLabelHeight),
              GreyWindow(ring.seen, window), "as seen" + part);
  }
}

}  // namespace

ColourPicture DrawOverview(const Results& results) {
  const Simulation& simulation = results.simulation;
  const Scales& scales = results.scales;
  const std::vector<std::string>& warnings = results.warnings;
  const int cells = 2 + static_cast<int>(simulation.rings.size());
  const int rows = (cells + kColumns - 1) / kColumns;
  const double optics = kHeaderHeight + static_cast<double>(warnings.size()) * kWarningHeight;
  const double sights = optics + kHeadingHeight + kFigureHeight + 24.0;
  Canvas canvas(kSheetWidth, sights + kHeadingHeight + rows * kCellHeight + kMargin / 2.0, 1.0);

  DrawSheetHeader(canvas, {kMargin, 0.0, kContent, kHeaderHeight}, results);
  DrawWarnings(canvas, kHeaderHeight, warnings);
  DrawHeading(canvas, optics, "The eye's optics");
  DrawOptics(canvas, optics + kHeadingHeight, simulation, scales);
  DrawHeading(canvas, sights, "What it sees");
  DrawStar(canvas, sights + kHeadingHeight, simulation, scales);
  DrawRings(canvas, sights + kHeadingHeight, simulation, scales);
  return canvas.picture();
}

}  // namespace orvanel::cli
