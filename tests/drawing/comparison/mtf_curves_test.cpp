// Tests that the curves stay inside their area, and that both eyes have one.
#include "drawing/comparison/mtf_curves.h"

#include <gtest/gtest.h>

#include "drawing/canvas/canvas.h"
#include "drawing/plane_figure.h"
#include "tests/drawing/blank_margin.h"

namespace orvanel::drawing {
namespace {

Results WithCurve(double pupil, double height) {
  Results results;
  results.pupil = Millimetres(pupil);
  results.sectionStep = CyclesPerDegree(pupil);
  results.physical.emplace();
  results.physical->cutOff = CyclesPerDegree(128.0 * pupil);
  results.physical->mean = Curve(129, height);
  results.diffractionLimit = Curve(129, 0.9);
  return results;
}

// The row of the highest pixel of a colour in a column of pixels; -1 if there is none.
int RowOf(const ColourPicture& picture, int x, Colour colour) {
  for (int y = 0; y < picture.height; ++y) {
    const Colour c = picture.pixels[static_cast<std::size_t>(y * picture.width + x)];
    if (c.red == colour.red && c.green == colour.green && c.blue == colour.blue) return y;
  }
  return -1;
}

ColourPicture Drawn(const Results& a, const Results& b) {
  Canvas canvas(kMtfCurvesWidth, kFigureHeight, 1.0);
  DrawMtfCurves(canvas, {0.0, 0.0}, a, b);
  return canvas.picture();
}

constexpr Colour kOfA{0x1f, 0x5f, 0xbf};

TEST(MtfCurves, StayInsideTheirArea) {
  Canvas canvas(kMtfCurvesWidth + 60.0, kFigureHeight + 60.0, 1.0);
  DrawMtfCurves(canvas, {30.0, 30.0}, WithCurve(3.0, 1.0), WithCurve(6.0, 0.0));
  EXPECT_TRUE(HasBlankMargin(canvas.picture(), 30));
}

TEST(MtfCurves, AreAtTheirHeight) {
  // The plot spans 72 to 456; its axis reaches to the higher cut-off, so that the smaller pupil's curve ends halfway.
  const ColourPicture picture = Drawn(WithCurve(3.0, 0.25), WithCurve(6.0, 0.75));
  EXPECT_NEAR(RowOf(picture, 200, kOfA), 456.0 - 0.25 * 384.0, 3.0);
  EXPECT_EQ(RowOf(picture, 600, kOfA), -1) << "behind its cut-off";
}

TEST(MtfCurves, ACurveThatIsMissingIsLeftOut) {
  Results a = WithCurve(3.0, 0.25);
  a.physical->mean.clear();
  EXPECT_EQ(RowOf(Drawn(a, WithCurve(3.0, 0.75)), 200, kOfA), -1);
}

}  // namespace
}  // namespace orvanel::drawing
