// Defines the memory of an engine, allocated once, and its pipeline, chosen once.
#ifndef ORVANEL_MODELS_CLASSIC_WORKSPACE_H
#define ORVANEL_MODELS_CLASSIC_WORKSPACE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <utility>
#include <variant>

#include "models/classic/large_pages.h"
#include "optics/kernels/dispatch.h"
#include "optics/pipeline/kernel_pipeline.h"
#include "optics/pipeline/portable_pipeline.h"
#include "optics/samples_memory.h"
#include "orvanel/optics_engine.h"

namespace orvanel {

// Does not move: planes that are pending have its address.
struct OpticsEngine::Workspace {
  // The workspace of a grid. Null if memory is exhausted, and if there are no kernels for their grid.
  static std::unique_ptr<Workspace> Make(int n) noexcept {
    const Kernels* const kernels = n == kKernelGrid ? ActiveKernels() : nullptr;
    if (n == kKernelGrid && kernels == nullptr) return nullptr;
    const std::uint64_t ofPlane = SamplesOfPlane(n);
    std::shared_ptr<double[]> block = kernels != nullptr
                                          ? LargePages(KernelPipeline::kSamples + kPlanes * ofPlane)
                                          : SamplesMemory((PortablePipeline::kPlanes + kPlanes) * ofPlane, kCacheLine);
    if (n >= 1 && block == nullptr) return nullptr;
    return std::unique_ptr<Workspace>(new Workspace(n, kernels, std::move(block)));
  }

  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;
  ~Workspace() = default;

  static void* operator new(std::size_t bytes) noexcept { return TakeMemory(bytes, kCacheLine); }
  static void operator delete(void* memory) noexcept { GiveBack(memory); }

  // One of the engine's planes, not initialised. Planes of low places are next to the pipeline's memory.
  GridPlane PlaneAt(std::size_t place) const {
    const int n = pipeline->side();
    if (n < 1) return {};
    return {n, std::shared_ptr<double[]>(block_, planes_ + place * static_cast<std::size_t>(SamplesOfPlane(n)))};
  }

  // The engine's planes of the transfer function, if the host may have changed them, or the pipeline does not hold it.
  static std::optional<ConstComplexView> ExposedOtf(OpticsEngine& engine) {
    if (!engine.otfRealPlane.exposed() && !engine.otfImagPlane.exposed()) return std::nullopt;
    return OtfPlanes(engine);
  }

  static ConstComplexView OtfPlanes(OpticsEngine& engine) {
    const int n = engine.gridSize;
    return {{engine.otfRealPlane.data(), n}, {engine.otfImagPlane.data(), n}};
  }

  // contract: flag 0 keeps the total, any other stretches.
  static Brightness BrightnessOf(const OpticsEngine& engine, std::optional<double> total) {
    return {engine.normaliseOutput != 0, total};
  }

  // The coordinate plane of the last synthesis: pending, or written inside the pupil if the plane is exposed.
  template <Coordinate which>
  void SetCoordinate(LazyPlane& plane);

  Pipeline* pipeline = nullptr;     // one of pipelines_
  double coordinateDiameter = 0.0;  // of the pupil of the last synthesis, for the coordinate planes

 private:
  static constexpr std::uint64_t kPlanes = 8;

  // The samples of a plane, and those up to the next cache line.
  static constexpr std::uint64_t SamplesOfPlane(int n) {
    constexpr std::uint64_t kLine = kCacheLine / sizeof(double);
    const std::uint64_t side = n < 1 ? 0 : static_cast<std::uint64_t>(n);
    return (side * side + kLine - 1) / kLine * kLine;
  }

  // The one place that chooses between kernels and portable stages. Both constructors throw nothing, so emplace does
  // not. NOLINTNEXTLINE(bugprone-exception-escape)
  Workspace(int n, const Kernels* kernels, std::shared_ptr<double[]> block) noexcept : block_(std::move(block)) {
    if (kernels != nullptr) {
      pipeline = &pipelines_.emplace<KernelPipeline>(*kernels, *new (block_.get()) KernelMemory);
      planes_ = block_.get() + KernelPipeline::kSamples;
    } else {
      const std::uint64_t ofPlane = SamplesOfPlane(n);
      pipeline = &pipelines_.emplace<PortablePipeline>(n, block_.get(), ofPlane);
      planes_ = block_.get() + PortablePipeline::kPlanes * ofPlane;
    }
  }

  std::shared_ptr<double[]> block_;  // all samples of an engine: those of the pipeline, then its planes
  double* planes_ = nullptr;
  std::variant<std::monostate, KernelPipeline, PortablePipeline> pipelines_;
};

}  // namespace orvanel

#endif  // ORVANEL_MODELS_CLASSIC_WORKSPACE_H
