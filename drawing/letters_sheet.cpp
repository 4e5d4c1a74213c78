// Lays out panels of letters.
#include "drawing/letters_sheet.h"

#include <string>

#include "base/number_text.h"
#include "drawing/plane_figure.h"
#include "drawing/sheet.h"
#include "evaluation/model_notes.h"
#include "files/pictures/picture_pixels.h"
#include "targets/charts/sizes.h"

namespace orvanel::drawing {
namespace {

constexpr double kMargin = 60.0;
constexpr double kGutter = 60.0;
constexpr double kContent = 2.0 * kLetterLineWidth + kGutter;
constexpr double kTitleHeight = 44.0;
constexpr double kBelow = 64.0;  // scale bar and view
constexpr double kRowHeight = kTitleHeight + kLetterLineHeight + kBelow + 16.0;
constexpr double kSubtitle = 19.0;

std::string SizeText(double logMar) {
  const ArcMinutes height = charts::HeightOfLogMar(logMar);
  return "logMAR " + NumberText(logMar, 2) + ", decimal acuity " + NumberText(charts::DecimalOfHeight(height), 2) +
         ", letters " + NumberText(height.value(), 3) + "\u2032 high";
}

View ViewOfImages(const SimulatedEye& simulated) { return simulated.results.physical->view; }

// A panel with a scale bar at its lower left and the view in the middle below it.
void DrawLine(Canvas& canvas, const Box& box, const std::vector<Plane>& channels, ArcMinutes pixel, View view,
              Side side) {
  canvas.Paste(box, PicturePixels(channels, false));
  canvas.Outline(box, 1.5, kFaintInk);
  DrawMinutes(canvas, {box.x, box.bottom() + 22.0}, box.width / (pixel.value() * channels[0].columns()),
              box.width / 8.0, "");
  DrawView(canvas, box, 54.0, view, side);
}

void DrawFocus(Canvas& canvas, Point corner, const SimulatedEye& simulated) {
  constexpr double kPanel = 180.0;  // 2 pixels for a pixel
  const std::vector<FocusStep>& steps = simulated.letters->throughFocus;
  const double step = (kContent - kPanel) / static_cast<double>(steps.size() - 1);
  canvas.Text(
      {corner.x, corner.y + 26.0},
      "One letter through focus, " + SizeText(kFocusLogMar) + "; with a lens of so many dioptres before the eye",
      {kTitleSize, kInk, true});
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const Box box{corner.x + static_cast<double>(i) * step, corner.y + kTitleHeight, kPanel, kPanel};
    canvas.Paste(box, PicturePixels(steps[i].image.seen, false));
    canvas.Outline(box, 1.5, kFaintInk);
    TextStyle style{22.0, kInk, true};
    style.align = Align::kCentre;
    const double lens = steps[i].lensDioptres;
    canvas.Text({box.x + kPanel / 2.0, box.bottom() + 30.0},
                (lens > 0.0   ? "+"
                 : lens < 0.0 ? "\u2212"
                              : "") +
                    NumberText(lens < 0.0 ? -lens : lens, 3) + " D",
                style);
  }
  const SizedObject& object = steps[0].image.object;
  const Box strip{corner.x, corner.y + kTitleHeight, kContent, kPanel + 22.0};
  DrawMinutes(canvas, {strip.x, strip.bottom() + 40.0}, kPanel / (object.pixel.value() * object.channels[0].columns()),
              0.6 * kPanel, "");
  DrawView(canvas, strip, 72.0, ViewOfImages(simulated), simulated.eye.side);
}

}  // namespace

void DrawLetterCell(Canvas& canvas, Point corner, const LetterLine& line, const SimulatedEye& simulated) {
  const SizedImage& image = line.image;
  const Side side = simulated.eye.side;
  DrawTitle(canvas, corner, kLetterLineWidth, "Letters of logMAR " + NumberText(line.logMar, 2), SizeText(line.logMar));
  Box box{corner.x, corner.y + 66.0, kLetterLineWidth, kLetterLineHeight};
  DrawLine(canvas, box, image.object.channels, image.object.pixel, View::kPatient, side);
  canvas.Text({box.right(), box.bottom() + 26.0}, "as shown", {kSubtitle, kInk, false, Align::kRight});
  box.y += kLetterLineHeight + kBelow + 12.0;
  DrawLine(canvas, box, image.seen, image.object.pixel, ViewOfImages(simulated), side);
  canvas.Text({box.right(), box.bottom() + 26.0}, "as seen", {kSubtitle, kInk, false, Align::kRight});
}

ColourPicture DrawLetters(const SimulatedEye& simulated) {
  const SheetHead head(simulated, kContent);
  std::string text = simulated.letters
                         ? "Lines of Sloan letters, each enlarged to the same width; the bars give the angle."
                         : "The blur of this eye is too wide for images of these letters.";
  for (const std::string& sentence : ModelNotes(simulated.results)) text += " " + sentence;
  const Paragraph note(text, {18.0, kInk}, kContent);
  const double top = head.height() + 14.0 + note.height() + 24.0;
  constexpr double kFocusHeight = kTitleHeight + 180.0 + 110.0;
  const double panels =
      simulated.letters ? static_cast<double>(simulated.letters->lines.size()) * kRowHeight + 20.0 + kFocusHeight : 0.0;
  Canvas canvas(kContent + 2.0 * kMargin, top + panels + kMargin / 2.0, 1.0);
  head.Draw(canvas, {kMargin, 0.0});
  canvas.Fill({kMargin, head.height(), kContent, 2.0}, kGridLine);
  note.Draw(canvas, {kMargin, head.height() + 14.0});
  if (!simulated.letters) return canvas.picture();
  double y = top;
  for (const LetterLine& line : simulated.letters->lines) {
    const SizedImage& image = line.image;
    canvas.Text({kMargin, y + 28.0}, "As shown: " + SizeText(line.logMar), {kTitleSize, kInk, true});
    canvas.Text({kMargin + kLetterLineWidth + kGutter, y + 28.0}, "As this eye sees it", {kTitleSize, kInk, true});
    Box box{kMargin, y + kTitleHeight, kLetterLineWidth, kLetterLineHeight};
    DrawLine(canvas, box, image.object.channels, image.object.pixel, View::kPatient, simulated.eye.side);
    box.x += kLetterLineWidth + kGutter;
    DrawLine(canvas, box, image.seen, image.object.pixel, ViewOfImages(simulated), simulated.eye.side);
    y += kRowHeight;
  }
  DrawFocus(canvas, {kMargin, y + 20.0}, simulated);
  return canvas.picture();
}

}  // namespace orvanel::drawing
