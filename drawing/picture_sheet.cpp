// Lays out the picture sheet: three panels with the angle that they span.
#include "drawing/picture_sheet.h"

#include <string>

#include "base/number_text.h"
#include "drawing/canvas/axis.h"
#include "drawing/canvas/canvas.h"
#include "drawing/canvas/font.h"
#include "drawing/plane_figure.h"
#include "drawing/sheet.h"
#include "evaluation/model_notes.h"
#include "files/pictures/picture_pixels.h"

namespace orvanel::drawing {
namespace {

constexpr double kMargin = 60.0;
constexpr double kPanel = 512.0;  // two pixels for a sample
constexpr double kGutter = 84.0;
constexpr double kContent = 3.0 * kPanel + 2.0 * kGutter;
constexpr double kCaptionHeight = 84.0;
constexpr double kAxisHeight = 104.0;
constexpr double kNoteMargin = 30.0;

void DrawSight(Canvas& canvas, Point corner, const std::string& title, const std::string& subtitle,
               const ColourPicture& pixels, const SimulatedEye& simulated) {
  DrawTitle(canvas, {corner.x, corner.y + 8.0}, kPanel, title, subtitle);
  const Box box{corner.x, corner.y + kCaptionHeight, kPanel, kPanel};
  canvas.Paste(box, pixels);
  canvas.Outline(box, 1.5, kInk);
  const RetinalPicture& picture = *simulated.results.picture;
  const double reach = picture.pixel.value() * picture.object.channels.at(0).columns() / 2.0;
  DrawAxis(canvas, box, Edge::kBottom, {-reach, reach, "arc minutes"}, 50.0);
  DrawView(canvas, box, 78.0, View::kPatient, simulated.eye.side);
}

std::string NoteText(const Results& results) {
  const RetinalPicture& picture = *results.picture;
  const ObjectPicture& object = picture.object;
  const int columns = object.channels.at(0).columns();
  std::string text =
      std::to_string(object.width) + " \u00d7 " + std::to_string(object.height) + " pixels, " +
      std::string(Description(object.request.fit)) + ". The " + std::to_string(columns) + " samples span " +
      NumberText(picture.pixel.value() * columns, 4) + "\u2032. " +
      (object.request.linear ? "Values are taken as light." : "sRGB values are turned into light and back.");
  text += results.physical ? " The mean luminance of each channel surrounds the picture."
                           : " Total light is kept. Edges wrap round: light blurred over one edge returns at the "
                             "opposite edge.";
  for (const std::string& sentence : ModelNotes(results)) text += " " + sentence;
  return text;
}

}  // namespace

ColourPicture DrawPictureSheet(const SimulatedEye& simulated) {
  const RetinalPicture& picture = *simulated.results.picture;
  const SheetHead head(simulated, kContent);
  const Paragraph note(NoteText(simulated.results), {18.0, kInk}, kContent);
  const double top = head.height(), notes = top + kCaptionHeight + kPanel + kAxisHeight;
  Canvas canvas(kContent + 2.0 * kMargin, notes + note.height() + kNoteMargin, 1.0);
  head.Draw(canvas, {kMargin, 0.0});
  canvas.Fill({kMargin, top, kContent, 2.0}, kGridLine);

  const bool linear = picture.object.request.linear;
  Point corner{kMargin, top};
  const std::string file = picture.object.request.file;
  DrawSight(
      canvas, corner, "As given",
      IsDrawable(file) ? canvas.Shortened(file, {kSmallSize, kFaintInk}, kPanel) : "see summary.json for its name",
      PicturePixels(picture.object.channels, linear), simulated);
  corner.x += kPanel + kGutter;
  if (simulated.results.physical) {
    DrawSight(canvas, corner, "Retinal image", "linear in light", PicturePixels(picture.seen, linear), simulated);
  } else {
    DrawSight(canvas, corner, "Retinal image, contrast kept",
              "without the classic model\u2019s square: near to light that adds up",
              PicturePixels(picture.contrastKept, linear), simulated);
    corner.x += kPanel + kGutter;
    DrawSight(canvas, corner, "Retinal image of the classic model",
              "squared, so that contrast is steeper; clipped at white", PicturePixels(picture.seen, linear), simulated);
  }
  note.Draw(canvas, {kMargin, notes});
  return canvas.picture();
}

}  // namespace orvanel::drawing
