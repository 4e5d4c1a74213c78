// Chooses the kernels: the widest that this CPU runs, or those that the environment variable ORVANEL_KERNELS names.
#ifndef ORVANEL_OPTICS_KERNELS_DISPATCH_H
#define ORVANEL_OPTICS_KERNELS_DISPATCH_H

#include <array>
#include <span>

#include "optics/kernels/kernels.h"

namespace orvanel {

// The tables that this CPU runs, the narrowest first.
std::span<const Kernels* const> RunnableKernels() noexcept;

// The table of this name, or the widest if it is null or empty. Null if this CPU runs no such table.
const Kernels* FindKernels(const char* name) noexcept;

// The error message for a name that FindKernels does not know. Control characters of the name are replaced.
using KernelMessage = std::array<char, 256>;
KernelMessage NoSuchKernels(const char* name) noexcept;

// The table for new engines. Null if ORVANEL_KERNELS has a name that FindKernels does not know; WhyNoKernels has the
// message. Other kernels than the requested ones would be measured under a wrong name. The variable is read once.
const Kernels* ActiveKernels() noexcept;
const char* WhyNoKernels() noexcept;

// Sets the table for new engines, in tests and benchmarks.
void UseKernels(const Kernels& kernels) noexcept;

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_KERNELS_DISPATCH_H
