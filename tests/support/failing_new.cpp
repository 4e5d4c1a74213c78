// Replaces operator new of the C++ library and posix_memalign of the C library in the whole process. Aligned and plain
// blocks come from one function.
#include "tests/support/failing_new.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr long kAll = std::numeric_limits<long>::max();

std::atomic<long> left = kAll;
std::atomic<bool> failed = false;

// Null where it fails.
void* Allocate(std::size_t size, std::size_t alignment) {
  if (left != kAll && left-- <= 0) {
    failed = true;
    return nullptr;
  }
  const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
  return std::aligned_alloc(alignment, rounded == 0 ? alignment : rounded);
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment) {
  void* const block = Allocate(size, alignment);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int posix_memalign(void** block, std::size_t alignment,
                                                                     std::size_t size) noexcept {
  *block = Allocate(size, alignment);
  return *block != nullptr ? 0 : ENOMEM;
}

void* operator new(std::size_t size) { return AllocateOrThrow(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return AllocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return AllocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, std::align_val_t) noexcept { std::free(block); }
void operator delete[](void* block, std::align_val_t) noexcept { std::free(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { std::free(block); }

namespace orvanel::test {

FailingNew::FailingNew(long good) {
  failed = false;
  left = good;
}

FailingNew::~FailingNew() { left = kAll; }

bool FailingNew::HasFailed() const { return failed; }

}  // namespace orvanel::test
