// The program's own operator new takes the place of the C++ library's everywhere. Aligned and plain blocks alike come
// from one function and go back through another.
#include "tests/support/failing_new.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr long kAll = std::numeric_limits<long>::max();

std::atomic<long> left = kAll;
std::atomic<long> live = 0;
std::atomic<bool> failed = false;

void* Allocate(std::size_t size, std::size_t alignment) {
  if (left != kAll && left-- <= 0) {
    failed = true;
    throw std::bad_alloc();
  }
  const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
  void* const block = std::aligned_alloc(alignment, rounded == 0 ? alignment : rounded);
  if (block == nullptr) throw std::bad_alloc();
  ++live;
  return block;
}

void Free(void* block) {
  if (block == nullptr) return;
  --live;
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__); }
void* operator new[](std::size_t size) { return Allocate(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return Allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return Allocate(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept { Free(block); }
void operator delete[](void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t) noexcept { Free(block); }
void operator delete(void* block, std::align_val_t) noexcept { Free(block); }
void operator delete[](void* block, std::align_val_t) noexcept { Free(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { Free(block); }

namespace orvanel::test {

FailingNew::FailingNew(long good) {
  failed = false;
  left = good;
}

FailingNew::~FailingNew() { left = kAll; }

bool FailingNew::HasFailed() const { return failed; }

long LiveAllocations() { return live; }

}  // namespace orvanel::test
