// Tests memory without exceptions: alignment, counted users, and refused sizes.
#include "optics/samples_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace orvanel {
namespace {

TEST(SamplesMemory, IsAlignedAndHoldsWhatIsAskedFor) {
  for (const std::size_t alignment : {std::size_t{64}, std::size_t{4096}}) {
    for (const std::uint64_t count : {1U, 7U, 8U, 1089U, 70001U}) {
      const auto samples = SamplesMemory(count, alignment);
      ASSERT_NE(samples, nullptr);
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(samples.get()) % alignment, 0U);
      std::fill_n(samples.get(), count, 1.5);
      EXPECT_EQ(samples.use_count(), 1) << "the count is not among the samples";
      EXPECT_EQ(std::count(samples.get(), samples.get() + count, 1.5), static_cast<std::ptrdiff_t>(count));
    }
  }
}

TEST(SamplesMemory, LivesAsLongAsTheLastOfItsUsers) {
  auto all = SamplesMemory(100, kCacheLine);
  const std::weak_ptr<double[]> watch = all;
  all[42] = 4.5;
  const std::shared_ptr<double[]> part(all, all.get() + 40);
  all.reset();
  EXPECT_EQ(watch.use_count(), 1);
  EXPECT_EQ(part[2], 4.5);
}

TEST(SamplesMemory, IsNullForNothingAndForMoreThanThereIs) {
  EXPECT_EQ(SamplesMemory(0, kCacheLine), nullptr);
  for (const int bits : {31, 44, 59, 60, 61, 63}) {
    if (sizeof(std::size_t) > 4 && bits < 44) continue;
    EXPECT_EQ(SamplesMemory(std::uint64_t{1} << bits, kCacheLine), nullptr) << bits;
  }
  EXPECT_EQ(SamplesMemory(std::numeric_limits<std::uint64_t>::max(), kCacheLine), nullptr);
}

TEST(TakeMemory, IsAlignedAndGivenBackAlsoWhereItIsNull) {
  void* const memory = TakeMemory(1, kCacheLine);
  ASSERT_NE(memory, nullptr);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % kCacheLine, 0U);
  GiveBack(memory);
  GiveBack(nullptr);
}

}  // namespace
}  // namespace orvanel
