// Layout of the sheet: three panels with the angle that they span.
#include "cli/pictures/picture_sheet.h"

#include <string>

#include "cli/axis.h"
#include "cli/canvas.h"
#include "cli/number_text.h"
#include "cli/pictures/picture_pixels.h"
#include "cli/plane_figure.h"
#include "cli/sheet.h"

namespace orvanel::cli {
namespace {

constexpr double kMargin = 60.0;
constexpr double kPanel = 512.0;  // two pixels for a sample
constexpr double kGutter = 84.0;
constexpr double kContent = 3.0 * kPanel + 2.0 * kGutter;
constexpr double kCaptionHeight = 84.0;
constexpr double kAxisHeight = 76.0;
constexpr double kNoteHeight = 96.0;

void DrawView(Canvas& canvas, Point corner, const std::string& title, const std::string& subtitle,
              const ColourPicture& pixels, const Scales& scales) {
  canvas.Text({corner.x, corner.y + 38.0}, title, {kTitleSize, kInk, true});
  canvas.Text({corner.x, corner.y + 66.0}, subtitle, {kSmallSize, kFaintInk});
  const Box box{corner.x, corner.y + kCaptionHeight, kPanel, kPanel};
  canvas.Paste(box, pixels);
  canvas.Outline(box, 1.5, kInk);
  const double reach = FieldOf(scales.library).value() / 2.0;
  DrawAxis(canvas, box, Edge::kBottom, {-reach, reach, "arc minutes, library scale"}, 50.0);
}

void DrawNotes(Canvas& canvas, Point corner, const SeenPicture& picture, const Scales& scales) {
  const ObjectPicture& object = picture.object;
  const TextStyle style{18.0, kInk};
  const std::string spans =
      std::to_string(object.width) + " \u00d7 " + std::to_string(object.height) + " pixels, " +
      std::string(Description(object.request.fit)) + ". The 256 samples span " +
      Text(FieldOf(scales.library).value(), 4) + "\u2032 on the library scale and " +
      Text(FieldOf(scales.optical).value(), 4) + "\u2032 on the optical scale of the pupil, whose cut-off is " +
      Text(scales.opticalCutOff.value(), 4) + " cycles/degree; ratio " + Text(scales.ratio, 5) + ".";
  canvas.Text(corner, canvas.Shortened(spans, style, kContent), style);
  canvas.Text(
      {corner.x, corner.y + 28.0},
      std::string(object.request.linear ? "Values are taken as light" : "sRGB values are turned into light and back") +
          "; total light is kept. Edges wrap round: what is blurred over one comes back at the "
          "opposite one.",
      style);
}

}  // namespace

ColourPicture DrawPictureSheet(const Results& results) {
  const SeenPicture& picture = *results.picture;
  const Scales& scales = results.scales;
  const double notes = kHeaderHeight + kCaptionHeight + kPanel + kAxisHeight;
  Canvas canvas(kContent + 2.0 * kMargin, notes + kNoteHeight, 1.0);
  DrawSheetHeader(canvas, {kMargin, 0.0, kContent, kHeaderHeight}, results);
  canvas.Fill({kMargin, kHeaderHeight, kContent, 2.0}, kGridLine);

  const bool linear = picture.object.request.linear;
  Point corner{kMargin, kHeaderHeight};
  const std::string file = canvas.Shortened(picture.object.request.file, {kSmallSize, kFaintInk}, kPanel);
  DrawView(canvas, corner, "As given", file, PicturePixels(picture.object.channels, linear), scales);
  corner.x += kPanel + kGutter;
  DrawView(canvas, corner, "As seen, contrast kept", "without the library\u2019s square: near to light that adds up",
           PicturePixels(picture.contrastKept, linear), scales);
  corner.x += kPanel + kGutter;
  DrawView(canvas, corner, "As seen, the library\u2019s image",
           "squared, so that contrast is steeper; clipped at white", PicturePixels(picture.seen, linear), scales);
  DrawNotes(canvas, {kMargin, notes + 34.0}, picture, scales);
  return canvas.picture();
}

}  // namespace orvanel::cli
