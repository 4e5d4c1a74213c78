// A figure as vector graphics, for papers. Source: Scalable Vector Graphics (SVG) 1.1, second edition.
#ifndef ORVANEL_DRAWING_CANVAS_SVG_H
#define ORVANEL_DRAWING_CANVAS_SVG_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "drawing/canvas/surface.h"

namespace orvanel::drawing {

// Text stays text, in the family DejaVu Sans. Each text states its width, so that another family has the same layout.
// Pictures are embedded as PNG files. Coordinates are rounded to hundredths of a unit; the same calls give the same
// bytes.
class Svg final : public Surface {
 public:
  // White, of width x height units; each unit is `scale` CSS pixels wide.
  Svg(double width, double height, double scale);

  // The bytes of the file.
  std::string file() const { return text_ + "</svg>\n"; }

  void Fill(const Box& box, Colour colour) override;
  void Outline(const Box& box, double lineWidth, Colour colour) override;
  void Line(const std::vector<Point>& points, double lineWidth, Colour colour) override;
  void Paste(const Box& box, const ColourPicture& picture) override;
  void Text(Point baseline, const std::string& text, const TextStyle& style) override;
  double TextWidth(const std::string& text, const TextStyle& style) const override;

 private:
  std::string text_;
};

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_CANVAS_SVG_H
