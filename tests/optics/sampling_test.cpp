// The spacing of samples: worked out by hand, the order of evaluation, and what the engine's results have.
#include "orvanel/sampling.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "optics/elementary.h"
#include "orvanel/optics_engine.h"

namespace orvanel {
namespace {

TEST(Sampling, OfAThreeMillimetrePupilIsAsWorkedOut) {
  EXPECT_EQ(PupilSamples(256), 129);
  EXPECT_NEAR(PsfHalfWidth(129, kWavelength, 3.0), 0.10654421333, 1e-11);
  EXPECT_NEAR(FrequencyStep(256, 0.10654421333), 1.3994789739, 2e-10);
  EXPECT_NEAR(FrequencyRange(256, 1.3994789739), 178.43356918, 2e-8);
}

TEST(Sampling, IsEvaluatedInItsOrderToTheBit) {
  const double h = 0.0731928473;
  EXPECT_EQ(FrequencyStep(256, h, 17.0),
            2.0 * ((256 * 0.25) / h) / (ArcTangent(1.0 / 17.0) * 57.29577951308239) / 255.0);
  EXPECT_EQ(PsfHalfWidth(129, 0.00061, 5.3, 16.7), 32.0 * 16.7 * 0.00061 / 5.3);
}

TEST(Sampling, IsThatOfTheEnginesResults) {
  const std::array<double, kCoefficients> flat{};
  for (const int n : {64, 128, 256}) {
    OpticsEngine engine(flat.data(), 4.3, n, 1, 1, 1);
    std::vector<double> mtf(static_cast<std::size_t>(n * n));
    double step = 0.0;
    engine.ComputeMtf(0.00063, mtf.data(), &step, nullptr, nullptr, nullptr, n);
    EXPECT_EQ(engine.pupilSamples, PupilSamples(n));
    EXPECT_EQ(engine.psfHalfWidth, PsfHalfWidth(PupilSamples(n), 0.00063, 4.3));
    EXPECT_EQ(step, FrequencyStep(n, engine.psfHalfWidth));
  }
}

}  // namespace
}  // namespace orvanel
