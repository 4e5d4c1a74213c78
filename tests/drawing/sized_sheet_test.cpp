// Tests that the sheet of a view of true size stays inside its area and shows both pictures in their colours.
#include "drawing/sized_sheet.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/drawing/blank_margin.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::drawing {
namespace {

SimulatedEye WithView(int columns, int rows) {
  SimulatedEye simulated = PhysicallySimulated(AsymmetricEye(), {{1.0, Gap::kUp}});
  SizedView view;
  view.linear = true;
  view.surround = "the background of the chart";
  for (const double value : {0.2, 0.4, 0.8}) view.image.object.channels.emplace_back(columns, rows, value);
  view.image.object.pixel = ArcMinutes(0.25);
  view.image.seen = view.image.object.channels;
  simulated.sized = view;
  return simulated;
}

TEST(SizedSheet, LeavesItsMarginBlankWhateverTheShape) {
  for (const auto& [columns, rows] : {std::pair{200, 200}, {4096, 3}, {3, 1000}, {1, 1}}) {
    EXPECT_TRUE(HasBlankMargin(DrawSizedView(WithView(columns, rows)), 56, 20)) << columns;
  }
}

TEST(SizedSheet, ShowsBothPicturesInTheirColours) {
  const ColourPicture sheet = DrawSizedView(WithView(100, 50));
  const auto count = std::count_if(sheet.pixels.begin(), sheet.pixels.end(),
                                   [](const Colour& c) { return c.red == 51 && c.green == 102 && c.blue == 204; });
  EXPECT_EQ(count, 2 * 1000 * 500);
}

}  // namespace
}  // namespace orvanel::drawing
