// Allocates memory for samples without exceptions, since exhausted memory may leave none for an exception.
#ifndef ORVANEL_OPTICS_SAMPLES_MEMORY_H
#define ORVANEL_OPTICS_SAMPLES_MEMORY_H

#include <cstddef>
#include <cstdint>
#include <memory>

namespace orvanel {

constexpr std::size_t kCacheLine = 64;  // and the widest vector register

// So many bytes, not written, at a multiple of `alignment`, a power of two of at least kCacheLine; null where there is
// no such memory. GiveBack takes null, too.
void* TakeMemory(std::size_t bytes, std::size_t alignment) noexcept;
void GiveBack(void* memory) noexcept;

// Room for so many doubles, in the same way. The count of its users lies behind the samples.
std::shared_ptr<double[]> SamplesMemory(std::uint64_t count, std::size_t alignment) noexcept;

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_SAMPLES_MEMORY_H
