// Lays out the sheet: heads, a row for each kind of figure, letters, and the table of metrics.
#include "drawing/comparison/comparison_sheet.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "drawing/canvas/canvas.h"
#include "drawing/canvas/text_layout.h"
#include "drawing/comparison/mtf_curves.h"
#include "drawing/figures.h"
#include "drawing/letters_sheet.h"
#include "drawing/sheet.h"
#include "drawing/strip_sheet.h"
#include "evaluation/model_notes.h"
#include "evaluation/quality_notes.h"

namespace orvanel::drawing {
namespace {

constexpr double kMargin = 60.0;
constexpr double kLineWidth = 660.0, kLineHeight = 180.0;  // of letters: 2 pixels of the canvas for a pixel
constexpr double kColumn = kLineWidth + 60.0;
constexpr double kContent = 2.0 * kColumn + kMtfCurvesWidth;
constexpr double kRowHeight = kFigureHeight + 20.0;
constexpr double kTextSize = 19.0, kLeading = 1.4;
constexpr double kLetterTitle = 66.0;
constexpr double kLetterRow = kLetterTitle + kLineHeight + kBelowLetters + 10.0;
constexpr double kLetterSizesShown[] = {0.3, 0.1, 0.0};  // logMAR

double ColumnX(int column) { return kMargin + column * kColumn; }

std::string Digits(double value) {
  constexpr int kDigits = 4;
  return std::isfinite(value) ? NumberText(value + 0.0, kDigits) : "\u2013";
}

// Paragraphs of one column, one below the other.
class Stack {
 public:
  explicit Stack(double width) : width_(width) {}
  void Add(const std::string& text, const TextStyle& style) { paragraphs_.emplace_back(text, style, width_); }
  double height() const {
    double height = 0.0;
    for (const Paragraph& paragraph : paragraphs_) height += paragraph.height() + kGap;
    return height;
  }
  void Draw(Canvas& canvas, Point corner) const {
    for (const Paragraph& paragraph : paragraphs_) {
      paragraph.Draw(canvas, corner);
      corner.y += paragraph.height() + kGap;
    }
  }

 private:
  static constexpr double kGap = 6.0;
  double width_;
  std::vector<Paragraph> paragraphs_;
};

Stack HeadOf(const std::string& label, const SimulatedEye& simulated) {
  Stack stack(kLineWidth);
  const HeadTexts texts = HeadTextsOf(simulated);
  stack.Add(label + ": " + texts.name, {32.0, kInk, true});
  stack.Add(texts.numbers, {kTextSize, kInk});
  stack.Add(texts.lens, {kTextSize, kInk});
  stack.Add(texts.origin, {16.0, kFaintInk});
  for (const std::string& warning : simulated.warnings) stack.Add("Warning: " + warning, {16.0, kWarningInk, true});
  return stack;
}

// Gives figures of one kind the colour scale that reaches highest. Figures with samples of one size get the largest of
// their windows.
void ShareScale(std::vector<PlaneFigure>& figures) {
  const auto byHighest = [](const PlaneFigure& a, const PlaneFigure& b) { return a.high < b.high; };
  const auto bySize = [](const PlaneFigure& a, const PlaneFigure& b) { return a.window.count < b.window.count; };
  const PlaneFigure highest = *std::max_element(figures.begin(), figures.end(), byHighest);
  const PlaneFigure largest = *std::max_element(figures.begin(), figures.end(), bySize);
  const auto pitch = [](const PlaneFigure& figure) { return (figure.x.last - figure.x.first) / figure.window.count; };
  for (PlaneFigure& figure : figures) {
    figure.low = highest.low;
    figure.high = highest.high;
    figure.barTicks = highest.barTicks;
    constexpr double kRounding = 1e-9;
    if (std::abs(pitch(figure) / pitch(largest) - 1.0) > kRounding) continue;
    figure.window = largest.window;
    figure.x = largest.x;
    figure.y = largest.y;
  }
}

struct SharedFigures {
  std::vector<PlaneFigure> wavefronts;  // of A, of B, and of their difference where it exists
  std::vector<PlaneFigure> psfs, mtfs;
};

SharedFigures FiguresOf(const Comparison& comparison) {
  const SimulatedEye &a = comparison.a, &b = comparison.b;
  SharedFigures figures;
  figures.wavefronts = {WavefrontFigure(a.results, a.eye.side), WavefrontFigure(b.results, b.eye.side)};
  if (comparison.hasOnePupil()) {
    Results change = b.results;
    Plane& map = change.wavefront.map;
    double highest = -std::numeric_limits<double>::infinity(), lowest = -highest;  // mm
    for (std::size_t i = 0; i < map.size(); ++i) {
      map[i] -= a.results.wavefront.map[i];
      if (std::isnan(map[i])) continue;  // outside the pupil
      lowest = std::min(lowest, map[i]);
      highest = std::max(highest, map[i]);
    }
    change.wavefront.rms = *comparison.differenceRms;
    change.wavefront.peakToValley = ToMicrometres(Millimetres(highest - lowest));
    figures.wavefronts.push_back(WavefrontFigure(change, a.eye.side == b.eye.side ? b.eye.side : Side::kUnknown));
    figures.wavefronts.back().title = "Difference of the wavefronts, B \u2212 A";
  }
  ShareScale(figures.wavefronts);
  figures.psfs = {PsfFigure(a.results, a.eye.side), PsfFigure(b.results, b.eye.side)};
  ShareScale(figures.psfs);
  figures.mtfs = {MtfFigure(a.results), MtfFigure(b.results)};
  return figures;
}

Stack DifferenceHead(const Comparison& comparison, const SharedFigures& figures) {
  Stack stack(kMtfCurvesWidth);
  stack.Add("Differences, B \u2212 A", {32.0, kInk, true});
  stack.Add("Both columns have the same colour scales: wavefronts \u00b1" + NumberText(figures.wavefronts[0].high, 3) +
                " \u00b5m, PSF 0 to " + NumberText(figures.psfs[0].high, 3) +
                " of the peak without aberration, MTF 0 to 1. Letters have one magnification, from black to white.",
            {kTextSize, kInk});
  for (const std::string& note : comparison.notes) stack.Add(note, {16.0, kWarningInk});
  return stack;
}

struct TableColumns {
  double description, a, b, difference;  // from the left end
};

void DrawTableHead(Canvas& canvas, Point corner, const TableColumns& columns) {
  const TextStyle style{kSmallSize, kFaintInk};
  canvas.Text({corner.x + columns.a, corner.y}, "A", style);
  canvas.Text({corner.x + columns.b, corner.y}, "B", style);
  canvas.Text({corner.x + columns.difference, corner.y}, "B \u2212 A", style);
}

// Returns the lower end.
double DrawTable(Canvas& canvas, Point corner, const TableColumns& columns, double descriptionWidth,
                 const std::vector<ComparedNumber>& rows) {
  const TextStyle style{kTextSize, kInk};
  double y = corner.y;
  for (const ComparedNumber& row : rows) {
    y += kLeading * kTextSize;
    canvas.Text({corner.x, y}, row.name + (row.unit == "1" ? "" : ", " + (row.unit == "um" ? "\u00b5m" : row.unit)),
                {kTextSize, kInk, true});
    canvas.Text({corner.x + columns.description, y}, row.description,
                Fitted(row.description, {kSmallSize, kFaintInk}, descriptionWidth));
    canvas.Text({corner.x + columns.a, y}, Digits(row.a), style);
    canvas.Text({corner.x + columns.b, y}, Digits(row.b), style);
    canvas.Text({corner.x + columns.difference, y}, Digits(row.difference), style);
  }
  return y;
}

// Refraction, RMS and the coefficients that differ most, in the height of a figure.
void DrawNumbers(Canvas& canvas, Point corner, const Comparison& comparison) {
  constexpr std::size_t kMostCoefficients = 10;
  constexpr TableColumns kPlaces{145.0, 390.0, 510.0, 630.0};
  constexpr double kDescription = 235.0;
  DrawTitle(canvas, corner, kMtfCurvesWidth, "Refraction and coefficients",
            comparison.hasOnePupil() ? "the coefficients of orders 2 and above that differ most"
                                     : "the largest coefficients of orders 2 and above");
  DrawTableHead(canvas, {corner.x, corner.y + 92.0}, kPlaces);
  corner.y += 92.0;
  for (const std::vector<ComparedNumber>& rows :
       {comparison.refractions, comparison.rms, LargestOf(comparison.coefficients, kMostCoefficients)}) {
    corner.y = DrawTable(canvas, corner, kPlaces, kDescription, rows) + 8.0;
  }
}

void DrawMetrics(Canvas& canvas, Point corner, const Comparison& comparison) {
  constexpr TableColumns kPlaces{700.0, 220.0, 380.0, 540.0};
  canvas.Text({corner.x, corner.y + 30.0}, "Metrics of image quality", {kTitleSize, kInk, true});
  DrawTableHead(canvas, {corner.x, corner.y + 62.0}, kPlaces);
  const double y =
      DrawTable(canvas, {corner.x, corner.y + 62.0}, kPlaces, kContent - kPlaces.description, comparison.metrics);
  Stack conditions(kContent);
  for (const std::string& sentence : QualityConditions(comparison.metricRequest)) {
    conditions.Add(sentence, {kSmallSize, kFaintInk});
  }
  conditions.Draw(canvas, {corner.x, y + 16.0});
}

double MetricsHeight(const Comparison& comparison) {
  const auto lines = static_cast<double>(QualityConditions(comparison.metricRequest).size());
  return 90.0 + kLeading * kTextSize * static_cast<double>(comparison.metrics.size()) + 34.0 * lines;
}

void DrawLetterLines(Canvas& canvas, double top, const Comparison& comparison) {
  double y = top;
  for (const double size : kLetterSizesShown) {
    int column = 0;
    for (const SimulatedEye* const eye : {&comparison.a, &comparison.b}) {
      for (const LetterLine& line : eye->letters->lines) {
        if (line.logMar != size) continue;
        const SizedImage& image = line.image;
        DrawTitle(canvas, {ColumnX(column), y}, kLineWidth, "Letters of logMAR " + NumberText(size, 2),
                  "as seen by " + std::string(column == 0 ? "A" : "B") + "; " + LetterSizeText(size));
        DrawLetterBox(canvas, {ColumnX(column), y + kLetterTitle, kLineWidth, kLineHeight}, image.seen,
                      image.object.pixel, eye->results.physical->view, eye->eye.side);
        if (column == 0) {
          DrawTitle(canvas, {ColumnX(2), y}, kLineWidth, "", "as shown");
          DrawLetterBox(canvas, {ColumnX(2), y + kLetterTitle, kLineWidth, kLineHeight}, image.object.channels,
                        image.object.pixel, View::kPatient, Side::kUnknown);
        }
      }
      ++column;
    }
    y += kLetterRow;
  }
}

}  // namespace

ColourPicture DrawComparisonSheet(const Comparison& comparison) {
  const SimulatedEye &a = comparison.a, &b = comparison.b;
  const SharedFigures figures = FiguresOf(comparison);
  const Stack heads[] = {HeadOf("A", a), HeadOf("B", b), DifferenceHead(comparison, figures)};
  double top = 0.0;
  for (const Stack& head : heads) top = std::max(top, head.height());
  top += kMargin / 2.0 + 20.0;
  const bool hasLetters = comparison.a.letters && comparison.b.letters;
  const double letters = top + 3.0 * kRowHeight;
  const double metrics = letters + (hasLetters ? static_cast<double>(std::size(kLetterSizesShown)) * kLetterRow : 0.0);
  Canvas canvas(kContent + 2.0 * kMargin, metrics + MetricsHeight(comparison) + kMargin / 2.0, 1.0);
  for (int column = 0; column < 3; ++column) heads[column].Draw(canvas, {ColumnX(column), kMargin / 2.0});
  canvas.Fill({kMargin, top - 10.0, kContent, 2.0}, kGridLine);

  double y = top;
  for (const std::vector<PlaneFigure>* const row : {&figures.wavefronts, &figures.psfs, &figures.mtfs}) {
    for (std::size_t i = 0; i < row->size(); ++i) Draw(canvas, {ColumnX(static_cast<int>(i)), y}, (*row)[i]);
    y += kRowHeight;
  }
  DrawNumbers(canvas, {ColumnX(2), top + kRowHeight}, comparison);
  DrawMtfCurves(canvas, {ColumnX(2), top + 2.0 * kRowHeight}, a.results, b.results);
  if (hasLetters) DrawLetterLines(canvas, letters, comparison);
  canvas.Fill({kMargin, metrics - 10.0, kContent, 2.0}, kGridLine);
  DrawMetrics(canvas, {kMargin, metrics}, comparison);
  return canvas.picture();
}

}  // namespace orvanel::drawing
