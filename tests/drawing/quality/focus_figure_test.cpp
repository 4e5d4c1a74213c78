// Tests that the sheet stays inside its area, and that curves and marks are at their places.
#include "drawing/quality/focus_figure.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/drawing/blank_margin.h"

namespace orvanel::drawing {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

FocusCurve CurveOf(const char* name, const char* unit, const std::vector<double>& lenses, double best) {
  FocusCurve curve;
  curve.column.name = name;
  curve.column.unit = unit;
  for (const double lens : lenses) curve.values.push_back(0.8 - (lens - best) * (lens - best));
  curve.optimum = OptimumOf(lenses, curve.values, {true, true, true}, kDepthShares);
  return curve;
}

ThroughFocus Focus(std::size_t ratios, std::size_t widths) {
  ThroughFocus focus;
  focus.lenses = LensesOfRange("-1:1:0.125");
  for (std::size_t i = 0; i < ratios; ++i) focus.curves.push_back(CurveOf("WWWWWWWWWWWW", "1", focus.lenses, 0.25));
  for (std::size_t i = 0; i < widths; ++i) focus.curves.push_back(CurveOf("D50", "arcmin", focus.lenses, -0.9));
  return focus;
}

const FocusSheet kFull{
    std::string(300, 'W'), std::string(100, 'W') + " " + std::string(100, 'W'), {std::string(300, 'W')}};

bool IsBlue(const ColourPicture& picture, int x, int y) {
  const Colour c = picture.pixels[static_cast<std::size_t>(y * picture.width + x)];
  return c.red == 0x00 && c.green == 0x72 && c.blue == 0xb2;
}

TEST(FocusFigure, LeavesItsMarginBlank) {
  EXPECT_TRUE(HasBlankMargin(DrawFocusSheet(kFull, Focus(5, 2)), 40, 40));
  EXPECT_TRUE(HasBlankMargin(DrawFocusSheet(kFull, Focus(1, 0)), 40, 40));
}

TEST(FocusFigure, HasAPlotForEachUnitAndForFiveCurves) {
  const int one = DrawFocusSheet({}, Focus(5, 0)).height;
  const int plot = DrawFocusSheet({}, Focus(3, 1)).height - one;
  EXPECT_GT(plot, 400);
  EXPECT_EQ(DrawFocusSheet({}, Focus(6, 0)).height - one, plot);
  EXPECT_EQ(DrawFocusSheet({}, Focus(5, 5)).height - one, plot);
  EXPECT_EQ(DrawFocusSheet({}, Focus(6, 6)).height - one, 3 * plot);
}

TEST(FocusFigure, TheCurveIsHighestAtItsOptimum) {
  // The first blue row of pixels is the mark of the optimum, 0.25 D of -1 to 1 D.
  const ColourPicture picture = DrawFocusSheet({"An eye", "", {}}, Focus(1, 0));
  int left = 0, right = -1, row = 0;
  for (int y = 0; y < picture.height && right < 0; ++y) {
    for (int x = 0; x < 900; ++x) {
      if (!IsBlue(picture, x, y)) continue;
      if (right < 0) left = x;
      right = x;
      row = y;
    }
  }
  ASSERT_GT(row, 0);
  EXPECT_NEAR((left + right) / 2.0, 48.0 + 96.0 + 760.0 * 1.25 / 2.0, 1.5);
}

TEST(FocusFigure, MissingValuesAndOptimaLeaveGaps) {
  ThroughFocus focus = Focus(1, 0);
  focus.curves[0].values.assign(focus.lenses.size(), kNan);
  focus.curves[0].optimum.reset();
  const ColourPicture picture = DrawFocusSheet({"An eye", "", {}}, focus);
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < 900; ++x) ASSERT_FALSE(IsBlue(picture, x, y)) << x << " " << y;
  }
}

}  // namespace
}  // namespace orvanel::drawing
