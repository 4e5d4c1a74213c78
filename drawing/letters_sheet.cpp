// Lays out panels of letters.
#include "drawing/letters_sheet.h"

#include <string>

#include "base/number_text.h"
#include "drawing/plane_figure.h"
#include "drawing/sheet.h"
#include "drawing/strip_sheet.h"
#include "evaluation/model_notes.h"
#include "files/pictures/picture_pixels.h"

namespace orvanel::drawing {
namespace {

constexpr double kMargin = 60.0;
constexpr double kGutter = 60.0;
constexpr double kContent = 2.0 * kLetterLineWidth + kGutter;
constexpr double kTitleHeight = 44.0;
constexpr double kRowHeight = kTitleHeight + kLetterLineHeight + kBelowLetters + 16.0;
constexpr double kSubtitle = 19.0;

}  // namespace

void DrawLetterBox(Canvas& canvas, const Box& box, const std::vector<Plane>& channels, ArcMinutes pixel, View view,
                   Side side) {
  canvas.Paste(box, PicturePixels(channels, false));
  canvas.Outline(box, 1.5, kFaintInk);
  DrawMinutes(canvas, {box.x, box.bottom() + 22.0}, box.width / (pixel.value() * channels[0].columns()),
              box.width / 8.0, "");
  DrawView(canvas, box, 54.0, view, side);
}

void DrawLetterCell(Canvas& canvas, Point corner, const LetterLine& line, const SimulatedEye& simulated) {
  const SizedImage& image = line.image;
  const Side side = simulated.eye.side;
  DrawTitle(canvas, corner, kLetterLineWidth, "Letters of logMAR " + NumberText(line.logMar, 2),
            LetterSizeText(line.logMar));
  Box box{corner.x, corner.y + 66.0, kLetterLineWidth, kLetterLineHeight};
  DrawLetterBox(canvas, box, image.object.channels, image.object.pixel, View::kPatient, side);
  canvas.Text({box.right(), box.bottom() + 26.0}, "as shown", {kSubtitle, kInk, false, Align::kRight});
  box.y += kLetterLineHeight + kBelowLetters + 12.0;
  DrawLetterBox(canvas, box, image.seen, image.object.pixel, simulated.results.physical->view, side);
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
  const double panels =
      simulated.letters ? static_cast<double>(simulated.letters->lines.size()) * kRowHeight + 20.0 + kStripHeight : 0.0;
  Canvas canvas(kContent + 2.0 * kMargin, top + panels + kMargin / 2.0, 1.0);
  head.Draw(canvas, {kMargin, 0.0});
  canvas.Fill({kMargin, head.height(), kContent, 2.0}, kGridLine);
  note.Draw(canvas, {kMargin, head.height() + 14.0});
  if (!simulated.letters) return canvas.picture();
  double y = top;
  for (const LetterLine& line : simulated.letters->lines) {
    const SizedImage& image = line.image;
    canvas.Text({kMargin, y + 28.0}, "As shown: " + LetterSizeText(line.logMar), {kTitleSize, kInk, true});
    canvas.Text({kMargin + kLetterLineWidth + kGutter, y + 28.0}, "As this eye sees it", {kTitleSize, kInk, true});
    Box box{kMargin, y + kTitleHeight, kLetterLineWidth, kLetterLineHeight};
    DrawLetterBox(canvas, box, image.object.channels, image.object.pixel, View::kPatient, simulated.eye.side);
    box.x += kLetterLineWidth + kGutter;
    DrawLetterBox(canvas, box, image.seen, image.object.pixel, simulated.results.physical->view, simulated.eye.side);
    y += kRowHeight;
  }
  DrawStrip(canvas, {kMargin, y + 20.0}, kContent, {{kFocusLetter, kFocusLogMar, {}}, simulated.letters->throughFocus},
            simulated);
  return canvas.picture();
}

}  // namespace orvanel::drawing
