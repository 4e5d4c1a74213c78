// Makes pipelines with memory, for tests without an engine.
#ifndef ORVANEL_TESTS_OPTICS_PIPELINES_H
#define ORVANEL_TESTS_OPTICS_PIPELINES_H

#include <array>
#include <limits>
#include <memory>
#include <vector>

#include "optics/pipeline/kernel_pipeline.h"
#include "optics/pipeline/portable_pipeline.h"
#include "orvanel/constants.h"

namespace orvanel::test {

using Plane = std::vector<double>;

inline Plane EmptyPlane(int side) { return Plane(SampleCount(side), std::numeric_limits<double>::quiet_NaN()); }
inline PlaneView ViewOf(Plane& plane, int side = kKernelGrid) { return {plane.data(), side}; }
inline ConstPlaneView ViewOf(const Plane& plane, int side = kKernelGrid) { return {plane.data(), side}; }

// The portable stages on a grid, in memory full of NaN.
class OwnPortablePipeline {
 public:
  explicit OwnPortablePipeline(int side)
      : memory_(PortablePipeline::kPlanes * SampleCount(side), std::numeric_limits<double>::quiet_NaN()),
        pipeline_(side, memory_.data(), SampleCount(side)) {}

  Pipeline& operator*() { return pipeline_; }
  Pipeline* operator->() { return &pipeline_; }

 private:
  Plane memory_;
  PortablePipeline pipeline_;
};

class OwnKernelPipeline {
 public:
  explicit OwnKernelPipeline(const Kernels& kernels) : pipeline_(kernels, *memory_) {}

  Pipeline& operator*() { return pipeline_; }
  Pipeline* operator->() { return &pipeline_; }

 private:
  std::unique_ptr<KernelMemory> memory_ = std::make_unique<KernelMemory>();
  KernelPipeline pipeline_;
};

// The wavefront of an eye without symmetry.
inline Plane WavefrontOfAnEye(Pipeline& pipeline, double defocus) {
  SelectedTerms terms{{}, 2};
  terms.coefficients[3] = 1.1e-4;
  terms.coefficients[4] = defocus;
  terms.coefficients[7] = 2e-4;
  terms.coefficients[16] = -0.6e-4;
  Plane wavefront = EmptyPlane(pipeline.side());
  pipeline.Synthesize(terms, ViewOf(wavefront, pipeline.side()));
  return wavefront;
}

inline double FormPsfOfAnEye(Pipeline& pipeline, double defocus) {
  const Plane wavefront = WavefrontOfAnEye(pipeline, defocus);
  return pipeline.FormPsf(ViewOf(wavefront, pipeline.side()), kWavelength);
}

// What one of the pipeline's Write functions writes.
inline Plane Written(const Pipeline& pipeline, void (Pipeline::*write)(PlaneView) const) {
  Plane plane = EmptyPlane(pipeline.side());
  (pipeline.*write)(ViewOf(plane, pipeline.side()));
  return plane;
}

// Stripes without symmetry, dim enough not to be clipped.
inline Plane Stripes(int side) {
  Plane plane;
  for (int r = 0; r < side; ++r) {
    for (int c = 0; c < side; ++c) plane.push_back((r + 2 * c) / 7 % 2 == 0 ? 0.3 : 0.5);
  }
  return plane;
}

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_OPTICS_PIPELINES_H
