// Lays out the images of one letter.
#include "drawing/strip_sheet.h"

#include <string>
#include <vector>

#include "base/number_text.h"
#include "drawing/canvas/text_layout.h"
#include "drawing/plane_figure.h"
#include "drawing/sheet.h"
#include "evaluation/model_notes.h"
#include "files/pictures/picture_pixels.h"
#include "targets/charts/sizes.h"

namespace orvanel::drawing {
namespace {

constexpr double kMargin = 60.0;
constexpr double kContent = 2040.0;
constexpr double kTitleHeight = 44.0;

std::string LensText(double dioptres) {
  const char* const sign = dioptres > 0.0 ? "+" : dioptres < 0.0 ? "\u2212" : "";
  return sign + NumberText(dioptres < 0.0 ? -dioptres : dioptres, 3) + " D";
}

}  // namespace

std::string LetterSizeText(double logMar) {
  const ArcMinutes height = charts::HeightOfLogMar(logMar);
  return "logMAR " + NumberText(logMar, 2) + ", decimal acuity " + NumberText(charts::DecimalOfHeight(height), 2) +
         ", letters " + NumberText(height.value(), 3) + "\u2032 high";
}

void DrawStrip(Canvas& canvas, Point corner, double width, const FocusStrip& strip, const SimulatedEye& simulated) {
  constexpr std::size_t kMostLarge = 10;
  const std::vector<FocusStep>& steps = strip.steps;
  const double panel = steps.size() > kMostLarge ? 90.0 : 180.0;  // 1 or 2 pixels for a pixel
  const double step = steps.size() > 1 ? (width - panel) / static_cast<double>(steps.size() - 1) : 0.0;
  canvas.Text({corner.x, corner.y + 26.0},
              "One letter through focus, " + LetterSizeText(strip.request.logMar) +
                  "; with a lens of so many dioptres before the eye",
              {kTitleSize, kInk, true});
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const Box box{corner.x + static_cast<double>(i) * step, corner.y + kTitleHeight, panel, panel};
    canvas.Paste(box, PicturePixels(steps[i].image.seen, false));
    canvas.Outline(box, 1.5, kFaintInk);
    const std::string text = LensText(steps[i].lensDioptres);
    TextStyle style{22.0, kInk, true, Align::kCentre};
    if (step > 0.0) style = Fitted(text, style, step - 8.0);
    canvas.Text({box.x + panel / 2.0, box.bottom() + 30.0}, text, style);
  }
  const SizedObject& object = steps[0].image.object;
  const Box whole{corner.x, corner.y + kTitleHeight, width, panel + 22.0};
  DrawMinutes(canvas, {whole.x, whole.bottom() + 40.0}, panel / (object.pixel.value() * object.channels[0].columns()),
              0.6 * panel, "");
  DrawView(canvas, whole, 72.0, simulated.results.physical->view, simulated.eye.side);
}

ColourPicture DrawStripSheet(const SimulatedEye& simulated) {
  const SheetHead head(simulated, kContent);
  std::string text = "Letter " + simulated.strip->request.letter + ". A plus lens makes the eye short-sighted.";
  for (const std::string& sentence : ModelNotes(simulated.results)) text += " " + sentence;
  const Paragraph note(text, {18.0, kInk}, kContent);
  const double top = head.height() + 14.0 + note.height() + 24.0;
  Canvas canvas(kContent + 2.0 * kMargin, top + kStripHeight + kMargin / 2.0, 1.0);
  head.Draw(canvas, {kMargin, 0.0});
  canvas.Fill({kMargin, head.height(), kContent, 2.0}, kGridLine);
  note.Draw(canvas, {kMargin, head.height() + 14.0});
  DrawStrip(canvas, {kMargin, top}, kContent, *simulated.strip, simulated);
  return canvas.picture();
}

}  // namespace orvanel::drawing
