// A picture to draw on: anti-aliased boxes, lines, text and other pictures.
#ifndef ORVANEL_DRAWING_CANVAS_CANVAS_H
#define ORVANEL_DRAWING_CANVAS_CANVAS_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

// Positions and sizes are in units of the canvas; x increases to the right, y downwards.
struct Point {
  double x, y;
};

double Distance(Point a, Point b);

struct Box {
  double x, y, width, height;

  double right() const { return x + width; }
  double bottom() const { return y + height; }
};

enum class Align { kLeft, kCentre, kRight };

struct TextStyle {
  double size;  // of the em
  Colour colour;
  bool bold = false;
  Align align = Align::kLeft;
  bool upwards = false;  // rotated to read from bottom to top; align is along the text
};

constexpr Colour kInk{0x22, 0x26, 0x2b};
constexpr Colour kFaintInk{0x5b, 0x63, 0x6c};
constexpr Colour kWarningInk{0xb0, 0x2a, 0x1c};
constexpr Colour kGridLine{0xd9, 0xdd, 0xe2};
constexpr Colour kPaper{0xff, 0xff, 0xff};

class Canvas {
 public:
  // A white canvas of width x height units; each unit is `scale` pixels wide.
  Canvas(double width, double height, double scale);

  const ColourPicture& picture() const { return picture_; }

  // Edges of boxes are rounded to whole pixels.
  void Fill(const Box& box, Colour colour);
  // The outline is outside the box.
  void Outline(const Box& box, double lineWidth, Colour colour);
  void Line(const std::vector<Point>& points, double lineWidth, Colour colour);
  // Scales the picture to the box by area averages, so that enlarged pixels stay rectangles.
  void Paste(const Box& box, const ColourPicture& picture);

  // Draws UTF-8 text in DejaVu Sans. Its baseline starts, is centred or ends at the point.
  void Text(Point baseline, const std::string& text, const TextStyle& style);
  // If the text is wider than `width`, cuts it at a space or letter and appends an ellipsis.
  std::string Shortened(std::string text, const TextStyle& style, double width) const;
  double TextWidth(const std::string& text, const TextStyle& style) const;

 private:
  void Blend(int x, int y, Colour colour, double coverage);

  double scale_;
  ColourPicture picture_;
};

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_CANVAS_CANVAS_H
