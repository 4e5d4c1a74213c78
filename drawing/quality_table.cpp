// Chooses the size of the text by the number of rows.
#include "drawing/quality_table.h"

#include <algorithm>

#include "drawing/canvas/text_layout.h"
#include "drawing/plane_figure.h"
#include "drawing/sheet.h"
#include "evaluation/quality_notes.h"

namespace orvanel::drawing {

void DrawQualityTable(Surface& surface, const Box& box, const SimulatedEye& simulated) {
  if (!simulated.quality) return;
  const Quality& quality = *simulated.quality;
  constexpr double kHead = 64.0, kLargest = 19.0, kNoteSize = 15.0, kGap = 10.0, kLeading = 1.3;
  std::vector<Paragraph> notes;
  double notesHeight = kGap;
  for (const std::string& sentence : QualityConditions(quality, simulated.qualityRequest)) {
    notes.emplace_back(sentence, TextStyle{kNoteSize, kFaintInk}, box.width);
    notesHeight += notes.back().height();
  }
  const std::vector<QualityText> texts = TextsOf(quality);
  const auto rows = static_cast<double>(texts.size());
  const double size = std::min(kLargest, (box.height - kHead - notesHeight) / rows / kLeading);
  const double second = box.x + 0.27 * box.width, third = box.x + 0.66 * box.width;
  surface.Text({box.x, box.y + 30.0}, "Metrics of image quality", {kTitleSize, kInk, true});
  surface.Text({second, box.y + 56.0}, "this eye", {kSmallSize, kFaintInk});
  surface.Text({third, box.y + 56.0}, "no aberration", {kSmallSize, kFaintInk});
  double y = box.y + kHead;
  for (const QualityText& text : texts) {
    const TextStyle style{size, kInk};
    y += kLeading * size;
    surface.Text({box.x, y}, text.name, {size, kInk, true});
    surface.Text({second, y}, text.value + (text.note.empty() ? "" : " *"), style);
    surface.Text({third, y}, text.limit, style);
  }
  y += kGap;
  for (const Paragraph& note : notes) {
    note.Draw(surface, {box.x, y});
    y += note.height();
  }
}

}  // namespace orvanel::drawing
