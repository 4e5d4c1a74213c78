// Tests ownership and layout of planes.
#include "orvanel/grid_plane.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <type_traits>
#include <utility>

namespace orvanel {
namespace {

static_assert(!std::is_copy_constructible_v<GridPlane> && !std::is_copy_assignable_v<GridPlane>);
static_assert(std::is_nothrow_move_constructible_v<GridPlane>);

TEST(GridPlane, IsRowMajorFromTheTop) {
  GridPlane plane(6);
  plane(2, 5) = 7.25;
  EXPECT_EQ(plane[2 * 6 + 5], 7.25);
  EXPECT_EQ(plane.data()[17], 7.25);
}

TEST(GridPlane, StartsWithZerosOnACacheLine) {
  const GridPlane plane(33);
  EXPECT_EQ(plane.size(), 1089u);
  EXPECT_TRUE(std::all_of(plane.begin(), plane.end(), [](double v) { return v == 0.0; }));
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(plane.data()) % 64, 0u);
}

TEST(GridPlane, OfASideBelowOneHoldsNothing) {
  for (const int side : {0, -3}) {
    const GridPlane plane(side);
    EXPECT_EQ(plane.data(), nullptr);
    EXPECT_EQ(plane.size(), 0u);
  }
}

TEST(GridPlane, OfASideOfOneHoldsOneSample) {
  const GridPlane plane(1);
  EXPECT_EQ(plane.size(), 1u);
  ASSERT_NE(plane.data(), nullptr);
  EXPECT_EQ(plane(0, 0), 0.0);
}

TEST(GridPlane, OfMoreThanThereIsThrowsOrHoldsNothing) {
  constexpr int kHuge = 2147483647;  // 2^65 bytes
  EXPECT_THROW(GridPlane{kHuge}, std::bad_alloc);
  const GridPlane plane(std::nothrow, kHuge);
  EXPECT_EQ(plane.data(), nullptr);
  EXPECT_EQ(plane.size(), 0u);
  EXPECT_EQ(GridPlane(std::nothrow, 3).size(), 9u);
}

TEST(GridPlane, MovesItsSamples) {
  GridPlane plane(3);
  plane(1, 2) = 4.5;
  const double* const samples = plane.data();
  const GridPlane moved = std::move(plane);
  EXPECT_EQ(moved.data(), samples);
  EXPECT_EQ(moved(1, 2), 4.5);
  EXPECT_EQ(plane.side(), 0);  // NOLINT(bugprone-use-after-move): it holds nothing
  EXPECT_EQ(plane.begin(), plane.end());
  GridPlane assigned(2);
  assigned = GridPlane(4);
  EXPECT_EQ(assigned.side(), 4);
}

}  // namespace
}  // namespace orvanel
