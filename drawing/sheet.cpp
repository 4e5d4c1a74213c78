// Formats the texts of a sheet's head, and draws head, panels and paragraphs.
#include "drawing/sheet.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "drawing/canvas/axis.h"
#include "drawing/canvas/font.h"
#include "drawing/canvas/text_layout.h"
#include "drawing/figures.h"
#include "evaluation/model_notes.h"
#include "eye/adjustments.h"
#include "eye/refraction.h"
#include "models/sampling.h"

namespace orvanel::drawing {
namespace {

constexpr double kHeadMargin = 30.0;  // above and below the head
constexpr double kHeadGap = 6.0;      // between its paragraphs
constexpr double kVersionWidth = 280.0;
// Separates parts: no-break spaces, and a space at the end, where a line may break.
constexpr const char* kDot = "\u00a0\u00a0\u00a0\u00a0\u00b7\u00a0\u00a0\u00a0 ";

const std::string& NameOf(const Eye& eye) { return eye.name.empty() ? eye.file : eye.name; }

// The size that fits on one line, at most the usual size and at least half of it.
TextStyle NameStyle(const std::string& name, double width) {
  const TextStyle usual{46.0, kInk, true};
  TextStyle style = Fitted(name, usual, width);
  style.size = std::max(style.size, 0.5 * usual.size);
  return style;
}

std::string WithDots(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) {
    if (!text.empty()) text += kDot;
    text += part;
  }
  return text;
}

// The name of the eye, or of its file where the fonts cannot draw the name.
std::string DrawnName(const Eye& eye) {
  if (IsDrawable(NameOf(eye))) return NameOf(eye);
  return IsDrawable(eye.file) ? eye.file : "An eye";
}

std::string NumbersText(const Results& results) {
  const Wavefront& wavefront = results.wavefront;
  const double wave =
      results.physical ? results.physical->reference.value() * 1e-3 : ToMicrometres(Wavelength()).value();
  return WithDots({ModelText(results), "Pupil " + NumberText(results.pupil.value(), 4) + " mm",
                   "Light " + LightText(results), "Strehl ratio " + StrehlText(results),
                   "Wavefront RMS " + NumberText(wavefront.rms.value(), 3) + " \u00b5m (" +
                       NumberText(wavefront.rms.value() / wave, 3) + " waves)"});
}

std::string RefractionText(const Eye& eye) {
  const Coefficients& osa = eye.coefficients.osa();
  const auto text = [](const PowerVector& powers) { return Text(ToRefraction(powers, CylinderSign::kMinus)); };
  return WithDots({"Correcting lens: " + text(LeastSquaresRefraction(osa, eye.pupil)) + " (least squares)",
                   text(ParaxialRefraction(osa, eye.pupil)) + " (paraxial)"});
}

std::string OriginText(const SimulatedEye& simulated) {
  const Eye& eye = simulated.measured;
  std::vector<std::string> parts;
  if (!IsDrawable(NameOf(eye))) parts.emplace_back("Name: in a script that is not drawn here, see summary.json");
  parts.push_back("Measured over " + NumberText(eye.pupil.value(), 6) + " mm, laterality " + SideText(eye.side) +
                  ", in " + Text(eye.coefficients.convention()));
  parts.insert(parts.end(), simulated.changes.begin(), simulated.changes.end());
  if (!IsDrawable(eye.source)) {
    parts.emplace_back("Source: in a script that is not drawn here, see summary.json");
  } else if (!eye.source.empty()) {
    parts.push_back("Source: " + eye.source);
  }
  return WithDots(parts);
}

}  // namespace

std::vector<std::string> WarningsOfTexts(const Eye& eye) {
  std::vector<std::string> warnings;
  if (!IsDrawable(NameOf(eye))) {
    warnings.emplace_back("the sheets cannot draw the script of the eye's name; summary.json has it");
  }
  if (!IsDrawable(eye.source)) {
    warnings.emplace_back("the sheets cannot draw the script of the eye's source; summary.json has it");
  }
  return warnings;
}

Paragraph::Paragraph(const std::string& text, const TextStyle& style, double width, std::size_t most)
    : lines_(Wrapped(text, style, width, most)), style_(style), leading_(std::round(1.42 * style.size)) {}

void Paragraph::Draw(Surface& surface, Point corner) const {
  corner.y += style_.size;
  for (const std::string& line : lines_) {
    surface.Text(corner, line, style_);
    corner.y += leading_;
  }
}

HeadTexts HeadTextsOf(const SimulatedEye& simulated) {
  return {DrawnName(simulated.measured), NumbersText(simulated.results), RefractionText(simulated.eye),
          OriginText(simulated)};
}

SheetHead::SheetHead(const SimulatedEye& simulated, double width) : width_(width) {
  constexpr std::size_t kMaxNameLines = 2, kMaxOriginLines = 3;
  const HeadTexts texts = HeadTextsOf(simulated);
  const double nameWidth = width - kVersionWidth;
  paragraphs_.emplace_back(texts.name, NameStyle(texts.name, nameWidth), nameWidth, kMaxNameLines);
  paragraphs_.emplace_back(texts.numbers, TextStyle{28.0, kInk}, width);
  paragraphs_.emplace_back(texts.lens, TextStyle{23.0, kInk}, width);
  paragraphs_.emplace_back(texts.origin, TextStyle{19.0, kFaintInk}, width, kMaxOriginLines);
}

double SheetHead::height() const {
  double height = 2.0 * kHeadMargin - kHeadGap;
  for (const Paragraph& paragraph : paragraphs_) height += paragraph.height() + kHeadGap;
  return height;
}

void SheetHead::Draw(Canvas& canvas, Point corner) const {
  corner.y += kHeadMargin;
  canvas.Text({corner.x + width_, corner.y + 46.0}, "orvanel " ORVANEL_VERSION,
              {24.0, kFaintInk, false, Align::kRight});
  for (const Paragraph& paragraph : paragraphs_) {
    paragraph.Draw(canvas, corner);
    corner.y += paragraph.height() + kHeadGap;
  }
}

void DrawPanel(Canvas& canvas, const Box& box, const ColourPicture& picture, const std::string& label, Side side) {
  canvas.Paste(box, picture);
  canvas.Outline(box, 1.5, kFaintInk);
  canvas.Text({box.x, box.bottom() + 22.0}, label, {17.0, kInk});
  DrawView(canvas, {box.x, box.y, std::max(box.width, kViewWidth), box.height}, 44.0, View::kPatient, side);
}

void DrawMinutes(Canvas& canvas, Point start, double perMinute, double about, const std::string& text) {
  const std::vector<Tick> ticks = RoundTicks(0.0, about / perMinute, 3);
  const double minutes = ticks.back().value > 0.0 ? ticks.back().value : about / perMinute;
  const double length = minutes * perMinute;
  canvas.Fill({start.x, start.y, length, 4.0}, kInk);
  for (const double end : {start.x, start.x + length - 3.0}) canvas.Fill({end, start.y - 8.0, 3.0, 20.0}, kInk);
  canvas.Text({start.x + length + 18.0, start.y + 9.0}, NumberText(minutes, 4) + "\u2032" + text, {20.0, kInk});
}

}  // namespace orvanel::drawing
