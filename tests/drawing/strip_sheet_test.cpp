// Tests that the strip of one letter shows every image inside its area.
#include "drawing/strip_sheet.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/drawing/blank_margin.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::drawing {
namespace {

// Images of one grey: 188 is the sRGB value of the light 0.5.
SimulatedEye WithStrip(std::size_t lenses) {
  SimulatedEye simulated = PhysicallySimulated(PerfectEye(Millimetres(3.0)), {{1.0, Gap::kUp}});
  SizedImage image;
  image.object = {{Plane(90, 90)}, {1.0}, ArcMinutes(0.3)};
  image.seen = {Plane(90, 90)};
  std::fill(image.seen[0].begin(), image.seen[0].end(), 0.5);
  FocusStrip strip;
  for (std::size_t i = 0; i < lenses; ++i) strip.steps.push_back({-20.0 + 0.25 * static_cast<double>(i), image});
  simulated.strip = strip;
  return simulated;
}

std::ptrdiff_t Greys(const ColourPicture& sheet) {
  return std::count_if(sheet.pixels.begin(), sheet.pixels.end(),
                       [](const Colour& c) { return c.red == 188 && c.green == 188 && c.blue == 188; });
}

TEST(StripSheet, ShowsOneLens) {
  const ColourPicture sheet = DrawStripSheet(WithStrip(1));
  EXPECT_NEAR(static_cast<double>(Greys(sheet)), 180.0 * 180.0, 200.0);
  EXPECT_TRUE(HasBlankMargin(sheet, 56, 20));
}

TEST(StripSheet, ShowsTenLargePanelsAndTwentySmallOnes) {
  const ColourPicture ten = DrawStripSheet(WithStrip(10)), twenty = DrawStripSheet(WithStrip(20));
  EXPECT_NEAR(static_cast<double>(Greys(ten)), 10.0 * 180.0 * 180.0, 500.0);
  EXPECT_NEAR(static_cast<double>(Greys(twenty)), 20.0 * 90.0 * 90.0, 500.0);
  EXPECT_TRUE(HasBlankMargin(twenty, 56, 20));
}

TEST(StripSheet, SizesHaveTheirNames) {
  EXPECT_EQ(LetterSizeText(0.0), "logMAR 0, decimal acuity 1, letters 5\u2032 high");
}

}  // namespace
}  // namespace orvanel::drawing
