// The tables of the physical model's kernels, by name.
#include "models/physical/kernels/dispatch.h"

#include <cstring>
#include <initializer_list>

namespace orvanel {

namespace baseline {
extern const physical::ChordKernels kChordKernels;
}
#if defined(ORVANEL_X86_KERNELS)
namespace avx2 {
extern const physical::ChordKernels kChordKernels;
}
namespace avx512 {
extern const physical::ChordKernels kChordKernels;
}
#endif

namespace physical {

const ChordKernels& ChordKernelsOf([[maybe_unused]] const Kernels& kernels) noexcept {
#if defined(ORVANEL_X86_KERNELS)
  for (const ChordKernels* chords : {&avx2::kChordKernels, &avx512::kChordKernels}) {
    if (std::strcmp(chords->name, kernels.name) == 0) return *chords;
  }
#endif
  return baseline::kChordKernels;
}

}  // namespace physical
}  // namespace orvanel
