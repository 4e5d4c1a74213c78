// Implements aligned allocations between guard pages. Kernels are not instrumented in the fuzzing build, so only these
// pages detect their errors. Blocks are reused, since a new engine for each input would spend its time in page faults.
#include "tests/fuzz/guarded_new.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <new>

#include "tests/fuzz/require.h"

namespace {

constexpr std::size_t kPage = 4096;
constexpr unsigned char kPattern = 0x5a;

// Pages between two guards, where the alignment lets them begin. What is handed out ends where the upper guard begins,
// as nearly as its alignment lets it; the rest keeps a pattern. Given back, all of it is a guard.
struct Block {
  unsigned char* room = nullptr;
  std::size_t size = 0;
  unsigned char *begin = nullptr, *end = nullptr;  // of what is handed out
};

std::array<Block, 256> blocks;

void* Take(std::size_t bytes, std::size_t alignment) {
  const std::size_t size = std::max((bytes + kPage - 1) / kPage, std::size_t{1}) * kPage;
  const std::size_t step = std::max(alignment, kPage);
  const auto past = [step](const unsigned char* room) { return reinterpret_cast<std::uintptr_t>(room) % step; };
  auto* const block = std::find_if(blocks.begin(), blocks.end(), [&](const Block& b) {
    return b.room == nullptr || (b.begin == nullptr && b.size == size && past(b.room) == 0);
  });
  ORVANEL_REQUIRE(block != blocks.end());
  if (block->room == nullptr) {
    void* const mapped = mmap(nullptr, size + step + kPage, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ORVANEL_REQUIRE(mapped != MAP_FAILED);
    auto* const first = static_cast<unsigned char*>(mapped) + kPage;
    block->room = first + (step - past(first)) % step;
    block->size = size;
  }
  ORVANEL_REQUIRE(mprotect(block->room, size, PROT_READ | PROT_WRITE) == 0);
  block->begin = block->room + (size - bytes) / alignment * alignment;
  block->end = block->begin + bytes;
  std::fill(block->room, block->begin, kPattern);
  std::fill(block->end, block->room + size, kPattern);
  return block->begin;
}

void GiveBack(void* memory) {
  if (memory == nullptr) return;
  auto* const block =
      std::find_if(blocks.begin(), blocks.end(), [memory](const Block& b) { return b.begin == memory; });
  ORVANEL_REQUIRE(block != blocks.end());
  const auto isPattern = [](unsigned char byte) { return byte == kPattern; };
  ORVANEL_REQUIRE(std::all_of(block->room, block->begin, isPattern));
  ORVANEL_REQUIRE(std::all_of(block->end, block->room + block->size, isPattern));
  ORVANEL_REQUIRE(mprotect(block->room, block->size, PROT_NONE) == 0);
  block->begin = nullptr;
}

}  // namespace

std::size_t orvanel::fuzz::GuardedBlocksInUse() {
  return static_cast<std::size_t>(
      std::count_if(blocks.begin(), blocks.end(), [](const Block& b) { return b.begin != nullptr; }));
}

void* operator new(std::size_t bytes, std::align_val_t alignment) {
  return Take(bytes, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t bytes, std::align_val_t alignment) {
  return Take(bytes, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory, std::align_val_t) noexcept { GiveBack(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { GiveBack(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { GiveBack(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { GiveBack(memory); }
