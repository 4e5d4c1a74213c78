// Which kernels run: the widest that this CPU has, or those that the environment variable ORVANEL_KERNELS names.
#ifndef ORVANEL_OPTICS_KERNELS_DISPATCH_H
#define ORVANEL_OPTICS_KERNELS_DISPATCH_H

#include <string>
#include <vector>

#include "optics/kernels/kernels.h"

namespace orvanel {

// Those that this CPU can run, the plainest first.
const std::vector<const Kernels*>& RunnableKernels();

// Those of this name, or the widest if it is null; none if there are no such, or this CPU cannot run them.
const Kernels* FindKernels(const char* name);

// What to tell somebody who asked for kernels of this name in vain.
std::string NoSuchKernels(const char* name);

// Those that new engines use. A name in ORVANEL_KERNELS that FindKernels does not know ends the process with a message:
// results of other kernels than those asked for would be measured, and believed.
const Kernels& ActiveKernels();

// Engines made from now on use these; for tests and benchmarks.
void UseKernels(const Kernels& kernels);

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_KERNELS_DISPATCH_H
