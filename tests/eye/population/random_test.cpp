// Tests the quantile function against the distribution, and the distribution of the numbers.
#include "eye/population/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <set>
#include <vector>

#include "base/philox.h"

namespace orvanel::eye {
namespace {

// The distribution function in long double, without cancellation in its lower half.
long double Below(double x) { return std::erfc(-static_cast<long double>(x) / std::sqrt(2.0L)) / 2.0L; }

// Density over distance.
long double Density(double x) {
  return std::exp(-0.5L * static_cast<long double>(x) * x) / std::sqrt(2.0L * 3.14159265358979323846L);
}

TEST(Random, TheQuantileIsTheInverseOfTheDistributionFunction) {
  double worst = 0.0;
  for (int i = 1; i < 4000; ++i) {
    // From 2^-53 to one half, evenly in the exponent.
    const double p = std::exp2(-1.0 - 52.0 * i / 4000.0);
    const double x = NormalQuantile(p);
    // A small change of x changes the distribution function by the density times as much.
    const auto error = static_cast<double>((Below(x) - static_cast<long double>(p)) / Density(x));
    worst = std::max(worst, std::abs(error) / std::max(std::abs(x), 1.0));
    EXPECT_EQ(NormalQuantile(1.0 - p) > 0.0, p > 0x1p-53);
  }
  RecordProperty("largest_difference", std::to_string(worst));
  EXPECT_LT(worst, 1e-15);
}

TEST(Random, TheQuantileIsOddAboutOneHalf) {
  EXPECT_EQ(NormalQuantile(0.5), 0.0);
  for (const double p : {0.03125, 0.0625, 0.25, 0.4375}) EXPECT_EQ(NormalQuantile(1.0 - p), -NormalQuantile(p));
}

TEST(Random, NumbersHaveTheMomentsOfTheNormalDistribution) {
  constexpr int kCount = 200000;
  double sums[5] = {};
  for (int i = 0; i < kCount; ++i) {
    const double x = NormalNumber(20260, static_cast<std::uint64_t>(i), 3);
    double power = 1.0;
    for (double& sum : sums) sum += (power *= x) / kCount;
  }
  // The variance of the mean of x^k is (E x^2k - (E x^k)^2) / count: five standard deviations each.
  const auto bound = [](double variance) { return 5.0 * std::sqrt(variance / kCount); };
  EXPECT_NEAR(sums[0], 0.0, bound(1.0));
  EXPECT_NEAR(sums[1], 1.0, bound(2.0));
  EXPECT_NEAR(sums[2], 0.0, bound(15.0));
  EXPECT_NEAR(sums[3], 3.0, bound(96.0));
  EXPECT_NEAR(sums[4], 0.0, bound(945.0));
}

TEST(Random, NumbersPassTheTestOfKolmogorovAndSmirnov) {
  constexpr std::size_t kCount = 100000;
  std::vector<double> numbers(kCount);
  for (std::size_t i = 0; i < kCount; ++i) numbers[i] = NormalNumber(7, i / 8, static_cast<std::uint32_t>(i % 8));
  std::sort(numbers.begin(), numbers.end());
  double distance = 0.0;
  for (std::size_t i = 0; i < kCount; ++i) {
    const auto below = static_cast<double>(Below(numbers[i]));
    distance =
        std::max({distance, below - static_cast<double>(i) / kCount, static_cast<double>(i + 1) / kCount - below});
  }
  EXPECT_LT(distance * std::sqrt(static_cast<double>(kCount)), 1.95);  // exceeded once in a thousand
}

TEST(Random, NeighbouringPlacesRowsAndSeedsAreUncorrelated) {
  constexpr int kCount = 100000;
  double place = 0.0, pair = 0.0, row = 0.0, seed = 0.0;
  for (std::uint64_t i = 0; i < kCount; ++i) {
    const double x = NormalNumber(1, i, 2);
    pair += x * NormalNumber(1, i, 3);
    place += x * NormalNumber(1, i, 4);
    row += x * NormalNumber(1, i + 1, 2);
    seed += x * NormalNumber(2, i, 2);
  }
  for (const double sum : {place, pair, row, seed}) EXPECT_LT(std::abs(sum), 5.0 * std::sqrt(kCount));
}

TEST(Random, EveryBitOfSeedAndRowCounts) {
  // Each half of both is a word of its own of the counter or the key.
  constexpr std::uint64_t kSeed = 0x0123456789abcdefU, kRow = 0xfedcba9876543210U;
  const PhiloxCounter bits = Philox({3, 0x76543210U, 0xfedcba98U, 0}, {0x89abcdefU, 0x01234567U});
  const auto number = [](std::uint32_t high, std::uint32_t low) {
    const std::uint64_t part = ((std::uint64_t{high} << 32U) + low) / 4096U;
    return NormalQuantile((static_cast<double>(part) + 0.5) / 4503599627370496.0);
  };
  EXPECT_EQ(NormalNumber(kSeed, kRow, 6), number(bits[0], bits[1]));
  EXPECT_EQ(NormalNumber(kSeed, kRow, 7), number(bits[2], bits[3]));
}

TEST(Random, RowsBeyondTheFirst32BitsRepeatNoOthers) {
  constexpr std::uint64_t kRow = 12345;
  std::set<double> numbers;
  for (std::uint64_t bit = 16; bit < 64; ++bit) numbers.insert(NormalNumber(1, kRow + (std::uint64_t{1} << bit), 2));
  EXPECT_EQ(numbers.size(), 48U);
  EXPECT_EQ(numbers.count(NormalNumber(1, kRow, 2)), 0U);
}

TEST(Random, HasTheSameBitsEverywhere) {
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (std::uint64_t row = 0; row < 2000; ++row) {
    for (std::uint32_t place = 0; place < 7; ++place) {
      const auto bits = std::bit_cast<std::uint64_t>(NormalNumber(0x123456789abcdefU, row << 20U, place));
      hash = (hash ^ bits) * 0x100000001b3U;
    }
  }
  EXPECT_EQ(hash, 0x64412cdb1ad197eeU) << std::hex << hash;
}

}  // namespace
}  // namespace orvanel::eye
