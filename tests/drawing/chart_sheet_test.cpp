// Tests that the chart stays inside its area and grows with its rings.
#include "drawing/chart_sheet.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "drawing/canvas/canvas.h"
#include "tests/drawing/blank_margin.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::drawing {
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
  return DrawChart(Simulated(std::move(eye), rings));
}

TEST(ChartSheet, LeavesItsMarginBlankWhateverTheEyeAndTheRings) {
  Eye eye = AsymmetricEye();
  eye.name = std::string(300, 'W');
  eye.source = std::string(900, 'W');
  for (const auto& rings : {Rings({1.0}, {Gap::kUp}), Rings({0.012345678, 0.5, 1.2345678}, kAll),
                            Rings({0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1.0}, {Gap::kLeft})}) {
    EXPECT_TRUE(HasBlankMargin(Chart(eye, rings), 56, 24)) << rings.size();
  }
  EXPECT_TRUE(HasBlankMargin(Chart(PerfectEye(Millimetres(0.0123)), Rings({0.001}, kAll)), 56, 24));
}

// Black discs in the place of rings as seen, of 60 and of 20 samples.
TEST(ChartSheet, DrawsAllRingsAtOneMagnification) {
  SimulatedEye simulated = Simulated(AsymmetricEye(), Rings({0.7, 2.2}, {Gap::kUp}));
  constexpr int kSides[] = {60, 20};
  for (std::size_t i = 0; i < 2; ++i) {
    Plane& seen = simulated.results.rings[i].seen;
    seen = Plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE, 1.0);
    const int first = 128 - kSides[i] / 2;
    for (int row = first; row < first + kSides[i]; ++row) {
      for (int column = first; column < first + kSides[i]; ++column) {
        seen[static_cast<std::size_t>(row * ORVANEL_GRID_SIZE + column)] = 0.0;
      }
    }
  }
  const ColourPicture chart = DrawChart(simulated);
  const auto black = std::count_if(chart.pixels.begin(), chart.pixels.end(),
                                   [](const Colour& c) { return c.red == 0 && c.green == 0 && c.blue == 0; });
  // The larger ring's window of 128 samples fills 512 pixels: four for a sample.
  EXPECT_EQ(black, 16 * (60 * 60 + 20 * 20));
}

// The bar, the one thing of its height and colour above the rings, spans what it says: 10 minutes of arc.
TEST(ChartSheet, HasABarOfItsScale) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), Rings({0.7}, {Gap::kUp}));
  const ColourPicture chart = DrawChart(simulated);
  int longest = 0;
  for (int y = 0; y < chart.height; ++y) {
    int run = 0;
    for (int x = 0; x < chart.width; ++x) {
      const Colour& c = chart.pixels[static_cast<std::size_t>(y * chart.width + x)];
      run = c.red == kInk.red && c.green == kInk.green && c.blue == kInk.blue ? run + 1 : 0;
      longest = std::max(longest, run);
    }
  }
  EXPECT_NEAR(longest * simulated.results.scales.library.pitch.value() / 4.0, 10.0, 0.03);
}

TEST(ChartSheet, ShowsARingThatWasAskedForTwiceOnce) {
  const ColourPicture once = Chart(AsymmetricEye(), Rings({0.7}, {Gap::kUp}));
  const ColourPicture twice = Chart(AsymmetricEye(), Rings({0.7, 0.701}, {Gap::kUp}));
  EXPECT_EQ(twice.height, once.height);
  EXPECT_EQ(twice.width, once.width);
}

TEST(ChartSheet, HasARowForEachAcuityAndAColumnForEachGap) {
  const ColourPicture one = Chart(AsymmetricEye(), Rings({0.5}, kAll));
  const ColourPicture three = Chart(AsymmetricEye(), Rings({0.5, 1.0, 1.5}, kAll));
  const ColourPicture two = Chart(AsymmetricEye(), Rings({0.5, 1.0}, kAll));
  EXPECT_EQ(three.width, one.width);
  EXPECT_GT(two.height, one.height);
  EXPECT_GT(three.height, two.height);
  EXPECT_LT(three.height - two.height, two.height - one.height) << "the smaller the rings, the lower their row";
  EXPECT_EQ(Chart(AsymmetricEye(), Rings({0.5, 1.0, 1.5}, {Gap::kUp})).height, one.height);
}

}  // namespace
}  // namespace orvanel::drawing
