// Tests indices of samples, and buffers of any alignment.
#include "optics/samples.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

namespace orvanel {
namespace {

TEST(Samples, OfAPlaneAreCountedFromItsSide) {
  EXPECT_EQ(SampleCount(256), 65536U);
  EXPECT_EQ(SampleCount(65536), 4294967296U);
  EXPECT_EQ(SampleCount(1), 1U);
  for (const int none : {0, -1, -2, -256}) EXPECT_EQ(SampleCount(none), 0U) << none;
}

TEST(Samples, StandRowByRow) {
  EXPECT_EQ(SampleIndex(0, 0, 256), 0U);
  EXPECT_EQ(SampleIndex(3, 5, 256), 773U);
  EXPECT_EQ(SampleIndex(255, 255, 256), 65535U);
}

// Three samples in a buffer of every alignment, and not a byte beside them.
TEST(Samples, GoToBuffersOfAnyAlignmentAndComeBack) {
  constexpr std::array<double, 3> kValues = {0.1, -2.5, 1e300};
  for (std::size_t shift = 0; shift < sizeof(double); ++shift) {
    alignas(double) std::array<unsigned char, 48> one{}, all{};
    auto* const buffer = reinterpret_cast<double*>(one.data() + 8 + shift);
    for (std::size_t i = 0; i < 3; ++i) Store(buffer, i, kValues[i]);
    StoreAll(reinterpret_cast<double*>(all.data() + 8 + shift), kValues.data(), 3);
    EXPECT_EQ(one, all) << shift;
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(Load(buffer, i), kValues[i]) << shift;
    std::array<unsigned char, 48> expected{};
    std::memcpy(expected.data() + 8 + shift, kValues.data(), sizeof kValues);
    EXPECT_EQ(one, expected) << shift;
  }
}

}  // namespace
}  // namespace orvanel
