// Tests that the sheet stays inside its area, and that both eyes have the same colour scales.
#include "drawing/comparison/comparison_sheet.h"

#include <gtest/gtest.h>

#include <cmath>

#include "metrics/quality_names.h"
#include "tests/drawing/blank_margin.h"
#include "tests/eye/eyes.h"

namespace orvanel::drawing {
namespace {

Eye WithDefocus(double um) {
  Eye eye = PerfectEye(Millimetres(3.0));
  eye.coefficients.Replace({0.0, 0.0, 0.0, 0.0, um});
  return eye;
}

Comparison ComparisonOf(const Eye& a, const Eye& b, bool letters) {
  ComparisonRequest request;
  NameMetrics("all", request.metrics);
  request.planes = true;
  request.letters = letters;
  return Compared(Viewed(a, request), Viewed(b, request));
}

TEST(ComparisonSheet, LeavesItsMarginBlank) {
  Eye longest = AsymmetricEye();
  longest.name = std::string(300, 'W');
  longest.source = std::string(900, 'W');
  longest.side = Side::kOs;
  Eye other = WithDefocus(0.1);
  other.side = Side::kOd;
  EXPECT_TRUE(HasBlankMargin(DrawComparisonSheet(ComparisonOf(longest, other, true)), 40, 20));
}

TEST(ComparisonSheet, WithoutLettersIsShorter) {
  const Eye eye = WithDefocus(0.1);
  EXPECT_GT(DrawComparisonSheet(ComparisonOf(eye, eye, true)).height,
            DrawComparisonSheet(ComparisonOf(eye, eye, false)).height + 600);
}

// The columns of two equal eyes have the same pixels but for their heads; those of a weaker wavefront are paler.
TEST(ComparisonSheet, BothColumnsHaveTheSameColourScales) {
  const ColourPicture equal = DrawComparisonSheet(ComparisonOf(WithDefocus(0.2), WithDefocus(0.2), false));
  const ColourPicture weaker = DrawComparisonSheet(ComparisonOf(WithDefocus(0.2), WithDefocus(0.02), false));
  const auto at = [](const ColourPicture& picture, int x, int y) {
    return picture
        .pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) + static_cast<std::size_t>(x)];
  };
  // The middles of the figures of the wavefront; the plots are 384 wide from 100 on.
  constexpr int kColumn = 720, kX = 60 + 100 + 192;
  const auto plotsMiddle = [&](const ColourPicture& picture) {
    int y = 0;
    while (at(picture, 70, y).red != 0xd9 || at(picture, 70, y).green != 0xdd) ++y;  // the line below the heads
    return y + 10 + 72 + 192;
  };
  const int y = plotsMiddle(equal), other = plotsMiddle(weaker);
  const auto distance = [](Colour c) { return std::abs(c.red - c.blue); };  // from the white in the middle of the map
  EXPECT_EQ(distance(at(equal, kX, y)), distance(at(equal, kX + kColumn, y)));
  EXPECT_GT(distance(at(weaker, kX, other)), 40);
  EXPECT_LT(distance(at(weaker, kX + kColumn, other)), distance(at(weaker, kX, other)) / 3);
}

}  // namespace
}  // namespace orvanel::drawing
