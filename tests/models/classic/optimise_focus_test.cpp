// Tests the optimiser against dense scans and known optima.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "orvanel/optics_engine.h"
#include "orvanel/sampling.h"

namespace orvanel {
namespace {

using Coefficients = std::array<double, kCoefficients>;

constexpr double kWave = kWavelength;

// Where the Strehl ratio is flat to rounding, its place is known to the root of that: 1e-7 of a wave or so.
constexpr double kPlace = 1e-6 * kWave;

double StrehlOf(const Coefficients& c) {
  OpticsEngine engine(c.data(), 4.7, 256, 1, 1, 1);
  std::vector<double> psf(65536);
  double pitch = 0.0, strehl = 0.0;
  engine.ComputePsf(kWave, psf.data(), &pitch, &strehl, 256);
  return strehl;
}

double StrehlWith(Coefficients c, double defocus) {
  c[4] = defocus;
  return StrehlOf(c);
}

// The highest Strehl ratio on a fine grid of defocus.
double BestOfScan(const Coefficients& c, double low, double high, int steps) {
  double best = 0.0;
  for (int i = 0; i <= steps; ++i) best = std::max(best, StrehlWith(c, low + (high - low) * i / steps));
  return best;
}

// W = A rho^4 = A (Z(4,0) / 6 + Z(2,0) / 2 + 1/3).
Coefficients FourthPower(double waves) {
  Coefficients c{};
  c[0] = waves / 3.0 * kWave;
  c[4] = waves / 2.0 * kWave;
  c[12] = waves / 6.0 * kWave;
  return c;
}

FocusResult Optimised(const Coefficients& c, const FocusSearch& search = {}) {
  OpticsEngine engine;
  return engine.OptimiseFocus(c.data(), 4.7, search);
}

TEST(OptimiseFocus, OfDefocusAloneIsZero) {
  for (const double waves : {0.3, -1.7, 3.2}) {
    Coefficients c{};
    c[4] = waves * kWave;
    const FocusResult result = Optimised(c);
    EXPECT_NEAR(result.coefficients[4], 0.0, kPlace) << waves;
    EXPECT_NEAR(result.strehl, 1.0, 1e-12) << waves;
    EXPECT_TRUE(result.converged);
  }
}

TEST(OptimiseFocus, OfALittleFourthPowerLeavesTheBalancedTermAlone) {
  for (const double waves : {0.1, 0.2}) {
    const FocusResult result = Optimised(FourthPower(waves));
    EXPECT_NEAR(result.coefficients[4], 0.0, 0.003 * kWave) << waves;  // up to the disc's sampling
    EXPECT_NEAR(result.coefficients[12], waves / 6.0 * kWave, 1e-20);
    EXPECT_TRUE(result.converged);
  }
}

TEST(OptimiseFocus, MatchesADenseScanWhereBestFocusIsNotThatOfLeastVariance) {
  for (const double waves : {0.5, 1.0, 3.0}) {
    const Coefficients c = FourthPower(waves);
    const FocusResult result = Optimised(c);
    const double scanned = BestOfScan(c, -2.0 * kWave, 2.0 * kWave, 800);
    EXPECT_GE(result.strehl, scanned) << waves;
    EXPECT_LE(result.strehl, scanned + 1e-4) << waves;
    EXPECT_TRUE(result.converged);
  }
}

TEST(OptimiseFocus, FindsTheSameWithAstigmatismAndComaFromEitherSide) {
  Coefficients c = FourthPower(0.8);
  c[3] = 0.12 * kWave;
  c[5] = -0.2 * kWave;
  c[7] = 0.15 * kWave;
  c[8] = 0.1 * kWave;
  const double scanned = BestOfScan(c, -2.0 * kWave, 2.0 * kWave, 800);
  for (const double start : {1.3, 0.1, -1.6}) {
    c[4] = start * kWave;
    const FocusResult result = Optimised(c);
    EXPECT_NEAR(result.strehl, scanned, 1e-4) << start;
    EXPECT_GE(result.strehl, scanned) << start;
    EXPECT_EQ(result.coefficients[3], c[3]);
    EXPECT_EQ(result.coefficients[5], c[5]);
    EXPECT_TRUE(result.converged);
  }
}

TEST(OptimiseFocus, TakesTheHighestOfSeveralMaxima) {
  // Strong astigmatism has a maximum at each line focus; coma along one of them makes them unequal.
  Coefficients c{};
  c[5] = 0.9 * kWave;
  c[8] = 0.12 * kWave;
  std::vector<double> maxima;
  const auto at = [&](int i) { return StrehlWith(c, i * 0.02 * kWave); };
  for (int i = -75; i < 75; ++i) {
    if (at(i) > at(i - 1) && at(i) >= at(i + 1)) maxima.push_back(at(i));
  }
  ASSERT_GE(maxima.size(), 2u);
  const double highest = *std::max_element(maxima.begin(), maxima.end());
  for (const double start : {-1.0, 0.0, 1.0}) {
    c[4] = start * kWave;
    EXPECT_GE(Optimised(c).strehl, highest) << start;
    EXPECT_NEAR(Optimised(c).strehl, highest, 1e-3) << start;
  }
}

TEST(OptimiseFocus, WithAstigmatismRemovesTheWholeSecondOrder) {
  Coefficients c{};
  c[3] = 0.7 * kWave;
  c[4] = -1.1 * kWave;
  c[5] = 0.4 * kWave;
  FocusSearch search;
  search.astigmatism = true;
  const FocusResult result = Optimised(c, search);
  EXPECT_NEAR(result.strehl, 1.0, 1e-12);
  for (const std::size_t j : {std::size_t{3}, std::size_t{4}, std::size_t{5}}) {
    EXPECT_NEAR(result.coefficients[j], 0.0, kPlace) << j;
  }
  EXPECT_TRUE(result.converged);
}

TEST(OptimiseFocus, WithAstigmatismIsBetterThanDefocusAloneAndAtATop) {
  Coefficients c = FourthPower(0.9);
  c[3] = 0.12 * kWave;
  c[5] = -0.2 * kWave;
  c[7] = 0.35 * kWave;
  c[9] = 0.1 * kWave;
  c[13] = 0.09 * kWave;
  FocusSearch search;
  search.astigmatism = true;
  const FocusResult all = Optimised(c, search);
  EXPECT_GT(all.strehl, Optimised(c).strehl);
  EXPECT_TRUE(all.converged);
  EXPECT_EQ(all.strehl, StrehlOf(all.coefficients));
  for (const std::size_t j : {std::size_t{3}, std::size_t{4}, std::size_t{5}}) {
    for (const double side : {-1e-3, 1e-3}) {
      Coefficients beside = all.coefficients;
      beside[j] += side * kWave;
      EXPECT_LE(StrehlOf(beside), all.strehl) << j;
    }
  }
}

TEST(OptimiseFocus, WithManyTermsEndsAtATopToo) {
  // A dozen rounds over directions that it has replaced itself, and back to the axes in between.
  Coefficients c{};
  for (std::size_t j = 3; j < 15; ++j) c[j] = 0.35 * (static_cast<double>((j * 37 + 11) % 19) / 9.0 - 1.0) * kWave;
  FocusSearch search;
  search.astigmatism = true;
  const FocusResult found = Optimised(c, search);
  EXPECT_TRUE(found.converged);
  EXPECT_GT(found.strehl, Optimised(c).strehl);
  for (const double along : {-1e-3, 0.0, 1e-3}) {
    for (const double across : {-1e-3, 0.0, 1e-3}) {
      for (const double deep : {-1e-3, 0.0, 1e-3}) {
        Coefficients beside = found.coefficients;
        beside[3] += along * kWave, beside[4] += deep * kWave, beside[5] += across * kWave;
        EXPECT_LE(StrehlOf(beside), found.strehl) << along << ", " << deep << ", " << across;
      }
    }
  }
}

TEST(OptimiseFocus, LeavesTheEngineWithItsResult) {
  OpticsEngine engine;
  const FocusResult result = engine.OptimiseFocus(FourthPower(0.6).data(), 4.7);
  EXPECT_EQ(engine.strehlRatio, result.strehl);
  const OpticsEngine expected(result.coefficients.data(), 4.7, 256, 1, 1, 1);
  EXPECT_TRUE(
      std::equal(expected.wavefrontPlane.begin(), expected.wavefrontPlane.end(), engine.wavefrontPlane.begin()));
}

TEST(OptimiseFocus, StaysWithinItsBounds) {
  Coefficients c{};
  c[4] = 0.45 * kWave;
  FocusSearch search;
  search.halfRange = 0.2 * kWave;
  const FocusResult result = Optimised(c, search);
  EXPECT_GE(result.coefficients[4], 0.25 * kWave);
  EXPECT_NEAR(result.coefficients[4], 0.25 * kWave, kPlace);
  EXPECT_FALSE(result.converged);  // the best lies beyond

  c[4] = -0.45 * kWave;
  const FocusResult other = Optimised(c, search);
  EXPECT_NEAR(other.coefficients[4], -0.25 * kWave, kPlace);
  EXPECT_FALSE(other.converged);
}

TEST(OptimiseFocus, EndsWhateverItIsTold) {
  Coefficients c{};
  c[4] = 0.2 * kWave;
  for (const double hostile : {0.0, -1.0, 1e12, std::numeric_limits<double>::infinity(), std::nan("")}) {
    FocusSearch search;
    search.maximumTrials = 40;
    search.halfRange = hostile;
    EXPECT_LE(Optimised(c, search).trials, 40) << hostile;
    search.halfRange = 0.1 * kWave;
    search.tolerance = hostile;
    EXPECT_LE(Optimised(c, search).trials, 40) << hostile;
  }
  c[4] = -1e12;
  FocusSearch search;
  search.maximumTrials = 40;
  EXPECT_LE(Optimised(c, search).trials, 40);
}

TEST(OptimiseFocus, StopsAfterTheTrialsAllowed) {
  Coefficients c{};
  c[4] = 5.0 * kWave;
  FocusSearch search;
  search.maximumTrials = 10;
  const FocusResult result = Optimised(c, search);
  EXPECT_EQ(result.trials, 10);
  EXPECT_FALSE(result.converged);
  EXPECT_GE(result.strehl, StrehlOf(c));
}

TEST(OptimiseFocus, WithoutLightOrStrehlRatioReturnsTheStart) {
  Coefficients broken{};
  broken[4] = 0.3 * kWave;
  broken[12] = std::nan("");
  const FocusResult dark = Optimised(broken);
  EXPECT_EQ(dark.coefficients[4], 0.3 * kWave);
  EXPECT_EQ(dark.strehl, 0.0);
  EXPECT_FALSE(dark.converged);

  OpticsEngine small(64);
  const FocusResult result = small.OptimiseFocus(FourthPower(0.5).data(), 4.7);
  EXPECT_EQ(result.coefficients[4], 0.25 * kWave);
  EXPECT_EQ(result.strehl, -1.0);
  EXPECT_FALSE(result.converged);
}

// ---- Trials whose wavefront is too steep for the samples

double ShareOf(const Coefficients& c) {
  const OpticsEngine engine(c.data(), 4.7, 256, 1, 1, 1);
  return UndersampledShare(engine.wavefrontPlane.data(), 256, 129, kWave);
}

FocusSearch Trusted() {
  FocusSearch search;
  search.maximumUndersampled = kLargestUndersampledShare;
  return search;
}

TEST(OptimiseFocus, FromFarAwayFindsTheFocusThroughTrialsThatItPassesOver) {
  for (const double waves : {11.5, -23.0, 300.0, -1600.0}) {
    Coefficients c{};
    c[4] = waves * kWave;
    EXPECT_GT(ShareOf(c), 30.0 * kLargestUndersampledShare);
    const FocusResult result = Optimised(c, Trusted());
    EXPECT_TRUE(result.converged) << waves;
    EXPECT_NEAR(result.coefficients[4], 0.0, kPlace) << waves;
    EXPECT_NEAR(result.strehl, 1.0, 1e-12) << waves;
  }
}

TEST(OptimiseFocus, WithAstigmatismFindsTheFlatWavefrontFromFarAway) {
  Coefficients c{};
  c[3] = 40.0 * kWave;
  c[4] = -70.0 * kWave;
  c[5] = 25.0 * kWave;
  FocusSearch search = Trusted();
  search.astigmatism = true;
  const FocusResult result = Optimised(c, search);
  EXPECT_TRUE(result.converged);
  EXPECT_NEAR(result.strehl, 1.0, 1e-12);
}

TEST(OptimiseFocus, NoResultThatIsAnAliasHasConverged) {
  Coefficients c{};
  c[6] = 60.0 * kWave;  // too steep for the samples at any defocus
  const FocusResult result = Optimised(c, Trusted());
  EXPECT_FALSE(result.converged);
  EXPECT_EQ(result.coefficients, c);
  FocusSearch far = Trusted();
  far.halfRange = 3.0 * kWave;
  c = {};
  c[4] = 200.0 * kWave;
  EXPECT_FALSE(Optimised(c, far).converged);
  // From 8 waves on; sinc^2 rises from there to 8.25 waves, but from 8.07 on a first sample is undersampled.
  c[4] = 11.0 * kWave;
  far.maximumUndersampled = 0.0;
  const FocusResult last = Optimised(c, far);
  EXPECT_FALSE(last.converged);
  EXPECT_EQ(ShareOf(last.coefficients), 0.0);
  EXPECT_NEAR(last.coefficients[4], 8.07 * kWave, 0.02 * kWave);
}

}  // namespace
}  // namespace orvanel
