// Tests the portable pipeline on grids without kernels.
#include "optics/pipeline/portable_pipeline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>

#include "optics/psf.h"
#include "tests/optics/pipelines.h"
#include "tests/support/every_kernel.h"

namespace orvanel {
namespace {

using test::Plane;
using test::ViewOf;
using test::Written;

TEST(PortablePipeline, IsDarkBeforeTheFirstPsf) {
  test::OwnPortablePipeline pipeline(64);
  EXPECT_EQ(Written(*pipeline, &Pipeline::WritePsf), Plane(64 * 64));
  pipeline->FormOtf();
  EXPECT_EQ(Written(*pipeline, &Pipeline::WriteOtfReal), Plane(64 * 64));
  EXPECT_EQ(Written(*pipeline, &Pipeline::WriteOtfImag), Plane(64 * 64));
}

TEST(PortablePipeline, PsfHasItsPeakOfOneInTheMiddle) {
  for (const int n : {8, 64, 128, 512}) {
    test::OwnPortablePipeline pipeline(n);
    EXPECT_GT(test::FormPsfOfAnEye(*pipeline, 3e-4), 0.0);
    const Plane psf = Written(*pipeline, &Pipeline::WritePsf);
    EXPECT_NEAR(psf[SampleIndex(n / 2, n / 2, n)], 1.0, std::numeric_limits<double>::epsilon());
    const Peak peak = FindPeak(ViewOf(psf, n));
    EXPECT_EQ(peak.row, n / 2);
    EXPECT_EQ(peak.column, n / 2);
  }
}

TEST(PortablePipeline, HoldsItsPsfThroughEveryOtherOperation) {
  constexpr int n = 64;
  test::OwnPortablePipeline pipeline(n);
  test::FormPsfOfAnEye(*pipeline, 3e-4);
  const Plane psf = Written(*pipeline, &Pipeline::WritePsf);
  const Plane wavefront = test::WavefrontOfAnEye(*pipeline, -2e-4), object = test::Stripes(n);
  pipeline->PeakIntensity(ViewOf(wavefront, n), kWavelength);
  pipeline->FormMtf();
  pipeline->FormOtf();
  const Plane re = Written(*pipeline, &Pipeline::WriteOtfReal), im = Written(*pipeline, &Pipeline::WriteOtfImag);
  Plane image = test::EmptyPlane(n);
  pipeline->RealImage(ViewOf(object, n), ConstComplexView{ViewOf(re, n), ViewOf(im, n)}, {}, ViewOf(image, n));
  std::fill_n(pipeline->Spare().samples, SampleCount(n), 7.5);
  EXPECT_TRUE(test::SameBits(Written(*pipeline, &Pipeline::WritePsf), psf));
}

TEST(PortablePipeline, WithoutLightHasAPsfOfZeros) {
  constexpr int n = 64;
  test::OwnPortablePipeline pipeline(n);
  Plane wavefront = test::WavefrontOfAnEye(*pipeline, 3e-4);
  test::FormPsfOfAnEye(*pipeline, 3e-4);
  wavefront[SampleIndex(n / 2, n / 2 + 3, n)] = -std::numeric_limits<double>::infinity();
  EXPECT_EQ(pipeline->FormPsf(ViewOf(wavefront, n), kWavelength), 0.0);
  EXPECT_EQ(Written(*pipeline, &Pipeline::WritePsf), Plane(SampleCount(n)));
}

TEST(PortablePipeline, ImagesArePassedTheirTransferFunctionAsPlanes) {
  EXPECT_FALSE(test::OwnPortablePipeline(64)->HoldsTransferFunctions());
}

TEST(PortablePipeline, MeasuresNoPeakBetweenSamples) {
  test::OwnPortablePipeline pipeline(64);
  test::FormPsfOfAnEye(*pipeline, 3e-4);
  const PsfPeak peak = pipeline->PeakBetweenSamples();
  EXPECT_EQ(peak.value, 1.0);
  EXPECT_EQ(peak.row, 0.0);
  EXPECT_EQ(peak.column, 0.0);
}

TEST(PortablePipeline, OfNoSamplesDoesNothing) {
  PortablePipeline pipeline(0, nullptr, 0);
  EXPECT_EQ(pipeline.side(), 0);
  pipeline.WritePsf({nullptr, 0});
  pipeline.WriteOtfReal({nullptr, 0});
}

}  // namespace
}  // namespace orvanel
