// Lays out the overview: the eye, a row of optics figures, and the retinal images, two panels to a column.
#include "drawing/overview.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "drawing/canvas/canvas.h"
#include "drawing/figures.h"
#include "drawing/letters_sheet.h"
#include "drawing/quality_table.h"
#include "drawing/sections_figure.h"
#include "drawing/sheet.h"
#include "evaluation/model_notes.h"
#include "evaluation/rings.h"

namespace orvanel::drawing {
namespace {

constexpr double kMargin = 60.0;
constexpr double kContent = 4.0 * kPlaneFigureWidth + kSectionsFigureWidth + 24.0;
constexpr double kSheetWidth = kContent + 2.0 * kMargin;
constexpr double kHeadingHeight = 76.0;

constexpr int kColumns = 7;
constexpr double kPanel = 408.0;
constexpr double kGutter = (kContent - kColumns * kPanel) / (kColumns - 1);
constexpr double kCaptionHeight = 66.0;  // above each panel's column
constexpr double kCellHeight = kCaptionHeight + 2.0 * (kPanel + kPanelLabelHeight) + 24.0;

constexpr double kBodySize = 19.0;

std::vector<Paragraph> WarningParagraphs(const std::vector<std::string>& warnings) {
  std::vector<Paragraph> paragraphs;
  const TextStyle style{kBodySize, kWarningInk, true};
  for (const std::string& warning : warnings) paragraphs.emplace_back("Warning: " + warning, style, kContent);
  return paragraphs;
}

double HeightOf(const std::vector<Paragraph>& paragraphs) {
  double height = 0.0;
  for (const Paragraph& paragraph : paragraphs) height += paragraph.height();
  return height;
}

void DrawBelow(Canvas& canvas, Point corner, const std::vector<Paragraph>& paragraphs) {
  for (const Paragraph& paragraph : paragraphs) {
    paragraph.Draw(canvas, corner);
    corner.y += paragraph.height();
  }
}

void DrawHeading(Canvas& canvas, double y, const std::string& text) {
  canvas.Fill({kMargin, y, kContent, 2.0}, kGridLine);
  canvas.Text({kMargin, y + 48.0}, text, {32.0, kInk, true});
}

void DrawOptics(Canvas& canvas, double y, const SimulatedEye& simulated) {
  const Results& results = simulated.results;
  const Side side = simulated.eye.side;
  Point corner{kMargin, y};
  for (const PlaneFigure& figure :
       {WavefrontFigure(results, side), PsfFigure(results, side), PsfLogFigure(results, side), MtfFigure(results)}) {
    Draw(canvas, corner, figure);
    corner.x += kPlaneFigureWidth;
  }
  DrawSections(canvas, {corner.x + 24.0, corner.y}, results);
}

// Returns the lower end.
double DrawModelNotes(Canvas& canvas, Point corner, const Results& results) {
  const TextStyle body{kBodySize, kInk};
  canvas.Text({corner.x, corner.y - kCaptionHeight + 30.0}, "About these numbers", {kTitleSize, kInk, true});
  for (const std::string& text : ModelNotes(results)) {
    const Paragraph paragraph(text, body, kPanel);
    paragraph.Draw(canvas, corner);
    corner.y += paragraph.height() + kBodySize;
  }
  return corner.y;
}

Box PanelBox(double x, double y) { return {x, y, kPanel, kPanel}; }

Point CellCorner(double top, int cell) {
  return {kMargin + cell % kColumns * (kPanel + kGutter), top + cell / kColumns * kCellHeight};
}

void DrawStar(Canvas& canvas, double top, const SimulatedEye& simulated) {
  const Results& results = simulated.results;
  const Side side = simulated.eye.side;
  const double upper = kCaptionHeight, lower = kCaptionHeight + kPanel + kPanelLabelHeight;
  const Point first = CellCorner(top, 0), second = CellCorner(top, 1);
  DrawTitle(canvas, first, kPanel, "Sector star", "40 sectors, whole field");
  DrawPanel(canvas, PanelBox(first.x, first.y + upper),
            GreyWindow(results.star.original, WholeOf(results.star.original)), "original", side);
  const double notesEnd = DrawModelNotes(canvas, {second.x, second.y + upper}, results);
  const double tableTop = std::max(notesEnd, second.y + upper + kPanel - kCaptionHeight);
  DrawQualityTable(canvas, {second.x, tableTop, kPanel, second.y + kCellHeight - kPanelLabelHeight - tableTop},
                   simulated);
  // The classic model alone stretches its image.
  const bool stretched = !results.star.stretched.empty();
  const Plane& below = stretched ? results.star.stretched : results.star.totalLight;
  DrawPanel(canvas, PanelBox(first.x, first.y + lower), GreyWindow(below, WholeOf(below)),
            stretched ? "retinal image, stretched from black to white" : "retinal image", side);
  if (!stretched) return;
  DrawPanel(canvas, PanelBox(second.x, second.y + lower),
            GreyWindow(results.star.totalLight, WholeOf(results.star.totalLight)), "retinal image, total light kept",
            side);
}

void DrawRings(Canvas& canvas, double top, const SimulatedEye& simulated, const std::vector<ShownRing>& rings) {
  if (rings.empty()) return;
  const Plane& field = rings.front().ring->seen;
  int largest = 0;
  for (const ShownRing& shown : rings) largest = std::max(largest, std::min(shown.ring->diameter, field.columns()));
  const Window window = WindowFor(largest + largest / 2, field);
  const std::string part = window.count == field.columns() ? std::string(", whole field")
                                                           : ", central " + std::to_string(window.count) + " of " +
                                                                 std::to_string(field.columns()) + " samples";
  int cell = 2;
  for (const ShownRing& shown : rings) {
    const Ring& ring = *shown.ring;
    const Point corner = CellCorner(top, cell++);
    DrawTitle(canvas, corner, kPanel,
              "Acuity " + NumberText(ring.effectiveAcuity, 3) + ", gap " + Word(ring.request.gap),
              RequestedText(shown) + "; " + NumberText(ring.diameter * ring.pixel.value(), 3) + "\u2032 wide",
              IsFarOff(ring) ? kWarningInk : kFaintInk);
    DrawPanel(canvas, PanelBox(corner.x, corner.y + kCaptionHeight), GreyWindow(ring.original, window),
              "original" + part, simulated.eye.side);
    DrawPanel(canvas, PanelBox(corner.x, corner.y + kCaptionHeight + kPanel + kPanelLabelHeight),
              GreyWindow(ring.seen, window), "retinal image" + part, simulated.eye.side);
  }
}

// The sizes of the overview, of those of the sheet of letters.
constexpr double kOverviewSizes[] = {0.3, 0.1, 0.0};

void DrawLetterRow(Canvas& canvas, double y, const SimulatedEye& simulated) {
  const double step = (kContent - kLetterLineWidth) / (std::size(kOverviewSizes) - 1.0);
  double x = kMargin;
  for (const double size : kOverviewSizes) {
    for (const LetterLine& line : simulated.letters->lines) {
      if (line.logMar == size) DrawLetterCell(canvas, {x, y}, line, simulated);
    }
    x += step;
  }
}

}  // namespace

ColourPicture DrawOverview(const SimulatedEye& simulated) {
  const std::vector<ShownRing> rings = ShownRings(simulated.results.rings);
  const SheetHead head(simulated, kContent);
  const std::vector<Paragraph> warnings = WarningParagraphs(simulated.warnings);
  const int cells = 2 + static_cast<int>(rings.size());
  const int rows = (cells + kColumns - 1) / kColumns;
  const double optics = head.height() + HeightOf(warnings);
  const double sights = optics + kHeadingHeight + kFigureHeight + 24.0;
  const double letters = sights + kHeadingHeight + rows * kCellHeight;
  const double lettersHeight = simulated.letters ? kHeadingHeight + kLetterCellHeight : 0.0;
  Canvas canvas(kSheetWidth, letters + lettersHeight + kMargin / 2.0, 1.0);

  head.Draw(canvas, {kMargin, 0.0});
  DrawBelow(canvas, {kMargin, head.height() - 10.0}, warnings);
  DrawHeading(canvas, optics, "The eye's optics");
  DrawOptics(canvas, optics + kHeadingHeight, simulated);
  DrawHeading(canvas, sights, "Retinal images");
  DrawStar(canvas, sights + kHeadingHeight, simulated);
  DrawRings(canvas, sights + kHeadingHeight, simulated, rings);
  if (simulated.letters) {
    DrawHeading(canvas, letters, "Letters");
    DrawLetterRow(canvas, letters + kHeadingHeight, simulated);
  }
  return canvas.picture();
}

}  // namespace orvanel::drawing
