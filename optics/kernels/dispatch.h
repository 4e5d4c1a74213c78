// Which kernels run: the widest that this CPU has, or those that the environment variable ORVANEL_KERNELS names.
#ifndef ORVANEL_OPTICS_KERNELS_DISPATCH_H
#define ORVANEL_OPTICS_KERNELS_DISPATCH_H

#include <array>
#include <span>

#include "optics/kernels/kernels.h"

namespace orvanel {

// Those that this CPU can run, the plainest first.
std::span<const Kernels* const> RunnableKernels() noexcept;

// Those of this name, or the widest if it is null or empty; null if there are no such, or this CPU cannot run them.
const Kernels* FindKernels(const char* name) noexcept;

// What to tell somebody who asked for kernels of a name that FindKernels does not know; without what terminals obey.
using KernelMessage = std::array<char, 256>;
KernelMessage NoSuchKernels(const char* name) noexcept;

// Those that new engines use; null where ORVANEL_KERNELS has a name that FindKernels does not know, and WhyNoKernels
// says so: results of other kernels than those asked for would be measured, and believed. The variable is read once.
const Kernels* ActiveKernels() noexcept;
const char* WhyNoKernels() noexcept;

// Engines made from now on use these; for tests and benchmarks.
void UseKernels(const Kernels& kernels) noexcept;

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_KERNELS_DISPATCH_H
