// Asking the system for large pages.
#include "optics/large_pages.h"

#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace orvanel {

std::shared_ptr<double[]> AllocateLargePages(std::size_t count) {
  constexpr std::size_t kLargePage = std::size_t{1} << 21;  // of x86-64, and of AArch64 where small ones have 4 KiB
  constexpr std::align_val_t kAlignment{kLargePage};
  const std::size_t bytes = count * sizeof(double);
  std::shared_ptr<double[]> memory(static_cast<double*>(::operator new(bytes, kAlignment)),
                                   [](double* samples) { ::operator delete(samples, kAlignment); });
#ifdef __linux__
  madvise(memory.get(), bytes, MADV_HUGEPAGE);  // where this is refused, pages stay small
#endif
  return memory;
}

}  // namespace orvanel
