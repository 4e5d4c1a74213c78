// What a test needs to call kernels without an engine.
#ifndef ORVANEL_TESTS_OPTICS_KERNELS_SCRATCH_H
#define ORVANEL_TESTS_OPTICS_KERNELS_SCRATCH_H

#include <cstddef>
#include <limits>
#include <vector>

#include "optics/kernels/kernels.h"

namespace orvanel::test {

// Scratch memory, full of what is not a number, so that whatever is read before it is written shows. In blocks of their
// own, where an engine has one, so that a sanitizer sees who leaves his.
struct KernelScratch {
  struct alignas(64) CacheLine {
    CacheLine() {
      for (double& sample : samples) sample = std::numeric_limits<double>::quiet_NaN();
    }
    double samples[8];
  };

  static std::vector<CacheLine> Lines(int bytes) {
    return std::vector<CacheLine>(static_cast<std::size_t>(bytes) / sizeof(CacheLine));
  }

  Scratch Of() const { return {plane.data(), lines.data()}; }

  mutable std::vector<CacheLine> plane = Lines(kPlaneBytes);
  mutable std::vector<CacheLine> lines = Lines(kLinesBytes);
  mutable std::vector<CacheLine> spectrum = Lines(kSpectrumBytes);
};

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_OPTICS_KERNELS_SCRATCH_H
