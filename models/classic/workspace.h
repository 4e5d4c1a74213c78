// Scratch memory of an engine, allocated once so that the operations need none of their own.
#ifndef ORVANEL_MODELS_CLASSIC_WORKSPACE_H
#define ORVANEL_MODELS_CLASSIC_WORKSPACE_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <utility>

#include "models/classic/large_pages.h"
#include "optics/kernels/dispatch.h"
#include "optics/kernels/tables.h"
#include "optics/samples_memory.h"
#include "optics/wavefront.h"
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
  GridPlane objectReal;  // what a transform starts from
  GridPlane objectImag;
  GridPlane productReal;  // what a filter makes of it
  GridPlane productImag;
};

struct OpticsEngine::Workspace {
  // That of a grid; null where memory runs out, and where the kernels' grid has no kernels.
  static std::unique_ptr<Workspace> Make(int n) noexcept {
    const bool forKernels = n == kKernelGrid;
    const Kernels* const kernels = forKernels ? ActiveKernels() : nullptr;
    if (forKernels && kernels == nullptr) return nullptr;
    const std::uint64_t ofPlane = SamplesOfPlane(n);
    std::shared_ptr<double[]> block = forKernels ? LargePages(kSamplesOfKernels + kPlanes * ofPlane)
                                                 : SamplesMemory((kPlanes + kPlainPlanes) * ofPlane, kCacheLine);
    if (n >= 1 && block == nullptr) return nullptr;
    return std::unique_ptr<Workspace>(new Workspace(n, kernels, std::move(block)));
  }

  static void* operator new(std::size_t bytes) noexcept { return TakeMemory(bytes, kCacheLine); }
  static void operator delete(void* memory) noexcept { GiveBack(memory); }

  // One of the engine's planes, not written. The lower its place, the nearer to what the kernels work with.
  GridPlane PlaneAt(std::size_t place, int n) const {
    if (n < 1) return {};
    double* const first = block.get() + (kernels != nullptr ? kSamplesOfKernels : 0);
    return {n, std::shared_ptr<double[]>(block, first + place * static_cast<std::size_t>(SamplesOfPlane(n)))};
  }

  // A plane for the length of an operation.
  double* Spare() {
    return kernels != nullptr ? reinterpret_cast<double*>(memory->planes.object) : plain->productImag.data();
  }

  Scratch ScratchOf() const { return {memory->planes.plane, memory->planes.lines}; }

  const Tables& tables = TransformTables();
  const Kernels* kernels;  // none on other grids than theirs
  std::optional<KernelMemory> memory;
  std::optional<PlainMemory> plain;
  SampledPupil pupil{};

 private:
  static constexpr std::uint64_t kSamplesOfKernels = sizeof(KernelPlanes) / sizeof(double);
  static constexpr std::uint64_t kPlanes = 8;
  static constexpr std::uint64_t kPlainPlanes = 4;

  // Those of a plane, and those up to the next cache line.
  static constexpr std::uint64_t SamplesOfPlane(int n) {
    constexpr std::uint64_t kLine = kCacheLine / sizeof(double);
    const std::uint64_t side = n < 1 ? 0 : static_cast<std::uint64_t>(n);
    return (side * side + kLine - 1) / kLine * kLine;
  }

  Workspace(int n, const Kernels* those, std::shared_ptr<double[]> all) noexcept
      : kernels(those), block(std::move(all)) {
    if (kernels != nullptr) {
      memory.emplace(*new (block.get()) KernelPlanes);
    } else {
      plain = PlainMemory{PlaneAt(8, n), PlaneAt(9, n), PlaneAt(10, n), PlaneAt(11, n)};
      for (GridPlane* const plane :
           {&plain->objectReal, &plain->objectImag, &plain->productReal, &plain->productImag}) {
        std::fill(plane->begin(), plane->end(), 0.0);
      }
    }
  }

  std::shared_ptr<double[]> block;  // all samples of an engine
};

}  // namespace orvanel

#endif  // ORVANEL_MODELS_CLASSIC_WORKSPACE_H
