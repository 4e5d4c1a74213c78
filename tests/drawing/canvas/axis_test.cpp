// Tests that ticks are at round values.
#include "drawing/canvas/axis.h"

#include <gtest/gtest.h>

#include <limits>

#include "drawing/canvas/canvas.h"

namespace orvanel::drawing {
namespace {

std::string Texts(const std::vector<Tick>& ticks) {
  std::string texts;
  for (const Tick& tick : ticks) texts += tick.text + " ";
  return texts;
}

TEST(Axis, TicksAreRoundAndInside) {
  EXPECT_EQ(Texts(RoundTicks(-3.2, 3.2, 7)), "\u22123 \u22122 \u22121 0 1 2 3 ");
  EXPECT_EQ(Texts(RoundTicks(0.0, 179.13, 7)), "0 50 100 150 ");
  EXPECT_EQ(Texts(RoundTicks(-0.05, 0.05, 6)), "\u22120.04 \u22120.02 0 0.02 0.04 ");
}

TEST(Axis, TicksIncludeTheEnds) { EXPECT_EQ(Texts(RoundTicks(0.0, 1.0, 5)), "0 0.2 0.4 0.6 0.8 1 "); }

TEST(Axis, AnImpossibleRangeHasNoTicks) {
  EXPECT_TRUE(RoundTicks(2.0, 2.0, 5).empty());
  EXPECT_TRUE(RoundTicks(0.0, std::numeric_limits<double>::infinity(), 5).empty());
}

TEST(Axis, TheFirstValueIsAtTheLeftAndAtTheTop) {
  Canvas canvas(200, 200, 1.0);
  const Box box{50, 50, 100, 100};
  DrawTicks(canvas, box, Edge::kLeft, 4.0, 8.0, {{5.0, ""}});
  DrawTicks(canvas, box, Edge::kBottom, 4.0, 8.0, {{7.0, ""}});
  const auto dark = [&canvas](int x, int y) {
    return canvas.picture().pixels[static_cast<std::size_t>(y * 200 + x)].red < 100;
  };
  EXPECT_TRUE(dark(46, 75)) << "5 lies a quarter of the way down";
  EXPECT_TRUE(dark(125, 153)) << "7 lies three quarters of the way to the right";
}

}  // namespace
}  // namespace orvanel::drawing
