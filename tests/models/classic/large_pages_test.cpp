// Tests memory in large pages.
#include "models/classic/large_pages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

#ifdef __linux__
#include <sys/mman.h>

#include <fstream>
#include <sstream>
#include <string>
#endif

namespace orvanel {
namespace {

constexpr std::size_t kLargePage = 2U << 20;

TEST(LargePages, BeginWithOneAndHoldWhatIsAskedFor) {
  for (const std::size_t count : {std::size_t{1}, std::size_t{262143}, std::size_t{938000}}) {
    const auto memory = LargePages(count);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory.get()) % kLargePage, 0U);
    std::fill_n(memory.get(), count, 1.5);
    EXPECT_EQ(std::count(memory.get(), memory.get() + count, 1.5), static_cast<std::ptrdiff_t>(count));
  }
}

#ifdef __linux__
// Whether large pages were asked for where an address lies: the flag "hg" of its mapping.
bool IsAdvised(const void* address) {
  const auto place = reinterpret_cast<std::uintptr_t>(address);
  std::ifstream maps("/proc/self/smaps");
  bool here = false;
  for (std::string line; std::getline(maps, line);) {
    std::uintptr_t begin = 0, end = 0;
    char dash = 0;
    std::istringstream words(line);
    if (words >> std::hex >> begin >> dash >> end && dash == '-') here = begin <= place && place < end;
    if (here && line.starts_with("VmFlags:")) return (line + " ").find(" hg ") != std::string::npos;
  }
  return false;
}

TEST(LargePages, AreAskedForFromEndToEnd) {
  void* const own = mmap(nullptr, kLargePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(own, MAP_FAILED);
  const bool possible = madvise(own, kLargePage, MADV_HUGEPAGE) == 0 && IsAdvised(own);
  munmap(own, kLargePage);
  if (!possible) GTEST_SKIP() << "no large pages here, or nobody who tells";

  constexpr std::size_t kCount = 5 * kLargePage / sizeof(double) / 2;
  const auto memory = LargePages(kCount);
  EXPECT_TRUE(IsAdvised(memory.get()));
  EXPECT_TRUE(IsAdvised(memory.get() + kCount - 1));
}
#endif

}  // namespace
}  // namespace orvanel
