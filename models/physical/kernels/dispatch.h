// Finds the physical model's kernels for an instruction set.
#ifndef ORVANEL_MODELS_PHYSICAL_KERNELS_DISPATCH_H
#define ORVANEL_MODELS_PHYSICAL_KERNELS_DISPATCH_H

#include "models/physical/kernels/kernels.h"
#include "optics/kernels/kernels.h"

namespace orvanel::physical {

// Those of the same instruction set: which one a CPU runs is chosen with the engine's kernels.
const ChordKernels& ChordKernelsOf(const Kernels& kernels) noexcept;

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_KERNELS_DISPATCH_H
