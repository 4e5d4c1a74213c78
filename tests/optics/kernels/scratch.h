// What a test needs to call kernels without an engine.
#ifndef ORVANEL_TESTS_OPTICS_KERNELS_SCRATCH_H
#define ORVANEL_TESTS_OPTICS_KERNELS_SCRATCH_H

#include <algorithm>
#include <limits>

#include "optics/workspace.h"

namespace orvanel::test {

// Scratch memory, full of what is not a number, so that whatever is read before it is written shows.
struct KernelScratch {
  KernelScratch() {
    const auto spoil = [](const AlignedBytes& bytes, int size) {
      std::fill_n(bytes.doubles(), static_cast<std::size_t>(size) / sizeof(double),
                  std::numeric_limits<double>::quiet_NaN());
    };
    spoil(plane, kPlaneBytes);
    spoil(lines, kLinesBytes);
    spoil(spectrum, kSpectrumBytes);
  }
  Scratch Of() const { return {plane.data(), lines.data()}; }

  AlignedBytes plane{kPlaneBytes};
  AlignedBytes lines{kLinesBytes};
  AlignedBytes spectrum{kSpectrumBytes};
};

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_OPTICS_KERNELS_SCRATCH_H
