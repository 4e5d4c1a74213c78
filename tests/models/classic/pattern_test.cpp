// Tests the retinal image of any picture.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <vector>

#include "orvanel/optics_engine.h"

namespace orvanel {
namespace {

OpticsEngine Eye(int n) {
  std::array<double, kCoefficients> c{};
  c[4] = 0.3 * kWavelength;
  c[7] = 0.2 * kWavelength;
  OpticsEngine engine(c.data(), 3.3, n, 1, 1, 1);
  std::vector<double> psf(engine.psfPlane.size());
  double pitch = 0.0, strehl = 0.0;
  engine.ComputePsf(kWavelength, psf.data(), &pitch, &strehl, n);
  return engine;
}

// Dim stripes that no blur makes brighter than white.
std::vector<double> Stripes(int n) {
  std::vector<double> plane;
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) plane.push_back((r + 2 * c) / 7 % 2 == 0 ? 0.25 : 0.03125);
  }
  return plane;
}

TEST(Pattern, OfAnotherSideIsRefusedUntouched) {
  OpticsEngine engine = Eye(64);
  std::vector<double> image(128 * 128, -1.0);
  const std::vector<double> pattern(128 * 128, 0.5);
  EXPECT_EQ(engine.PatternRetinalImage(image.data(), pattern.data(), 128), 0);
  EXPECT_EQ(engine.PatternRetinalImage(image.data(), pattern.data(), 32), 0);
  EXPECT_TRUE(std::all_of(image.begin(), image.end(), [](double v) { return v == -1.0; }));
  EXPECT_EQ(engine.otfValid, 0);
}

TEST(Pattern, KeepsItsTotalWhereTheFlagIsClear) {
  for (const int n : {64, 128, 256}) {
    OpticsEngine engine = Eye(n);
    engine.normaliseOutput = 0;
    const std::vector<double> pattern = Stripes(n);
    std::vector<double> image(pattern.size());
    EXPECT_EQ(engine.PatternRetinalImage(image.data(), pattern.data(), n), 1);
    const double total = std::accumulate(pattern.begin(), pattern.end(), 0.0);
    EXPECT_NEAR(std::accumulate(image.begin(), image.end(), 0.0), total, total * 1e-12) << n;
    EXPECT_EQ(engine.normaliseOutput, 0);
  }
}

TEST(Pattern, IsStretchedWhereTheFlagIsSet) {
  OpticsEngine engine = Eye(128);
  const std::vector<double> pattern = Stripes(128);
  std::vector<double> image(pattern.size());
  EXPECT_EQ(engine.PatternRetinalImage(image.data(), pattern.data(), 128), 1);
  EXPECT_EQ(*std::min_element(image.begin(), image.end()), 0.0);
  EXPECT_EQ(*std::max_element(image.begin(), image.end()), 1.0);
  EXPECT_EQ(engine.normaliseOutput, 1);
}

TEST(Pattern, GivesTheSameImageEachTime) {
  OpticsEngine engine = Eye(128);
  const std::vector<double> pattern = Stripes(128);
  std::vector<double> first(pattern.size()), second(pattern.size());
  engine.PatternRetinalImage(first.data(), pattern.data(), 128);
  engine.PatternRetinalImage(second.data(), pattern.data(), 128);
  EXPECT_EQ(first, second);
  EXPECT_EQ(pattern, Stripes(128));
}

}  // namespace
}  // namespace orvanel
