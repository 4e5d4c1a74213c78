// Draws the common parts of sheets: head, panels and paragraphs.
#ifndef ORVANEL_DRAWING_SHEET_H
#define ORVANEL_DRAWING_SHEET_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "drawing/canvas/canvas.h"
#include "drawing/plane_figure.h"
#include "evaluation/simulated_eye.h"

namespace orvanel::drawing {

// Lines of text, drawn one below the other.
class Paragraph {
 public:
  // Breaks the text to the width. After `most` lines it ends in an ellipsis.
  Paragraph(const std::string& text, const TextStyle& style, double width, std::size_t most = 100);

  // From the top of the first line to the bottom of the last.
  double height() const { return static_cast<double>(lines_.size()) * leading_; }
  void Draw(Surface& surface, Point corner) const;

 private:
  std::vector<std::string> lines_;
  TextStyle style_;
  double leading_;
};

// The texts in the head of a sheet.
struct HeadTexts {
  std::string name;     // of the eye, or of its file where the fonts cannot draw the name
  std::string numbers;  // pupil, wavelength, Strehl ratio, RMS
  std::string lens;     // the lens that corrects the simulated eye: least squares and paraxial, minus cylinder
  std::string origin;   // how the eye was measured, its adjustments, and its source
};

HeadTexts HeadTextsOf(const SimulatedEye& simulated);

class SheetHead {
 public:
  // width  of the sheet's content
  SheetHead(const SimulatedEye& simulated, double width);

  // With the margins above and below.
  double height() const;
  void Draw(Canvas& canvas, Point corner) const;

 private:
  double width_;
  std::vector<Paragraph> paragraphs_;
};

// One warning for each text of the eye that the fonts cannot draw.
std::vector<std::string> WarningsOfTexts(const Eye& eye);

constexpr double kPanelLabelHeight = 56.0;
constexpr double kViewWidth = 360.0;  // of the view with its nasal and temporal sides

// Draws an outlined picture in the patient's view. Below it, in the height above, are a label and the view.
void DrawPanel(Canvas& canvas, const Box& box, const ColourPicture& picture, const std::string& label, Side side);

// Draws a scale bar of a round number of arc minutes, about as long as `about`, and the text after the number.
void DrawMinutes(Canvas& canvas, Point start, double perMinute, double about, const std::string& text);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_SHEET_H
