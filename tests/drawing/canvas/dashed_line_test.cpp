// Tests the lengths of dashes and gaps, also around corners.
#include "drawing/canvas/dashed_line.h"

#include <gtest/gtest.h>

#include "drawing/canvas/canvas.h"

namespace orvanel::drawing {
namespace {

bool IsDark(const Canvas& canvas, int x, int y) {
  const ColourPicture& picture = canvas.picture();
  return picture.pixels[static_cast<std::size_t>(y * picture.width + x)].red < 128;
}

TEST(DashedLine, HasDashesAndGaps) {
  Canvas canvas(100, 20, 1.0);
  DrawLine(canvas, {{10.0, 10.0}, {90.0, 10.0}}, {kInk, 3.0, {12.0, 20.0}});
  for (int start = 10; start < 90; start += 20) {
    EXPECT_TRUE(IsDark(canvas, start + 5, 10)) << start;
    EXPECT_FALSE(IsDark(canvas, start + 16, 10)) << start;
  }
}

TEST(DashedLine, GoesOnAroundACorner) {
  Canvas canvas(60, 60, 1.0);
  DrawLine(canvas, {{10.0, 10.0}, {16.0, 10.0}, {16.0, 50.0}}, {kInk, 3.0, {12.0, 20.0}});
  EXPECT_TRUE(IsDark(canvas, 16, 13));   // 9 after the start
  EXPECT_FALSE(IsDark(canvas, 16, 20));  // 16
  EXPECT_TRUE(IsDark(canvas, 16, 30));   // 26
}

TEST(DashedLine, IsWholeWithoutAPeriod) {
  Canvas canvas(100, 20, 1.0);
  DrawLine(canvas, {{10.0, 10.0}, {90.0, 10.0}}, {kInk, 3.0});
  for (int x = 12; x < 88; ++x) EXPECT_TRUE(IsDark(canvas, x, 10)) << x;
}

}  // namespace
}  // namespace orvanel::drawing
