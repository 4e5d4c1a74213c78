// Lays out two panels with a scale bar.
#include "drawing/sized_sheet.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/number_text.h"
#include "drawing/canvas/canvas.h"
#include "drawing/plane_figure.h"
#include "drawing/sheet.h"
#include "evaluation/model_notes.h"
#include "files/pictures/picture_pixels.h"

namespace orvanel::drawing {
namespace {

constexpr double kMargin = 60.0;
constexpr double kPanel = 1000.0;  // the width of a panel, and its greatest height
constexpr double kGutter = 60.0;
constexpr double kContent = 2.0 * kPanel + kGutter;
constexpr double kTitleHeight = 60.0;
constexpr double kBarHeight = 80.0;

}  // namespace

ColourPicture DrawSizedView(const SimulatedEye& simulated) {
  const SizedView& view = *simulated.sized;
  const SizedObject& object = view.image.object;
  const double columns = object.channels[0].columns(), rows = object.channels[0].rows();
  const double scale = kPanel / std::max(columns, rows);
  const Box panel{0.0, 0.0, std::max(1.0, std::round(columns * scale)), std::max(1.0, std::round(rows * scale))};

  const SheetHead head(simulated, kContent);
  std::string text = NumberText(columns * object.pixel.value() / 60.0, 4) + " x " +
                     NumberText(rows * object.pixel.value() / 60.0, 4) + " degrees, " + NumberText(columns, 4) + " x " +
                     NumberText(rows, 4) + " pixels of " + NumberText(object.pixel.value(), 3) + "\u2032. " +
                     SeenInText(simulated.results) + " Surround: " + view.surround + ".";
  for (const std::string& sentence : ModelNotes(simulated.results)) text += " " + sentence;
  const Paragraph note(text, {18.0, kInk}, kContent);
  const double top = head.height() + 14.0 + note.height() + 16.0, below = top + kTitleHeight + panel.height;
  Canvas canvas(kContent + 2.0 * kMargin, below + kPanelLabelHeight + kBarHeight, 1.0);
  head.Draw(canvas, {kMargin, 0.0});
  canvas.Fill({kMargin, head.height(), kContent, 2.0}, kGridLine);
  note.Draw(canvas, {kMargin, head.height() + 14.0});

  const auto draw = [&](double x, const char* title, const std::vector<Plane>& channels, View of) {
    canvas.Text({x, top + 36.0}, title, {kTitleSize, kInk, true});
    const Box box{x, top + kTitleHeight, panel.width, panel.height};
    canvas.Paste(box, PicturePixels(channels, view.linear));
    canvas.Outline(box, 1.5, kInk);
    DrawView(canvas, {x, box.y, std::max(box.width, kViewWidth), box.height}, 30.0, of, simulated.eye.side);
  };
  draw(kMargin, "As shown", object.channels, View::kPatient);
  draw(kMargin + kPanel + kGutter, "As this eye sees it", view.image.seen, simulated.results.physical->view);
  DrawMinutes(canvas, {kMargin, below + kPanelLabelHeight + 24.0}, scale / object.pixel.value(), kPanel / 4.0,
              "; both pictures at this magnification");
  return canvas.picture();
}

}  // namespace orvanel::drawing
