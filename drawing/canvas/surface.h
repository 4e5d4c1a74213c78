// What figures are drawn on: boxes, lines, text and pictures, in units.
#ifndef ORVANEL_DRAWING_CANVAS_SURFACE_H
#define ORVANEL_DRAWING_CANVAS_SURFACE_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "files/pictures/png.h"

namespace orvanel::drawing {

// Positions and sizes are in units of the surface; x increases to the right, y downwards.
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

class Surface {
 public:
  virtual void Fill(const Box& box, Colour colour) = 0;
  // The outline is outside the box.
  virtual void Outline(const Box& box, double lineWidth, Colour colour) = 0;
  virtual void Line(const std::vector<Point>& points, double lineWidth, Colour colour) = 0;
  // Scales the picture to the box; enlarged pixels stay rectangles.
  virtual void Paste(const Box& box, const ColourPicture& picture) = 0;

  // Draws UTF-8 text in DejaVu Sans. Its baseline starts, is centred or ends at the point.
  virtual void Text(Point baseline, const std::string& text, const TextStyle& style) = 0;
  virtual double TextWidth(const std::string& text, const TextStyle& style) const = 0;

 protected:
  Surface() = default;
  Surface(const Surface&) = default;
  Surface& operator=(const Surface&) = default;
  ~Surface() = default;
};

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_CANVAS_SURFACE_H
