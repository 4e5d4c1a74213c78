// Lays out four panels: the chart, and its retinal images with each lens.
#include "drawing/correction_sheet.h"

#include <cmath>

#include "base/number_text.h"
#include "drawing/canvas/canvas.h"
#include "drawing/canvas/font.h"
#include "drawing/canvas/text_layout.h"
#include "drawing/plane_figure.h"
#include "drawing/sheet.h"
#include "files/pictures/picture_pixels.h"

namespace orvanel::drawing {
namespace {

constexpr double kMargin = 60.0, kGutter = 48.0;
constexpr double kCaptionHeight = 76.0;
constexpr double kPanelWidth = 900.0;
constexpr double kNoteSize = 18.0;

struct LettersPanel {
  std::string title, subtitle;
  const Plane* luminance;
};

std::string ChartText(const CorrectedView& view) {
  std::string sizes;
  for (const double size : view.logMar) sizes += (sizes.empty() ? "" : ", ") + FixedText(size, 1);
  return "Sloan letters of logMAR " + sizes + " from the top; " + NumberText(60.0 * view.chart.field.widthDegrees, 4) +
         "\u2032 wide";
}

}  // namespace

ColourPicture DrawCorrectionSheet(const CorrectionSheet& sheet, const Correction& correction) {
  const CorrectedView& view = sheet.view;
  const LettersPanel panels[] = {
      {"The chart", ChartText(view), &view.chart.luminance},
      {"Without a lens", sheet.without, &view.without},
      {"Best lens " + PrescriptionText(correction.best.lens.power), sheet.best, &view.best},
      {"Trial case " + PrescriptionText(correction.inCase.lens.power), sheet.inCase, &view.inCase}};
  const double content = 2.0 * kPanelWidth + kGutter;
  const double panel = std::round(kPanelWidth * view.chart.luminance.rows() / view.chart.luminance.columns());
  const double row = kCaptionHeight + panel + kPanelLabelHeight;

  const TextStyle nameStyle = Fitted(sheet.name, {40.0, kInk, true}, content);
  const Paragraph name(IsDrawable(sheet.name) ? sheet.name : "An eye", nameStyle, content, 2);
  const Paragraph conditions(sheet.conditions, {22.0, kInk}, content);
  const Paragraph note(
      "Retinal images, linear in light, surrounded by white. They show what the optics of the eye do to the letters; "
      "the retina and the brain do more. All panels have one magnification.",
      {kNoteSize, kInk}, content);
  const double top = kMargin / 2.0 + name.height() + conditions.height() + kGutter / 2.0;
  Canvas canvas(content + 2.0 * kMargin, top + 2.0 * row + note.height() + kMargin / 2.0, 1.0);
  name.Draw(canvas, {kMargin, kMargin / 2.0});
  conditions.Draw(canvas, {kMargin, kMargin / 2.0 + name.height()});
  for (int i = 0; i < 4; ++i) {
    const Point corner{kMargin + (i % 2) * (kPanelWidth + kGutter), top + (i / 2) * row};
    DrawTitle(canvas, {corner.x, corner.y + 4.0}, kPanelWidth, panels[i].title, panels[i].subtitle);
    DrawPanel(canvas, {corner.x, corner.y + kCaptionHeight, kPanelWidth, panel},
              PicturePixels({*panels[i].luminance}, false), "", sheet.side);
  }
  note.Draw(canvas, {kMargin, top + 2.0 * row});
  return canvas.picture();
}

}  // namespace orvanel::drawing
