// Tests the built-in Siemens star (sector star).
#include "targets/sector_star.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

#include "orvanel/orvanel.h"
#include "orvanel/sector_star.h"

namespace orvanel::targets {
namespace {

TEST(SectorStar, IsBlackAndWhiteAndHasItsLight) {
  const Plane star = SectorStar();
  ASSERT_EQ(star.size(), static_cast<std::size_t>(ORVANEL_PLANE_SAMPLES));
  EXPECT_TRUE(std::all_of(star.begin(), star.end(), [](double v) { return v == 0.0 || v == 1.0; }));
  EXPECT_EQ(std::accumulate(star.begin(), star.end(), 0.0), 32402.0);
}

TEST(SectorStar, AsAPlaneIsThePublicOne) {
  Plane drawn(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, -1.0);
  DrawSectorStar(drawn.data());
  EXPECT_EQ(SectorStar(), drawn);
}

}  // namespace
}  // namespace orvanel::targets
