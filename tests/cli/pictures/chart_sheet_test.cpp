// The chart keeps to its area, and grows with its rings.
#include "cli/pictures/chart_sheet.h"

#include <gtest/gtest.h>

#include "tests/cli/blank_margin.h"
#include "tests/cli/simulated_eyes.h"

namespace orvanel::cli {
namespace {

std::vector<RingRequest> Rings(const std::vector<double>& acuities, const std::vector<Gap>& gaps) {
  std::vector<RingRequest> rings;
  for (const double acuity : acuities) {
    for (const Gap gap : gaps) rings.push_back({acuity, gap});
  }
  return rings;
}

const std::vector<Gap> kAll = {Gap::kDown, Gap::kUp, Gap::kRight, Gap::kLeft};

ColourPicture Chart(Eye eye, const std::vector<RingRequest>& rings) {
  return DrawChart(ResultsOf(std::move(eye), rings));
}

TEST(ChartSheet, LeavesItsMarginBlankWhateverTheEyeAndTheRings) {
  Eye eye = AsymmetricEye();
  eye.name = std::string(300, 'W');
  eye.source = std::string(900, 'W');
  for (const auto& rings : {Rings({1.0}, {Gap::kUp}), Rings({0.012345678, 0.5, 1.2345678}, kAll),
                            Rings({0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1.0}, {Gap::kLeft})}) {
    EXPECT_TRUE(HasBlankMargin(Chart(eye, rings), 30)) << rings.size();
  }
  EXPECT_TRUE(HasBlankMargin(Chart(PerfectEye(Millimetres(0.0123)), Rings({0.001}, kAll)), 30));
}

TEST(ChartSheet, HasARowForEachAcuityAndAColumnForEachGap) {
  const ColourPicture one = Chart(AsymmetricEye(), Rings({0.5}, kAll));
  const ColourPicture three = Chart(AsymmetricEye(), Rings({0.5, 1.0, 1.5}, kAll));
  const ColourPicture two = Chart(AsymmetricEye(), Rings({0.5, 1.0}, kAll));
  EXPECT_EQ(three.width, one.width);
  EXPECT_EQ(three.height - two.height, two.height - one.height);
  EXPECT_EQ(Chart(AsymmetricEye(), Rings({0.5, 1.0, 1.5}, {Gap::kUp})).height, one.height);
}

}  // namespace
}  // namespace orvanel::cli
