// What sheets of pictures have in common: their head, their panels and their paragraphs.
#ifndef ORVANEL_DRAWING_SHEET_H
#define ORVANEL_DRAWING_SHEET_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "drawing/canvas/canvas.h"
#include "drawing/plane_figure.h"
#include "evaluation/results.h"

namespace orvanel::drawing {

// Lines of text to be drawn one below the other.
class Paragraph {
 public:
  // Broken to the width; what would take more lines than `most` ends in an ellipsis.
  Paragraph(const std::string& text, const TextStyle& style, double width, std::size_t most = 100);

  // From the first line's top to the last one's bottom.
  double height() const { return static_cast<double>(lines_.size()) * leading_; }
  void Draw(Canvas& canvas, Point corner) const;

 private:
  std::vector<std::string> lines_;
  TextStyle style_;
  double leading_;
};

// What the head of a sheet says.
struct HeadTexts {
  std::string name;     // of the eye, or of its file where the sheets cannot draw that
  std::string numbers;  // pupil, wavelength, Strehl ratio, RMS
  std::string lens;     // that corrects the eye as simulated, by least squares and paraxial, with a minus cylinder
  std::string origin;   // how the eye was measured, what was done to it, and its source
};

HeadTexts HeadTextsOf(const Results& results);

class SheetHead {
 public:
  // As wide as the sheet's content.
  SheetHead(const Results& results, double width);

  // With the blank above and below.
  double height() const;
  void Draw(Canvas& canvas, Point corner) const;

 private:
  double width_;
  std::vector<Paragraph> paragraphs_;
};

// What of an eye's texts the sheets cannot draw, a sentence each.
std::vector<std::string> WarningsOfTexts(const Eye& eye);

constexpr double kPanelLabelHeight = 56.0;
constexpr double kViewWidth = 360.0;  // of the view and its nasal and temporal sides

// A picture in the patient's view with an outline, and below it, in the height above, a label and the view.
void DrawPanel(Canvas& canvas, const Box& box, const ColourPicture& picture, const std::string& label, Side side);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_SHEET_H
