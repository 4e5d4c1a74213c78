// Scratch memory of an engine, allocated once so that the operations need none of their own.
#ifndef ORVANEL_OPTICS_WORKSPACE_H
#define ORVANEL_OPTICS_WORKSPACE_H

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <new>

#include "optics/kernels/dispatch.h"
#include "optics/kernels/tables.h"
#include "optics/large_pages.h"
#include "orvanel/optics_engine.h"

namespace orvanel {

constexpr int kKernelGrid = 256;    // the grid that the kernels are made for
constexpr int kSpectrumSide = 268;  // of a plane that is large enough for a spectrum
static_assert(sizeof(double) * kSpectrumSide * kSpectrumSide >= kSpectrumBytes);

// What the kernels work with. Every operation may use plane, lines and object; none finds there what another left.
struct alignas(64) KernelPlanes {
  std::byte plane[kPlaneBytes];
  std::byte lines[kLinesBytes];
  double intensity[kKernelGrid * kIntensityPitch];  // of the last PSF
  std::byte transferFunctions[2][kSpectrumBytes];
  std::byte object[kSpectrumBytes];  // the object that is looked at
};
static_assert(kPlaneBytes % 64 == 0 && kLinesBytes % 64 == 0 && kSpectrumBytes % 64 == 0);
static_assert(kIntensityPitch % 8 == 0);  // so that all begin with a cache line

struct KernelMemory {
  // Before the first PSF all is dark.
  explicit KernelMemory(KernelPlanes& memory) : planes(memory) {
    std::fill(std::begin(planes.intensity), std::end(planes.intensity), 0.0);
    std::fill_n(static_cast<double*>(OtfOfImages()), kSpectrumBytes / sizeof(double), 0.0);
  }

  KernelPlanes& planes;
  Recentring psf{planes.intensity, 0.0, 0, 0};  // from intensity to the last PSF
  int ofMtf = 0;                                // which transfer function is that of the last MTF, and which that of
  int ofImages = 1;                             //   the last EnsureOtf: planes that are due may still need both
  bool mtfIsOfPsf = false;                      // the last MTF is that of the last PSF

  void* OtfOfMtf() const { return planes.transferFunctions[ofMtf]; }
  void* OtfOfImages() const { return planes.transferFunctions[ofImages]; }
};

// What other grids work with; the same holds for these planes.
struct PlainMemory {
  explicit PlainMemory(int n) : objectReal(n), objectImag(n), productReal(n), productImag(n) {}

  GridPlane objectReal;  // what a transform starts from
  GridPlane objectImag;
  GridPlane productReal;  // what a filter makes of it
  GridPlane productImag;
};

// The pupil of the last synthesis, from which its coordinates follow.
struct SampledPupil {
  int gridSize;
  int samples;
  double diameter;
};

struct OpticsEngine::Workspace {
  explicit Workspace(int n) {
    if (n == kKernelGrid) {
      kernels = &ActiveKernels();
      block = AllocateLargePages(kSamplesOfKernels + kPlanes * kSamplesOfPlane);
      memory = std::make_unique<KernelMemory>(*new (block.get()) KernelPlanes);
    } else {
      plain = std::make_unique<PlainMemory>(n);
    }
  }

  // One of the engine's planes, not written. The lower its place, the nearer to what the kernels work with.
  GridPlane PlaneAt(std::size_t place, int n) const {
    if (kernels == nullptr) return {n, GridPlane::Allocate(n)};
    return {n, std::shared_ptr<double[]>(block, block.get() + kSamplesOfKernels + place * kSamplesOfPlane)};
  }

  // A plane for the length of an operation.
  double* Spare() const {
    return kernels != nullptr ? reinterpret_cast<double*>(memory->planes.object) : plain->productImag.data();
  }

  Scratch ScratchOf() const { return {memory->planes.plane, memory->planes.lines}; }

  const Tables& tables = TransformTables();
  const Kernels* kernels = nullptr;  // none on other grids than theirs
  std::unique_ptr<KernelMemory> memory;
  std::unique_ptr<PlainMemory> plain;
  SampledPupil pupil{};

 private:
  static constexpr std::size_t kSamplesOfKernels = sizeof(KernelPlanes) / sizeof(double);
  static constexpr std::size_t kSamplesOfPlane = kKernelGrid * kKernelGrid;
  static constexpr std::size_t kPlanes = 8;

  std::shared_ptr<double[]> block;  // all memory of an engine of the kernels' grid
};

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_WORKSPACE_H
