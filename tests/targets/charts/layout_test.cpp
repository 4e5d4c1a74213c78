// Tests the gaps between optotypes, lines and crowding bars against their definitions.
#include "targets/charts/layout.h"

#include <gtest/gtest.h>

namespace orvanel::targets::charts {
namespace {

TEST(Layout, GapsInALineAreOneOptotypeWide) {
  const Layout layout = LayOut({{6.0, {3, 1, 4, 0, 2}}});
  EXPECT_EQ(layout.width, 9.0 * 6.0);
  EXPECT_EQ(layout.height, 6.0);
  ASSERT_EQ(layout.optotypes.size(), 5U);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(layout.optotypes[i].centre, (Point{-24.0 + 12.0 * static_cast<double>(i), 0.0}));
    EXPECT_EQ(layout.optotypes[i].height, 6.0);
  }
  EXPECT_EQ(layout.optotypes[0].optotype, 3);
  EXPECT_EQ(layout.optotypes[4].optotype, 2);
  EXPECT_TRUE(layout.bars.edges().empty());
}

TEST(Layout, GapsBetweenLinesAreAsHighAsTheNextLine) {
  const Layout layout = LayOut({{8.0, {0, 1}}, {4.0, {2, 3}}, {1.0, {4}}});
  EXPECT_EQ(layout.width, 24.0);
  EXPECT_EQ(layout.height, 8.0 + 4.0 + 4.0 + 1.0 + 1.0);
  ASSERT_EQ(layout.optotypes.size(), 5U);
  EXPECT_EQ(layout.optotypes[0].centre, (Point{-8.0, -9.0 + 4.0}));
  EXPECT_EQ(layout.optotypes[2].centre, (Point{-4.0, -9.0 + 8.0 + 4.0 + 2.0}));
  EXPECT_EQ(layout.optotypes[3].centre, (Point{4.0, -9.0 + 8.0 + 4.0 + 2.0}));
  EXPECT_EQ(layout.optotypes[4].centre, (Point{0.0, 9.0 - 0.5}));
}

TEST(Layout, CrowdingBarsAreOneStrokeWideAroundTheOptotype) {
  const Layout layout = LayOutCrowded(7, 10.0, 0.5);
  EXPECT_EQ(layout.width, 10.0 + 2.0 * (5.0 + 2.0));
  EXPECT_EQ(layout.height, layout.width);
  ASSERT_EQ(layout.optotypes.size(), 1U);
  EXPECT_EQ(layout.optotypes[0].centre, Point{});
  EXPECT_DOUBLE_EQ(layout.bars.Area(), 4.0 * 10.0 * 2.0);
  // Right, above, left, below: each from 10 to 12 strokes of 1 from the middle.
  const std::vector<Edge>& edges = layout.bars.edges();
  ASSERT_EQ(edges.size(), 16U);
  EXPECT_EQ(edges[0].from, (Point{10.0, -5.0}));
  EXPECT_EQ(edges[0].to, (Point{12.0, -5.0}));
  EXPECT_EQ(edges[1].to, (Point{12.0, 5.0}));
  EXPECT_EQ(edges[4].from, (Point{-5.0, -10.0}));
  EXPECT_EQ(edges[4].to, (Point{-5.0, -12.0}));
  EXPECT_EQ(edges[8].from, (Point{-10.0, 5.0}));
  EXPECT_EQ(edges[12].from, (Point{5.0, 10.0}));
}

}  // namespace
}  // namespace orvanel::targets::charts
