// Header and panels of sheets.
#include "cli/sheet.h"

#include "cli/number_text.h"

namespace orvanel::cli {

void DrawSheetHeader(Canvas& canvas, const Box& box, const Results& results) {
  const Eye& eye = results.measured;
  const Simulation& simulation = results.simulation;
  const TextStyle name{46.0, kInk, true};
  canvas.Text({box.x, box.y + 78.0}, canvas.Shortened(eye.name.empty() ? eye.file : eye.name, name, 0.8 * box.width),
              name);
  canvas.Text({box.right(), box.y + 78.0}, "orvanel " ORVANEL_VERSION, {24.0, kFaintInk, false, Align::kRight});
  const Wavefront& wavefront = simulation.wavefront;
  canvas.Text({box.x, box.y + 126.0},
              "Pupil " + Text(simulation.pupil.value(), 4) + " mm    \u00b7    Wavelength " +
                  Text(ToNanometres(Wavelength()).value(), 5) + " nm    \u00b7    Strehl ratio " +
                  Text(simulation.strehl, 3) + "    \u00b7    Wavefront RMS " + Text(wavefront.rms.value(), 3) +
                  " \u00b5m (" + Text(wavefront.rms / ToMicrometres(Wavelength()), 3) + " waves)",
              {28.0, kInk});
  const TextStyle origin{19.0, kFaintInk};
  std::string given = "Measured over " + Text(eye.pupil.value(), 6) + " mm, side " + SideText(eye.side) + ", in " +
                      Text(eye.convention);
  for (const std::string& change : results.changes) given += "    \u00b7    " + change;
  if (!eye.source.empty()) given += "    \u00b7    Source: " + eye.source;
  canvas.Text({box.x, box.y + 162.0}, canvas.Shortened(given, origin, box.width), origin);
}

void DrawPanel(Canvas& canvas, const Box& box, const ColourPicture& picture, const std::string& label) {
  canvas.Paste(box, picture);
  canvas.Outline(box, 1.5, kFaintInk);
  canvas.Text({box.x, box.bottom() + 23.0}, label, {17.0, kInk});
}

}  // namespace orvanel::cli
