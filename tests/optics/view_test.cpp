// Tests views of planes.
#include "optics/view.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace orvanel {
namespace {

TEST(PlaneView, IsRowMajorFromTheTop) {
  std::vector<double> samples(9);
  const PlaneView plane = {samples.data(), 3};
  std::iota(plane.begin(), plane.end(), 0.0);
  EXPECT_EQ(plane.size(), 9U);
  EXPECT_EQ(plane(1, 2), 5.0);
  EXPECT_EQ(plane[5], 5.0);
  EXPECT_EQ(plane.row(2), samples.data() + 6);
  plane(2, 0) = 7.5;
  EXPECT_EQ(samples[6], 7.5);
}

TEST(PlaneView, OfASideBelowOneHasNoSamples) {
  for (const int side : {0, -3}) {
    const PlaneView plane = {nullptr, side};
    EXPECT_EQ(plane.size(), 0U);
    EXPECT_EQ(plane.begin(), plane.end());
  }
}

TEST(PlaneView, ReadsThroughAViewOfConstants) {
  std::vector<double> re = {1.5}, im = {2.5};
  const ComplexView planes = {{re.data(), 1}, {im.data(), 1}};
  const ConstComplexView constants = planes;
  EXPECT_EQ(constants.re(0, 0), 1.5);
  EXPECT_EQ(constants.im(0, 0), 2.5);
}

}  // namespace
}  // namespace orvanel
