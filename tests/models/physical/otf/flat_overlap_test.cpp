// The overlap of ellipses against the circle's and the overlap integral.
#include "models/physical/otf/flat_overlap.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "models/physical/otf/otf_overlap.h"
#include "tests/models/physical/examples.h"

namespace orvanel::physical {
namespace {

TEST(FlatOverlap, OfACircle) {
  const FlatOverlap circle{Ellipse{}};
  EXPECT_NEAR(circle.At(0, 0), 1.0, 1e-15);
  // 2/pi (pi/3 - root(3)/4) at half the cut-off.
  EXPECT_NEAR(circle.At(0.3, 0.4), 2.0 / 3.0 - std::sqrt(3.0) / (2.0 * std::numbers::pi), 1e-14);
  EXPECT_EQ(circle.At(0.6, 0.8), 0.0);
}

TEST(FlatOverlap, OfAnEllipseIsTheOverlapIntegral) {
  Pupil pupil = PupilOf({});
  pupil.outline = {0.9, 0.6, 0.7, 0.03, -0.05};
  const FlatOverlap flat(pupil.outline);
  const OtfOverlap overlap(pupil, ActiveChords());
  for (const auto& [x, y] : {std::pair{0.1, 0.2}, {-0.3, 0.1}, {0.5, 0.4}, {0.0, -0.55}}) {
    EXPECT_NEAR(flat.At(x, y), overlap.At(x, y).real(), 1e-9);
  }
}

}  // namespace
}  // namespace orvanel::physical
