// A picture to draw on: anti-aliased boxes, lines, text and other pictures.
#ifndef ORVANEL_DRAWING_CANVAS_CANVAS_H
#define ORVANEL_DRAWING_CANVAS_CANVAS_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "drawing/canvas/surface.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

class Canvas final : public Surface {
 public:
  // A white canvas of width x height units; each unit is `scale` pixels wide.
  Canvas(double width, double height, double scale);

  const ColourPicture& picture() const { return picture_; }

  // Edges of boxes are rounded to whole pixels.
  void Fill(const Box& box, Colour colour) override;
  void Outline(const Box& box, double lineWidth, Colour colour) override;
  void Line(const std::vector<Point>& points, double lineWidth, Colour colour) override;
  // Computes area averages.
  void Paste(const Box& box, const ColourPicture& picture) override;
  void Text(Point baseline, const std::string& text, const TextStyle& style) override;
  double TextWidth(const std::string& text, const TextStyle& style) const override;
  // If the text is wider than `width`, cuts it at a space or letter and appends an ellipsis.
  std::string Shortened(std::string text, const TextStyle& style, double width) const;

 private:
  void Blend(int x, int y, Colour colour, double coverage);

  double scale_;
  ColourPicture picture_;
};

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_CANVAS_CANVAS_H
