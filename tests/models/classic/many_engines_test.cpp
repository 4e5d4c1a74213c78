// Tests that engines are independent: results of one thread do not depend on other threads. Also run under the thread
// sanitizer.
#include <gtest/gtest.h>

#include <array>
#include <thread>
#include <vector>

#include "orvanel/optics_engine.h"

namespace orvanel {
namespace {

using Coefficients = std::array<double, kCoefficients>;

// Everything an engine computes from one eye, in one run of numbers.
std::vector<double> Everything(double scale) {
  Coefficients c{};
  c[3] = 1.1e-4 * scale;
  c[4] = -0.7e-4 * scale;
  c[7] = 1.9e-4 * scale;
  c[16] = 0.4e-4 * scale;
  OpticsEngine engine(c.data(), 3.0 + scale, 256, 1, 1, 1);
  std::vector<double> mtf(65536), image(65536), white(65536);
  std::array<double, 128> row{}, column{}, limit{};
  double step = 0.0, spacing = 0.0;
  engine.ComputeMtf(kWavelength, mtf.data(), &step, row.data(), column.data(), limit.data(), 256);
  engine.PatternRetinalImage(image.data(), mtf.data(), 256);
  engine.PolychromaticPsf(white.data(), &spacing, 0);
  FocusSearch search;
  search.maximumTrials = 4;
  const FocusResult focus = engine.OptimiseFocus(c.data(), 3.0 + scale, search);

  std::vector<double> all;
  const auto append = [&](const auto& plane) {
    for (const double v : plane) all.push_back(v);
  };
  append(mtf);
  append(engine.phasePlane);
  append(image);
  append(white);
  all.push_back(focus.strehl);
  return all;
}

TEST(ManyEngines, GiveTheSameBitsOnTwoThreadsAsOnOne) {
  const std::array<double, 2> scales = {0.8, 2.3};
  std::array<std::vector<double>, 2> together;
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < scales.size(); ++i) {
      threads.emplace_back([&, i] {
        for (int repeat = 0; repeat < 3; ++repeat) together[i] = Everything(scales[i]);
      });
    }
  }
  for (std::size_t i = 0; i < scales.size(); ++i) EXPECT_EQ(together[i], Everything(scales[i]));
}

}  // namespace
}  // namespace orvanel
