// Tests the two walks: their steps, their results, and the state of the engine after them.
#include "models/classic/best_focus.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/temporary_folder.h"

namespace orvanel {
namespace {

using Coefficients = std::array<double, kCoefficients>;

constexpr double kWave = kWavelength;

// Spherical aberration with some coma and astigmatism, out of focus.
Coefficients OutOfFocus() {
  Coefficients c{};
  c[0] = 0.3;
  c[3] = 0.21 * kWave;
  c[4] = 0.34 * kWave;
  c[5] = -0.16 * kWave;
  c[8] = 0.08 * kWave;
  c[12] = 0.12 * kWave;
  return c;
}

double StrehlAt(Coefficients c, double defocus, int includeAstigmatism) {
  c[4] = defocus;
  OpticsEngine engine(c.data(), 5.1, 256, includeAstigmatism, 0, 1);
  std::vector<double> psf(65536);
  double pitch = 0.0, strehl = 0.0;
  engine.ComputePsf(kSearchWavelength, psf.data(), &pitch, &strehl, 256);
  return strehl;
}

// A folder of its own as the current directory.
class InScratchFolder : public testing::Test {
  const test::ScratchFolder folder_;
};

// ---- The walk itself

TEST(Walk, GoesOnWhileItGainsAndTurnsOnce) {
  std::vector<double> visited;
  double position = 3.0;
  const auto value = [&] {
    visited.push_back(position);
    return -std::fabs(position - 1.25);
  };
  EXPECT_EQ(Walk(position, 0.5, value, std::greater<>()).defocus, 1.5);  // the last that gained: 1.0 is no gain
  EXPECT_EQ(visited, (std::vector<double>{3.0, 3.5, 2.5, 2.0, 1.5, 1.0}));
}

TEST(Walk, KeepsTheBestValueWhenItTurns) {
  // From the top itself both sides lose.
  double position = 1.25;
  const auto value = [&] { return -std::fabs(position - 1.25); };
  EXPECT_EQ(Walk(position, 0.5, value, std::greater<>()).defocus, 1.25);
}

TEST(Walk, EqualCountsAsNoGain) {
  std::vector<double> visited;
  double position = 2.0;
  const auto value = [&] {
    visited.push_back(position);
    return 7.0;
  };
  EXPECT_EQ(Walk(position, 0.25, value, std::greater<>()).defocus, 2.0);
  EXPECT_EQ(visited, (std::vector<double>{2.0, 2.25, 1.75}));
}

TEST(Walk, EndsOnAStepOfZeroAndOnNan) {
  double position = 2.0;
  EXPECT_EQ(Walk(
                position, 0.0, [&] { return position; }, std::greater<>())
                .defocus,
            2.0);
  EXPECT_EQ(Walk(
                position, 0.5, [] { return std::nan(""); }, std::less<>())
                .defocus,
            2.0);
}

TEST(Walk, StopsAfterItsTrialsWithTheBestOfThem) {
  double position = 0.0;
  const auto value = [&] { return position; };
  const WalkResult upwards = Walk(position, 0.5, value, std::greater<>(), 9);  // gains for ever
  EXPECT_EQ(upwards.defocus, 4.0);
  EXPECT_EQ(upwards.value, 4.0);
  EXPECT_EQ(upwards.trials, 9);
  EXPECT_FALSE(upwards.converged);
  position = 3.0;
  const WalkResult turned = Walk(position, -0.5, value, std::greater<>(), 2);  // the second trial loses
  EXPECT_EQ(turned.defocus, 3.0);
  EXPECT_EQ(turned.trials, 2);
  EXPECT_FALSE(turned.converged);
  position = 1.25;
  const auto hill = [&] { return -std::fabs(position - 1.25); };
  EXPECT_TRUE(Walk(position, 0.5, hill, std::greater<>(), 3).converged);
}

// ---- By the Strehl ratio

TEST(BestFocusByPsf, FindsAMaximumOfTheStrehlRatioAmongItsSteps) {
  for (const double step : {0.05 * kWave, -0.03 * kWave}) {
    Coefficients c = OutOfFocus();
    OpticsEngine engine;
    engine.searchBestFocusByPsf(c.data(), 5.1, step, 1);
    const double best = StrehlAt(c, c[4], 1);
    EXPECT_GT(best, StrehlAt(c, OutOfFocus()[4], 1) + 0.1);
    EXPECT_GE(best, StrehlAt(c, c[4] + step, 1));
    EXPECT_GE(best, StrehlAt(c, c[4] - step, 1));
  }
}

TEST(BestFocusByPsf, WritesDefocusAlone) {
  Coefficients c = OutOfFocus();
  OpticsEngine engine;
  engine.searchBestFocusByPsf(c.data(), 5.1, 0.05 * kWave, 0);
  EXPECT_NE(c[4], OutOfFocus()[4]);
  c[4] = OutOfFocus()[4];
  EXPECT_EQ(c, OutOfFocus());
}

TEST(BestFocusByPsf, LeavesTheLastTrialBehind) {
  Coefficients c = OutOfFocus();
  OpticsEngine engine;
  engine.searchBestFocusByPsf(c.data(), 5.1, 0.05 * kWave, 1);
  // Up loses at once, so that the walk goes down and its last trial lies one step below the result.
  Coefficients last = c;
  last[4] = c[4] - 0.05 * kWave;
  const OpticsEngine expected(last.data(), 5.1, 256, 1, 0, 1);
  for (std::size_t i = 0; i < expected.wavefrontPlane.size(); ++i) {
    ASSERT_NEAR(engine.wavefrontPlane[i], expected.wavefrontPlane[i], 1e-18);
  }
  EXPECT_NEAR(engine.strehlRatio, StrehlAt(last, last[4], 1), 1e-12);
  EXPECT_LT(engine.strehlRatio, StrehlAt(c, c[4], 1));
}

TEST(BestFocusByPsf, UsesItsOwnWavelength) {
  EXPECT_EQ(std::bit_cast<std::uint64_t>(kSearchWavelength), 0x3F4340CF7E020E78u);
  Coefficients c = OutOfFocus();
  OpticsEngine engine(64);
  engine.searchBestFocusByPsf(c.data(), 5.1, 0.05 * kWave, 1);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(engine.psfWavelength), 0x3F4340CF7E020E78u);
}

TEST(BestFocusByPsf, LeavesAstigmatismOutUnlessToldOtherwise) {
  for (const int includeAstigmatism : {0, 1}) {
    Coefficients c = OutOfFocus();
    OpticsEngine engine;
    engine.searchBestFocusByPsf(c.data(), 5.1, 0.05 * kWave, includeAstigmatism);
    Coefficients last = c;
    last[4] = c[4] - 0.05 * kWave;
    EXPECT_NEAR(engine.strehlRatio, StrehlAt(last, last[4], includeAstigmatism), 1e-12);
  }
}

TEST(BestFocusByPsf, ThatCannotBeBetteredReturnsItsStartToRounding) {
  Coefficients c{};
  c[4] = 1e-19;
  OpticsEngine engine;
  engine.searchBestFocusByPsf(c.data(), 3.0, 0.1 * kWave, 1);
  EXPECT_NEAR(c[4], 1e-19, 0.1 * kWave * 1e-15);
}

TEST(BestFocusByPsf, WithoutStrehlRatioReturnsItsStart) {
  Coefficients c = OutOfFocus();
  OpticsEngine engine(64);
  engine.searchBestFocusByPsf(c.data(), 5.1, 0.05 * kWave, 1);
  EXPECT_NEAR(c[4], OutOfFocus()[4], 1e-18);
}

TEST(BestFocusByPsf, TheBoundedWalkGivesTheSame) {
  for (const bool astigmatism : {false, true}) {
    Coefficients c = OutOfFocus();
    OpticsEngine engine;
    const WalkResult walk = engine.WalkByPsf(c.data(), 5.1, {0.05 * kWave, astigmatism});
    EXPECT_EQ(c, OutOfFocus());
    engine.searchBestFocusByPsf(c.data(), 5.1, 0.05 * kWave, astigmatism ? 1 : 0);
    EXPECT_EQ(walk.defocus, c[4]);
    EXPECT_NEAR(walk.value, StrehlAt(c, c[4], astigmatism ? 1 : 0), 1e-12);
    EXPECT_TRUE(walk.converged);
    EXPECT_EQ(engine.WalkByPsf(OutOfFocus().data(), 5.1, {0.05 * kWave, astigmatism, 4}).trials, 4);
  }
}

// ---- By the circle

// An engine whose wavefront is a circle around (0, height) of the given radius, seen from below.
OpticsEngine Spherical(double height, double radius, double pupil) {
  const Coefficients flat{};
  OpticsEngine engine(flat.data(), pupil, 64, 1, 1, 1);
  for (int r = 0; r < 64; ++r) {
    for (int c = 0; c < 64; ++c) {
      if (engine.wavefrontPlane(r, c) == kWavefrontOutside) continue;
      const double dx = (c - 32) / 16.0 * pupil, dy = (r - 32) / 16.0 * pupil;
      engine.wavefrontPlane(r, c) = height - std::sqrt(radius * radius - dx * dx - dy * dy);
    }
  }
  return engine;
}

class BestFocusByFit : public InScratchFolder {};

TEST_F(BestFocusByFit, ACircleDeviatesFromItselfByNothing) {
  EXPECT_NEAR(DeviationFromCircle(Spherical(5.0, 8.0, 3.0)), 0.0, 1e-12);
  EXPECT_NEAR(DeviationFromCircle(Spherical(-2.5, 6.0, 4.4)), 0.0, 1e-12);
}

TEST_F(BestFocusByFit, DeviationIsTheRootMeanSquareOfWhatIsLeft) {
  // A ripple too fine for the fit to follow, of mean square 1e-4 / 2 on the samples.
  OpticsEngine engine = Spherical(5.0, 8.0, 3.0);
  for (int r = 0; r < 64; ++r) {
    for (int c = 0; c < 64; ++c) {
      if (engine.wavefrontPlane(r, c) != kWavefrontOutside) {
        engine.wavefrontPlane(r, c) += (r + c) % 2 == 0 ? 1e-4 : -1e-4;
      }
    }
  }
  EXPECT_NEAR(DeviationFromCircle(engine), 1e-4, 1e-6);
}

TEST_F(BestFocusByFit, EverySampleButTheMarkerCounts) {
  OpticsEngine engine = Spherical(5.0, 8.0, 3.0);
  engine.wavefrontPlane(32, 32) = 999.5;  // not the marker
  EXPECT_GT(DeviationFromCircle(engine), 1.0);
}

TEST_F(BestFocusByFit, OnAFlatWavefrontTheFitGivesUpWithTheMatrixLibrarysMessage) {
  const Coefficients flat{};
  const OpticsEngine engine(flat.data(), 3.0, 64, 1, 1, 1);
  testing::internal::CaptureStdout();
  const double deviation = DeviationFromCircle(engine);
  const std::string printed = testing::internal::GetCapturedStdout();
  EXPECT_NE(printed.find("= 1 x 1 "), std::string::npos);
  EXPECT_NE(printed.find("= 2 x 1 "), std::string::npos);
  // a = b = 0: the fitted height is -r.
  double sum = 0.0;
  int count = 0;
  for (std::size_t i = 0; i < engine.wavefrontPlane.size(); ++i) {
    if (engine.wavefrontPlane[i] == kWavefrontOutside) continue;
    sum += std::pow(engine.pupilXPlane[i], 2) + std::pow(engine.pupilYPlane[i], 2);
    ++count;
  }
  EXPECT_NEAR(deviation, std::sqrt(sum / count), 1e-12);
}

TEST_F(BestFocusByFit, WalksToTheSmallestDeviationAmongItsSteps) {
  // Deep wavefronts of millimetres, where the deviation has a minimum within reach.
  Coefficients c{};
  c[4] = 2.0;
  c[12] = 0.02;
  const double step = 0.05;
  const auto deviationAt = [&](double defocus) {
    Coefficients trial = c;
    trial[4] = defocus;
    return DeviationFromCircle(OpticsEngine(trial.data(), 3.0, 64, 1, 0, 1));
  };
  Coefficients found = c;
  OpticsEngine engine(64);
  engine.searchBestFocusByFit(found.data(), 3.0, step, 1);
  EXPECT_LT(deviationAt(found[4]), deviationAt(c[4]));
  EXPECT_LE(deviationAt(found[4]), deviationAt(found[4] + step));
  EXPECT_LE(deviationAt(found[4]), deviationAt(found[4] - step));
  found[4] = c[4];
  EXPECT_EQ(found, c);
}

TEST_F(BestFocusByFit, RunsNoPsf) {
  Coefficients c{};
  c[4] = 2.0;
  OpticsEngine engine(64);
  engine.psfPlane(3, 4) = 0.625;
  engine.psfWavelength = 1.0;
  engine.otfValid = 1;
  engine.strehlRatio = 0.75;
  engine.searchBestFocusByFit(c.data(), 3.0, 0.05, 1);
  EXPECT_EQ(engine.psfPlane(3, 4), 0.625);
  EXPECT_EQ(engine.psfWavelength, 0.0);
  EXPECT_EQ(engine.otfValid, 1);
  EXPECT_EQ(engine.strehlRatio, 0.75);
}

TEST_F(BestFocusByFit, CreatesOrEmptiesItsFile) {
  Coefficients c{};
  c[4] = 2.0;
  OpticsEngine engine(64);
  engine.searchBestFocusByFit(c.data(), 3.0, 0.05, 1);
  EXPECT_TRUE(std::filesystem::exists("tmp_test.txt"));
  EXPECT_EQ(std::filesystem::file_size("tmp_test.txt"), 0u);
  std::ofstream("tmp_test.txt") << "left from before";
  engine.searchBestFocusByFit(c.data(), 3.0, 0.05, 1);
  EXPECT_EQ(std::filesystem::file_size("tmp_test.txt"), 0u);
}

TEST_F(BestFocusByFit, TheBoundedWalkGivesTheSameAndIsSilent) {
  Coefficients c{};
  c[4] = 2.0;
  c[12] = 0.02;
  OpticsEngine engine(64);
  testing::internal::CaptureStdout();
  const WalkResult walk = engine.WalkByFit(c.data(), 3.0, {0.05});
  const Coefficients flat{};
  const CircleFit unsolved = FitCircle(OpticsEngine(flat.data(), 3.0, 64, 1, 1, 1));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_FALSE(std::filesystem::exists("tmp_test.txt"));
  EXPECT_FALSE(unsolved.solved);
  EXPECT_EQ(unsolved.a, 0.0);
  EXPECT_EQ(unsolved.b, 0.0);
  engine.searchBestFocusByFit(c.data(), 3.0, 0.05, 1);
  EXPECT_EQ(walk.defocus, c[4]);
  EXPECT_TRUE(walk.converged);
}

TEST_F(BestFocusByFit, TheFitHasTheCirclesCentreAndRadius) {
  // (w - 5)^2 + r^2 = 64: a = -2 * 5, b = 5^2 - 8^2.
  const CircleFit fit = FitCircle(Spherical(5.0, 8.0, 3.0));
  EXPECT_TRUE(fit.solved);
  EXPECT_NEAR(fit.a, -10.0, 1e-10);
  EXPECT_NEAR(fit.b, -39.0, 1e-10);
  EXPECT_NEAR(fit.deviation, 0.0, 1e-12);
}

}  // namespace
}  // namespace orvanel
