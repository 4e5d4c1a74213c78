// Asks the system for large pages.
#include "models/classic/large_pages.h"

#include <cstddef>

#include "optics/samples_memory.h"

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace orvanel {

std::shared_ptr<double[]> LargePages(std::uint64_t count) noexcept {
  constexpr std::size_t kLargePage = std::size_t{1} << 21;  // of x86-64, and of AArch64 where small ones have 4 KiB
  std::shared_ptr<double[]> memory = SamplesMemory(count, kLargePage);
#ifdef __linux__
  // If this is refused, pages stay small.
  if (memory != nullptr) madvise(memory.get(), static_cast<std::size_t>(count) * sizeof(double), MADV_HUGEPAGE);
#endif
  return memory;
}

}  // namespace orvanel
