// Scratch memory of an engine, allocated once so that the operations need none of their own.
#ifndef ORVANEL_OPTICS_WORKSPACE_H
#define ORVANEL_OPTICS_WORKSPACE_H

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

#include "optics/kernels/dispatch.h"
#include "optics/kernels/tables.h"
#include "orvanel/optics_engine.h"

namespace orvanel {

constexpr int kKernelGrid = 256;    // the grid that the kernels are made for
constexpr int kSpectrumSide = 264;  // of a plane that is large enough for a spectrum
static_assert(sizeof(double) * kSpectrumSide * kSpectrumSide >= kSpectrumBytes);

// Bytes at the beginning of a cache line. They are not written, so that they take up no memory before they are used.
class AlignedBytes {
 public:
  explicit AlignedBytes(std::size_t count) : bytes_(static_cast<std::byte*>(::operator new(count, kAlignment))) {}
  void* data() const { return bytes_.get(); }
  double* doubles() const { return reinterpret_cast<double*>(bytes_.get()); }

 private:
  static constexpr std::align_val_t kAlignment{64};
  struct Release {
    void operator()(std::byte* bytes) const { ::operator delete(bytes, kAlignment); }
  };
  std::unique_ptr<std::byte, Release> bytes_;
};

// What the kernels work with. Every operation may use plane, lines and object; none finds there what another left.
struct KernelMemory {
  // Before the first PSF all is dark.
  KernelMemory() {
    std::fill_n(intensity.doubles(), kKernelGrid * kIntensityPitch, 0.0);
    std::fill_n(static_cast<double*>(OtfOfImages()), kSpectrumBytes / sizeof(double), 0.0);
  }

  AlignedBytes plane{kPlaneBytes};
  AlignedBytes lines{kLinesBytes};
  AlignedBytes object{kSpectrumBytes};                                     // the object that is looked at
  AlignedBytes intensity{sizeof(double) * kKernelGrid * kIntensityPitch};  // of the last PSF
  AlignedBytes transferFunctions[2] = {AlignedBytes(kSpectrumBytes), AlignedBytes(kSpectrumBytes)};
  Recentring psf{intensity.doubles(), 0.0, 0, 0};  // from intensity to the last PSF
  int ofMtf = 0;                                   // which transfer function is that of the last MTF, and which that of
  int ofImages = 1;                                //   the last EnsureOtf: planes that are due may still need both
  bool mtfIsOfPsf = false;                         // the last MTF is that of the last PSF

  void* OtfOfImages() const { return transferFunctions[ofImages].data(); }
};

// What other grids work with; the same holds for these planes.
struct PlainMemory {
  explicit PlainMemory(int n) : objectReal(n), objectImag(n), productReal(n), productImag(n) {}

  GridPlane objectReal;  // what a transform starts from
  GridPlane objectImag;
  GridPlane productReal;  // what a filter makes of it
  GridPlane productImag;
};

struct OpticsEngine::Workspace {
  explicit Workspace(int n) {
    if (n == kKernelGrid) {
      kernels = &ActiveKernels();
      memory = std::make_unique<KernelMemory>();
    } else {
      plain = std::make_unique<PlainMemory>(n);
    }
  }

  // A plane for the length of an operation.
  double* Spare() const { return kernels != nullptr ? memory->object.doubles() : plain->productImag.data(); }

  Scratch ScratchOf() const { return {memory->plane.data(), memory->lines.data()}; }

  const Tables& tables = TransformTables();
  const Kernels* kernels = nullptr;  // none on other grids than theirs
  std::unique_ptr<KernelMemory> memory;
  std::unique_ptr<PlainMemory> plain;
};

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_WORKSPACE_H
