// Provides scratch memory for tests that call kernels without an engine.
#ifndef ORVANEL_TESTS_OPTICS_KERNELS_SCRATCH_H
#define ORVANEL_TESTS_OPTICS_KERNELS_SCRATCH_H

#include <cstddef>
#include <limits>
#include <vector>

#include "optics/kernels/kernels.h"

namespace orvanel::test {

// Filled with NaN, so that a read before the first write shows. An engine has one block; here each part has its own, so
// that a sanitizer finds accesses beyond a part.
struct KernelScratch {
  struct alignas(64) CacheLine {
    CacheLine() {
      for (double& sample : samples) sample = std::numeric_limits<double>::quiet_NaN();
    }
    double samples[8];
  };

  static std::vector<CacheLine> Lines(std::size_t bytes) { return std::vector<CacheLine>(bytes / sizeof(CacheLine)); }

  Scratch Of() const { return {plane.data(), lines.data()}; }

  HalfSpectrum& Spectrum() const { return *reinterpret_cast<HalfSpectrum*>(spectrum.data()); }

  mutable std::vector<CacheLine> plane = Lines(kPlaneBytes);
  mutable std::vector<CacheLine> lines = Lines(kLinesBytes);
  mutable std::vector<CacheLine> spectrum = Lines(sizeof(HalfSpectrum));
};

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_OPTICS_KERNELS_SCRATCH_H
