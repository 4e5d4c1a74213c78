// Tests what engines allocate, and when. It is a separate program, since it counts every allocation.
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

#include "orvanel/optics_engine.h"
#include "tests/support/every_kernel.h"

namespace {

std::size_t allocations = 0;
std::size_t allocatedBytes = 0;

void* Allocate(std::size_t bytes, std::size_t alignment) {
  ++allocations;
  allocatedBytes += bytes;
  return std::aligned_alloc(alignment, (bytes + alignment - 1) / alignment * alignment + alignment);
}

void* AllocateOrThrow(std::size_t bytes, std::size_t alignment) {
  void* const memory = Allocate(bytes, alignment);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

// Never inlined: a compiler that sees `free` behind a call of `new` takes it for a mistake.
[[gnu::noinline]] void Release(void* memory) noexcept { std::free(memory); }

}  // namespace

extern "C" int posix_memalign(void** memory, std::size_t alignment, std::size_t bytes) noexcept {
  *memory = Allocate(bytes, alignment);
  return *memory != nullptr ? 0 : ENOMEM;
}

void* operator new(std::size_t bytes) { return AllocateOrThrow(bytes, alignof(std::max_align_t)); }
void* operator new[](std::size_t bytes) { return AllocateOrThrow(bytes, alignof(std::max_align_t)); }
void* operator new(std::size_t bytes, std::align_val_t alignment) {
  return AllocateOrThrow(bytes, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t bytes, std::align_val_t alignment) {
  return AllocateOrThrow(bytes, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory) noexcept { Release(memory); }
void operator delete[](void* memory) noexcept { Release(memory); }
void operator delete(void* memory, std::size_t) noexcept { Release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { Release(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { Release(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { Release(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { Release(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { Release(memory); }

namespace orvanel {
namespace {

using EngineMemory = test::EveryKernel;

TEST_P(EngineMemory, IsAtMostEightMebibytes) {
  const std::size_t before = allocatedBytes;
  const auto engine = std::make_unique<OpticsEngine>();
  EXPECT_GT(allocatedBytes - before, 8 * 65536 * sizeof(double));  // that it is counted
  EXPECT_LE(allocatedBytes - before, std::size_t{8} << 20);
}

TEST_P(EngineMemory, IsAllAllocatedWhenTheEngineIsMade) {
  std::array<double, kCoefficients> c{};
  c[4] = 3e-4;
  c[11] = 1e-4;
  std::vector<double> mtf(65536), image(65536), ring(65536), psf(65536), imaginary(65536);
  std::array<double, 128> row{}, column{}, limit{};
  double step = 0.0, acuity = 0.0, pitch = 0.0, strehl = 0.0;
  OpticsEngine engine;
  const PreparedObject prepared = engine.Prepare(ring.data());
  testing::internal::CaptureStdout();
  const std::size_t before = allocations;
  for (int eye = 0; eye < 2; ++eye) {
    engine.synthesizeWavefront(c.data(), 4.0 + eye, 1, 1, 1);
    engine.ComputeMtf(kWavelength, mtf.data(), &step, row.data(), column.data(), limit.data(), 256);
    engine.ComputeMtf(kWavelength, mtf.data(), &step, row.data(), column.data(), limit.data(), 90);
    engine.PatternRetinalImage(image.data(), ring.data(), 256);
    engine.PreparedRetinalImage(image.data(), prepared);
    engine.normaliseOutput = 0;
    engine.RingRetinalImage(image.data(), ring.data(), 0.4, &acuity, 3);
    engine.phasePlane.data();
    engine.otfRealPlane.data();
    engine.RingRetinalImage(image.data(), ring.data(), 0.4, &acuity, 3);
    engine.ComputePsf(kWavelength, psf.data(), &pitch, &strehl, 256);
    engine.ComputeStrehl(kWavelength);
    engine.FilterThroughEye(mtf.data(), imaginary.data(), image.data(), 3.0);
    imaginary[5] = 1.0;
    engine.FilterThroughEye(mtf.data(), imaginary.data(), image.data(), 3.0);
  }
  const std::size_t after = allocations;
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(after, before);
}

ORVANEL_ON_EVERY_KERNEL(EngineMemory);

}  // namespace
}  // namespace orvanel
