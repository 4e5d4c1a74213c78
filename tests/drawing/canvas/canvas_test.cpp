// Tests the positions of shapes, pictures and text.
#include "drawing/canvas/canvas.h"

#include <gtest/gtest.h>

namespace orvanel::drawing {
namespace {

constexpr Colour kRed{200, 10, 20}, kBlue{5, 15, 220};

bool operator==(Colour a, Colour b) { return a.red == b.red && a.green == b.green && a.blue == b.blue; }

Colour At(const Canvas& canvas, int x, int y) {
  return canvas.picture().pixels[static_cast<std::size_t>(y * canvas.picture().width + x)];
}

// The smallest box around all that is not white.
Box InkOf(const Canvas& canvas) {
  int left = canvas.picture().width, top = canvas.picture().height, right = 0, bottom = 0;
  for (int y = 0; y < canvas.picture().height; ++y) {
    for (int x = 0; x < canvas.picture().width; ++x) {
      if (At(canvas, x, y) == kPaper) continue;
      left = std::min(left, x);
      right = std::max(right, x + 1);
      top = std::min(top, y);
      bottom = std::max(bottom, y + 1);
    }
  }
  return {static_cast<double>(left), static_cast<double>(top), static_cast<double>(right - left),
          static_cast<double>(bottom - top)};
}

TEST(Canvas, BoxesCoverWholePixelsAtTheScale) {
  Canvas canvas(20, 10, 2.0);
  EXPECT_EQ(canvas.picture().width, 40);
  EXPECT_EQ(canvas.picture().height, 20);
  canvas.Fill({3, 1, 4, 2}, kRed);
  const Box ink = InkOf(canvas);
  EXPECT_EQ(ink.x, 6);
  EXPECT_EQ(ink.y, 2);
  EXPECT_EQ(ink.width, 8);
  EXPECT_EQ(ink.height, 4);
}

TEST(Canvas, WhatLiesOutsideIsCutOff) {
  Canvas canvas(8, 8, 1.0);
  canvas.Fill({-5, -5, 7, 6}, kRed);
  canvas.Line({{-20, 4}, {40, 4}}, 1.0, kBlue);
  canvas.Text({4, 4}, "outside", {20, kInk});
  EXPECT_TRUE(At(canvas, 1, 0) == kRed);
}

TEST(Canvas, APictureTwiceAsLargeShowsEachPixelAsASquare) {
  Canvas canvas(6, 6, 1.0);
  canvas.Paste({1, 2, 4, 2}, {2, 1, {kRed, kBlue}});
  for (int y = 2; y < 4; ++y) {
    EXPECT_TRUE(At(canvas, 1, y) == kRed && At(canvas, 2, y) == kRed);
    EXPECT_TRUE(At(canvas, 3, y) == kBlue && At(canvas, 4, y) == kBlue);
  }
  EXPECT_TRUE(At(canvas, 0, 2) == kPaper && At(canvas, 5, 2) == kPaper && At(canvas, 1, 4) == kPaper);
}

TEST(Canvas, AShrunkPictureKeepsItsMeanColour) {
  Canvas canvas(1, 1, 1.0);
  canvas.Paste({0, 0, 1, 1}, {2, 1, {{100, 0, 40}, {200, 50, 60}}});
  EXPECT_TRUE(At(canvas, 0, 0) == (Colour{150, 25, 50}));
}

TEST(Canvas, ALineHasItsWidthAndNoDarkJoints) {
  Canvas canvas(40, 20, 1.0);
  canvas.Line({{5, 10}, {20, 10}, {35, 10}}, 4.0, {100, 100, 100});
  EXPECT_TRUE(At(canvas, 12, 9) == (Colour{100, 100, 100}));
  EXPECT_TRUE(At(canvas, 20, 7) == At(canvas, 12, 7)) << "at the joint";
  EXPECT_TRUE(At(canvas, 12, 6) == kPaper && At(canvas, 12, 13) == kPaper);
}

TEST(Canvas, TextLiesWhereItsAlignmentSays) {
  const TextStyle left{20, kInk};
  TextStyle centre = left, right = left;
  centre.align = Align::kCentre;
  right.align = Align::kRight;
  Canvas canvas(300, 60, 1.0);
  const double width = canvas.TextWidth("Hamburg", left);
  for (const auto& [style, start] : {std::pair{left, 150.0}, {centre, 150.0 - width / 2}, {right, 150.0 - width}}) {
    Canvas drawn(300, 60, 1.0);
    drawn.Text({150, 40}, "Hamburg", style);
    const Box ink = InkOf(drawn);
    EXPECT_NEAR(ink.x, start, 3.0);
    EXPECT_NEAR(ink.width, width, 4.0);
    EXPECT_GT(ink.bottom(), 41.0) << "the g descends";
    EXPECT_LT(ink.y, 28.0);
  }
}

TEST(Canvas, UpwardTextRunsFromBottomToTop) {
  Canvas flat(100, 100, 1.0), turned(100, 100, 1.0);
  flat.Text({10, 50}, "pupil", {20, kInk});
  turned.Text({50, 90}, "pupil", {20, kInk, false, Align::kLeft, true});
  const Box a = InkOf(flat), b = InkOf(turned);
  EXPECT_EQ(a.width, b.height);
  EXPECT_EQ(a.height, b.width);
  EXPECT_LE(b.bottom(), 91.0);
  EXPECT_GT(b.right(), 51.0) << "descenders point to the right";
}

TEST(Canvas, BoldTextIsWider) {
  const Canvas canvas(10, 10, 1.0);
  EXPECT_GT(canvas.TextWidth("Strehl", {20, kInk, true}), canvas.TextWidth("Strehl", {20, kInk}));
}

TEST(Canvas, TextThatIsNotUtf8IsDrawnAllTheSame) {
  Canvas canvas(200, 60, 1.0);
  canvas.Text({10, 40}, "\xff\xbf\xbf\xbf\xbf\xbf\xbf\x80\xe4", {20, kInk});
  EXPECT_LT(InkOf(canvas).width, 190.0);
}

TEST(Canvas, ShortenedTextFitsAndEndsInAnEllipsis) {
  const Canvas canvas(10, 10, 1.0);
  const TextStyle style{20, kInk};
  EXPECT_EQ(canvas.Shortened("short", style, 200), "short");
  const std::string cut = canvas.Shortened("\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4", style, 60);
  EXPECT_LE(canvas.TextWidth(cut, style), 60.0);
  EXPECT_TRUE(cut.ends_with("\u2026"));
  EXPECT_EQ((cut.size() - 3) % 2, 0U) << "no letter of two bytes is cut in half";
}

TEST(Canvas, ShortenedTextIsAsLongAsFitsHoweverMuchThereIs) {
  const Canvas canvas(10, 10, 1.0);
  const TextStyle style{20, kInk};
  const std::string cut = canvas.Shortened(std::string(1000000, 'n'), style, 300);
  EXPECT_LE(canvas.TextWidth(cut, style), 300.0);
  EXPECT_GT(canvas.TextWidth("n" + cut, style), 300.0);
  EXPECT_EQ(canvas.Shortened("wide", style, 1), "\u2026");
}

}  // namespace
}  // namespace orvanel::drawing
