// Tests that the sheet stays inside its area, and has its images in their panels.
#include "drawing/correction_sheet.h"

#include <gtest/gtest.h>

#include <cmath>

#include "models/model.h"
#include "tests/drawing/blank_margin.h"
#include "tests/eye/eyes.h"

namespace orvanel::drawing {
namespace {

CorrectionSheet SheetOf(double without, double best) {
  CorrectionSheet sheet;
  sheet.name = std::string(200, 'W');
  sheet.conditions = std::string(60, 'W') + " " + std::string(60, 'W');
  sheet.side = Side::kOs;
  sheet.view.logMar = {0.1};
  sheet.view.chart.luminance = Plane(90, 45, 1.0);
  sheet.view.without = Plane(90, 45, without);
  sheet.view.best = Plane(90, 45, best);
  sheet.view.inCase = Plane(90, 45, 1.0);
  return sheet;
}

TEST(CorrectionSheet, LeavesItsMarginBlank) {
  EXPECT_TRUE(HasBlankMargin(DrawCorrectionSheet(SheetOf(0.0, 0.0), {}), 56, 20));
}

TEST(CorrectionSheet, HasTheImageWithoutALensAboveThatWithTheBestOnTheOtherSide) {
  const ColourPicture picture = DrawCorrectionSheet(SheetOf(0.0, 1.0), {});
  const ColourPicture other = DrawCorrectionSheet(SheetOf(1.0, 0.0), {});
  const auto darkness = [](const ColourPicture& drawn, bool left, bool top) {
    long count = 0;
    for (int y = 0; y < drawn.height; ++y) {
      for (int x = 0; x < drawn.width; ++x) {
        if ((x < drawn.width / 2) != left || (y < drawn.height / 2) != top) continue;
        if (drawn
                .pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(drawn.width) +
                        static_cast<std::size_t>(x)]
                .red == 0) {
          ++count;
        }
      }
    }
    return count;
  };
  constexpr long kPanel = 900 * 450;
  EXPECT_GE(darkness(picture, false, true), kPanel);
  EXPECT_LT(darkness(picture, true, false), kPanel / 10);
  EXPECT_GT(darkness(other, true, false), kPanel / 2);
  EXPECT_LT(darkness(other, false, true), kPanel / 10);
}

}  // namespace
}  // namespace orvanel::drawing
