// Tests that the kernel pipeline keeps its PSF and both transfer functions during every other operation.
#include "optics/pipeline/kernel_pipeline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "tests/optics/pipelines.h"
#include "tests/support/every_kernel.h"

namespace orvanel {
namespace {

using test::Plane;
using test::SameBits;
using test::ViewOf;
using test::Written;

class KernelPipelines : public test::EveryKernel {
 protected:
  static Plane PhaseOf(Pipeline& pipeline) { return Written(pipeline, &Pipeline::WritePhase); }
  static Plane OtfOf(Pipeline& pipeline) {
    Plane otf = Written(pipeline, &Pipeline::WriteOtfReal);
    const Plane im = Written(pipeline, &Pipeline::WriteOtfImag);
    otf.insert(otf.end(), im.begin(), im.end());
    return otf;
  }

  // Of a pipeline that has done nothing else.
  static Plane FreshPhase(double defocus) {
    test::OwnKernelPipeline fresh(*GetParam());
    test::FormPsfOfAnEye(*fresh, defocus);
    fresh->FormMtf();
    return PhaseOf(*fresh);
  }
  static Plane FreshOtf(double defocus) {
    test::OwnKernelPipeline fresh(*GetParam());
    test::FormPsfOfAnEye(*fresh, defocus);
    fresh->FormOtf();
    return OtfOf(*fresh);
  }

  test::OwnKernelPipeline pipeline_{*GetParam()};
};

TEST_P(KernelPipelines, AreDarkBeforeTheFirstPsf) {
  EXPECT_EQ(Written(*pipeline_, &Pipeline::WritePsf), Plane(65536));
  EXPECT_EQ(OtfOf(*pipeline_), Plane(2 * 65536));
  pipeline_->FormOtf();
  EXPECT_EQ(OtfOf(*pipeline_), Plane(2 * 65536));
}

TEST_P(KernelPipelines, HoldBothTransferFunctions) {
  EXPECT_TRUE(pipeline_->HoldsTransferFunctions());
  test::FormPsfOfAnEye(*pipeline_, 3e-4);
  pipeline_->FormMtf();
  test::FormPsfOfAnEye(*pipeline_, -2e-4);
  pipeline_->FormOtf();
  test::FormPsfOfAnEye(*pipeline_, 1e-4);
  EXPECT_TRUE(SameBits(PhaseOf(*pipeline_), FreshPhase(3e-4)));
  EXPECT_TRUE(SameBits(OtfOf(*pipeline_), FreshOtf(-2e-4)));
  pipeline_->FormMtf();
  EXPECT_TRUE(SameBits(OtfOf(*pipeline_), FreshOtf(-2e-4)));
  EXPECT_TRUE(SameBits(PhaseOf(*pipeline_), FreshPhase(1e-4)));
}

TEST_P(KernelPipelines, ShareTheTransferFunctionOfOnePsf) {
  test::FormPsfOfAnEye(*pipeline_, 3e-4);
  pipeline_->FormMtf();
  pipeline_->FormOtf();
  EXPECT_TRUE(SameBits(OtfOf(*pipeline_), FreshOtf(3e-4)));
  // The next of either kind leaves the other.
  test::FormPsfOfAnEye(*pipeline_, -2e-4);
  pipeline_->FormMtf();
  EXPECT_TRUE(SameBits(OtfOf(*pipeline_), FreshOtf(3e-4)));
  test::FormPsfOfAnEye(*pipeline_, 1e-4);
  pipeline_->FormMtf();
  pipeline_->FormOtf();
  const Plane psf = test::Stripes(kKernelGrid);
  pipeline_->FormOtf(ViewOf(psf));
  EXPECT_TRUE(SameBits(PhaseOf(*pipeline_), FreshPhase(1e-4)));
}

TEST_P(KernelPipelines, HoldTheirPsfThroughEveryOtherOperation) {
  test::FormPsfOfAnEye(*pipeline_, 3e-4);
  const Plane psf = Written(*pipeline_, &Pipeline::WritePsf);
  const Plane wavefront = test::WavefrontOfAnEye(*pipeline_, -2e-4), object = test::Stripes(kKernelGrid);
  pipeline_->PeakIntensity(ViewOf(wavefront), kWavelength);
  pipeline_->FormMtf();
  pipeline_->FormOtf();
  Plane image = test::EmptyPlane(kKernelGrid);
  pipeline_->RealImage(ViewOf(object), std::nullopt, {}, ViewOf(image));
  std::fill_n(pipeline_->Spare().samples, 65536, 7.5);
  EXPECT_TRUE(SameBits(Written(*pipeline_, &Pipeline::WritePsf), psf));
  EXPECT_TRUE(SameBits(OtfOf(*pipeline_), FreshOtf(3e-4)));
}

TEST_P(KernelPipelines, HaveTheSameImageThroughTheHeldTransferFunctionAndItsPlanes) {
  test::FormPsfOfAnEye(*pipeline_, 3e-4);
  pipeline_->FormOtf();
  const Plane re = Written(*pipeline_, &Pipeline::WriteOtfReal), im = Written(*pipeline_, &Pipeline::WriteOtfImag);
  const Plane object = test::Stripes(kKernelGrid);
  for (const Brightness& brightness : {Brightness{}, Brightness{false, 700.0}, Brightness{true, {}}}) {
    Plane held = test::EmptyPlane(kKernelGrid), throughPlanes = held;
    pipeline_->RealImage(ViewOf(object), std::nullopt, brightness, ViewOf(held));
    pipeline_->RealImage(ViewOf(object), ConstComplexView{ViewOf(re), ViewOf(im)}, brightness, ViewOf(throughPlanes));
    EXPECT_TRUE(SameBits(held, throughPlanes));
  }
}

TEST_P(KernelPipelines, FindThePeakBetweenSamplesOfTheirPsf) {
  test::FormPsfOfAnEye(*pipeline_, 3e-4);
  const Plane psf = Written(*pipeline_, &Pipeline::WritePsf);
  const PsfPeak expected = PeakBetweenSamples(psf.data()), peak = pipeline_->PeakBetweenSamples();
  constexpr double kRounding = 1e-9;
  EXPECT_NEAR(peak.value, expected.value, kRounding);
  EXPECT_NEAR(peak.row, expected.row, kRounding);
  EXPECT_NEAR(peak.column, expected.column, kRounding);
}

ORVANEL_ON_EVERY_KERNEL(KernelPipelines);

}  // namespace
}  // namespace orvanel
