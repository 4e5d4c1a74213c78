// Tests loading and unloading, a thousand times.
#include <gtest/gtest.h>
#ifdef _WIN32
#include <windows.h>
#else
#include <malloc.h>
#endif

#include <vector>

#include "tests/support/loaded_library.h"

namespace orvanel {
namespace {

using test::LoadedLibrary;

constexpr int kLoads = 1000;
constexpr int kLoadsWithAnEye = 50;

// The C library keeps some freed blocks of each size, and counts them as allocated; the loader's tables grow by a page
// once. Both come to rest within the first thousand loads.
constexpr int kFirstLoads = 1000;

#ifdef _WIN32
// Bytes that the process has allocated on all of its heaps.
std::size_t AllocatedBytes() {
  HANDLE heaps[64];
  const DWORD count = GetProcessHeaps(64, heaps);
  std::size_t bytes = 0;
  for (DWORD i = 0; i < count && i < 64; ++i) {
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heaps[i], &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
  }
  return bytes;
}
#else
// Bytes that the process has allocated. Under the address sanitizer, whose leak check takes its place, 0.
std::size_t AllocatedBytes() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}
#endif

void LoadAndUnload(bool withAnEye) {
  LoadedLibrary library;
  if (!withAnEye) return;
  std::vector<double> plane(ORVANEL_PLANE_SAMPLES);
  const double coefficients[ORVANEL_COEFFICIENTS] = {0.0, 0.0, 0.0, 0.0, 1.3e-4};
  library.InputPupil(3.7);
  ASSERT_EQ(library.InputZer(coefficients), 1);
  ASSERT_EQ(library.GetPattern(plane.data()), 1);
}

TEST(Load, IsUndoneByUnloading) {
  EXPECT_FALSE(LoadedLibrary::IsLoaded());
  {
    LoadedLibrary library;
    EXPECT_TRUE(LoadedLibrary::IsLoaded());
  }
  EXPECT_FALSE(LoadedLibrary::IsLoaded());
}

void LoadOften(int loads) {
  for (int i = 0; i < loads; ++i) LoadAndUnload(i % (kLoads / kLoadsWithAnEye) == 0);
}

TEST(Load, LeaksNothingInAThousandLoads) {
  LoadOften(kFirstLoads);
  const std::size_t before = AllocatedBytes();
  LoadOften(kLoads);
  const std::size_t after = AllocatedBytes();
  // One forgotten plane is 512 KiB, one byte a load 1000.
  EXPECT_LT(after, before + 1000);
  EXPECT_FALSE(LoadedLibrary::IsLoaded());
}

}  // namespace
}  // namespace orvanel
