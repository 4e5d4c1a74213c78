// Allocates memory with the C library.
#include "optics/samples_memory.h"

#include <cstdlib>
#include <limits>
#ifdef _WIN32
#include <malloc.h>
#endif

namespace orvanel {
namespace {

std::size_t RoundedUp(std::size_t bytes, std::size_t to) { return (bytes + to - 1) / to * to; }

// Places what std::shared_ptr allocates, the count of users, at the end of the block that is counted.
template <class T>
struct AtTheEnd {
  static constexpr std::size_t kBytes = 2 * kCacheLine;
  using value_type = T;

  AtTheEnd(void* counted, std::size_t place) : block(counted), end(place) {}
  template <class Other>
  AtTheEnd(const AtTheEnd<Other>& other) : block(other.block), end(other.end) {}

  T* allocate(std::size_t) noexcept {
    static_assert(sizeof(T) <= kBytes);
    static_assert(alignof(T) <= kCacheLine);
    return reinterpret_cast<T*>(static_cast<std::byte*>(block) + end);
  }
  void deallocate(T*, std::size_t) noexcept { GiveBack(block); }

  void* block;
  std::size_t end;
};

}  // namespace

void* TakeMemory(std::size_t bytes, std::size_t alignment) noexcept {
#ifdef _WIN32
  return _aligned_malloc(bytes, alignment);
#else
  void* memory = nullptr;
  return posix_memalign(&memory, alignment, bytes) == 0 ? memory : nullptr;
#endif
}

void GiveBack(void* memory) noexcept {
#ifdef _WIN32
  _aligned_free(memory);
#else
  std::free(memory);
#endif
}

std::shared_ptr<double[]> SamplesMemory(std::uint64_t count, std::size_t alignment) noexcept {
  constexpr std::size_t kMost = std::numeric_limits<std::ptrdiff_t>::max();
  const std::size_t more = AtTheEnd<double>::kBytes + kCacheLine;  // at most
  if (count == 0 || count > (kMost - more) / sizeof(double)) return nullptr;
  const std::size_t bytes = RoundedUp(static_cast<std::size_t>(count) * sizeof(double), kCacheLine);
  void* const block = TakeMemory(bytes + AtTheEnd<double>::kBytes, alignment);
  if (block == nullptr) return nullptr;
  return {static_cast<double*>(block), [](double*) {}, AtTheEnd<double>(block, bytes)};
}

}  // namespace orvanel
