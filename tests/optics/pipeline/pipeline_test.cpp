// Tests that both pipelines on the 256 grid give the same results to rounding.
#include "optics/pipeline/pipeline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <vector>

#include "optics/retinal_image.h"
#include "tests/optics/pipelines.h"
#include "tests/support/every_kernel.h"

namespace orvanel {
namespace {

using test::Plane;
using test::ViewOf;
using test::Written;

// Two chains of three 256 x 256 transforms, relative to the largest sample: each transform has 16 stages, whose errors
// of a few units of 2^-53 add up.
constexpr double kRounding = 1e-12;

void ExpectNear(const Plane& actual, const Plane& expected) {
  const auto [least, most] = std::minmax_element(expected.begin(), expected.end());
  const double bound = kRounding * std::max(std::fabs(*least), std::fabs(*most));
  for (std::size_t i = 0; i < expected.size(); ++i) ASSERT_NEAR(actual[i], expected[i], bound) << i;
}

class Pipelines : public test::EveryKernel {
 protected:
  Pipelines() {
    for (Pipeline* const pipeline : {&*kernels_, &*portable_}) test::FormPsfOfAnEye(*pipeline, 3e-4);
  }

  // The transfer function of images, as planes.
  struct Otf {
    Plane re, im;
    ConstComplexView View() const { return {ViewOf(re), ViewOf(im)}; }
  };
  static Otf OtfOf(Pipeline& pipeline) {
    pipeline.FormOtf();
    return {Written(pipeline, &Pipeline::WriteOtfReal), Written(pipeline, &Pipeline::WriteOtfImag)};
  }

  static Plane RealImage(Pipeline& pipeline, const Otf& otf, const Brightness& brightness) {
    Plane image = test::EmptyPlane(kKernelGrid);
    pipeline.RealImage(ViewOf(test::Stripes(kKernelGrid)), otf.View(), brightness, ViewOf(image));
    return image;
  }

  static Plane ComplexImage(Pipeline& pipeline, Plane re, Plane im, const Brightness& brightness) {
    const Otf otf = OtfOf(pipeline);
    Plane image = test::EmptyPlane(kKernelGrid);
    pipeline.ComplexImage({ViewOf(re), ViewOf(im)}, otf.View(), brightness, ViewOf(image));
    return image;
  }

  test::OwnKernelPipeline kernels_{*GetParam()};
  test::OwnPortablePipeline portable_{kKernelGrid};
};

TEST_P(Pipelines, HaveTheSameWavefrontToTheBit) {
  EXPECT_TRUE(test::SameBits(test::WavefrontOfAnEye(*kernels_, 3e-4), test::WavefrontOfAnEye(*portable_, 3e-4)));
}

TEST_P(Pipelines, HaveTheSamePsfAndPeak) {
  const double peak = test::FormPsfOfAnEye(*portable_, 3e-4);
  EXPECT_NEAR(test::FormPsfOfAnEye(*kernels_, 3e-4), peak, kRounding * peak);
  ExpectNear(Written(*kernels_, &Pipeline::WritePsf), Written(*portable_, &Pipeline::WritePsf));
  for (Pipeline* const pipeline : {&*kernels_, &*portable_}) {
    const Plane wavefront = test::WavefrontOfAnEye(*pipeline, 3e-4);
    EXPECT_EQ(pipeline->PeakIntensity(ViewOf(wavefront), kWavelength), test::FormPsfOfAnEye(*pipeline, 3e-4));
  }
}

TEST_P(Pipelines, HaveTheSameTransferFunctions) {
  const Otf expected = OtfOf(*portable_), actual = OtfOf(*kernels_);
  ExpectNear(actual.re, expected.re);
  ExpectNear(actual.im, expected.im);
  kernels_->FormMtf();
  portable_->FormMtf();
  const Plane mtf = Written(*portable_, &Pipeline::WriteMtf), phase = Written(*portable_, &Pipeline::WritePhase);
  ExpectNear(Written(*kernels_, &Pipeline::WriteMtf), mtf);
  const Plane actualPhase = Written(*kernels_, &Pipeline::WritePhase);
  for (std::size_t i = 0; i < phase.size(); ++i) {
    // A phase is off by the error of the transform over the modulus.
    const double distance = std::abs(std::polar(1.0, actualPhase[i]) - std::polar(1.0, phase[i]));
    ASSERT_LE(distance * mtf[i], kRounding) << i;
  }
}

TEST_P(Pipelines, FormTheTransferFunctionOfAPlane) {
  const Plane psf = test::Stripes(kKernelGrid);
  for (Pipeline* const pipeline : {&*kernels_, &*portable_}) pipeline->FormOtf(ViewOf(psf));
  ExpectNear(Written(*kernels_, &Pipeline::WriteOtfReal), Written(*portable_, &Pipeline::WriteOtfReal));
  ExpectNear(Written(*kernels_, &Pipeline::WriteOtfImag), Written(*portable_, &Pipeline::WriteOtfImag));
}

TEST_P(Pipelines, HaveTheSameImages) {
  const Otf otf = OtfOf(*portable_);
  const double total = Total(ViewOf(test::Stripes(kKernelGrid)));
  for (const Brightness& brightness : {Brightness{false, {}}, Brightness{false, 0.7 * total}, Brightness{true, {}}}) {
    ExpectNear(RealImage(*kernels_, otf, brightness), RealImage(*portable_, otf, brightness));
  }
  // The kernels take the object's total from its transform.
  for (Pipeline* const pipeline : {&*kernels_, &*portable_}) {
    ExpectNear(RealImage(*pipeline, otf, {false, total}), RealImage(*pipeline, otf, {false, {}}));
  }
}

TEST_P(Pipelines, HaveTheSameImagesOfComplexObjects) {
  const Plane re = test::Stripes(kKernelGrid), im(re.rbegin(), re.rend());
  for (const Brightness& brightness : {Brightness{false, 9000.0}, Brightness{true, {}}}) {
    ExpectNear(ComplexImage(*kernels_, re, im, brightness), ComplexImage(*portable_, re, im, brightness));
  }
}

TEST_P(Pipelines, HaveTheSameImageOfARealObjectThatIsGivenAsComplex) {
  const Plane object = test::Stripes(kKernelGrid);
  const double total = Total(ViewOf(object));
  for (Pipeline* const pipeline : {&*kernels_, &*portable_}) {
    ExpectNear(ComplexImage(*pipeline, object, Plane(object.size()), {false, total}),
               RealImage(*pipeline, OtfOf(*pipeline), {}));
  }
}

TEST_P(Pipelines, HaveTheSameImageOfAPreparedObjectToTheBit) {
  const Plane object = test::Stripes(kKernelGrid);
  for (Pipeline* const pipeline : {&*kernels_, &*portable_}) {
    const Otf otf = OtfOf(*pipeline);
    const auto [firstSide, secondSide] = pipeline->SidesOfPrepared();
    std::vector<std::array<double, 8>> lines(SampleCount(firstSide) / 8 + 8);  // of which one begins a cache line
    void* aligned = lines.data();
    std::size_t space = lines.size() * sizeof lines[0];
    const PlaneView first = {static_cast<double*>(std::align(64, 1, aligned, space)), firstSide};
    Plane second = test::EmptyPlane(secondSide);
    const double total = pipeline->Prepare(ViewOf(object), first, ViewOf(second, secondSide));
    EXPECT_NEAR(total, Total(ViewOf(object)), kRounding * total);
    Plane image = test::EmptyPlane(kKernelGrid);
    pipeline->PreparedImage(first, ViewOf(second, secondSide), otf.View(), {false, total}, ViewOf(image));
    EXPECT_TRUE(test::SameBits(image, RealImage(*pipeline, otf, {})));
  }
}

TEST_P(Pipelines, TransformAlikeInEveryDirection) {
  for (const int direction : {0, 1, 2}) {
    Plane re = test::Stripes(kKernelGrid), im(re.rbegin(), re.rend());
    Plane expectedRe = re, expectedIm = im;
    kernels_->Transform({ViewOf(re), ViewOf(im)}, direction);
    portable_->Transform({ViewOf(expectedRe), ViewOf(expectedIm)}, direction);
    ExpectNear(re, expectedRe);
    ExpectNear(im, expectedIm);
  }
}

TEST_P(Pipelines, HaveTheSameCentredTransformToTheBit) {
  for (const int log2n : {8, 7}) {
    for (const int direction : {1, -1}) {
      Plane re = test::Stripes(kKernelGrid), im(re.rbegin(), re.rend());
      Plane expectedRe = re, expectedIm = im;
      kernels_->CentredTransform({ViewOf(re), ViewOf(im)}, direction, log2n);
      portable_->CentredTransform({ViewOf(expectedRe), ViewOf(expectedIm)}, direction, log2n);
      EXPECT_TRUE(test::SameBits(re, expectedRe) && test::SameBits(im, expectedIm)) << log2n << ' ' << direction;
    }
  }
}

TEST_P(Pipelines, DrawTheSameRings) {
  for (const int diameter : {-40, 0, 15, 40, 395}) {
    for (const int gap : {0, 1, 2, 3, 4, 5}) {
      Plane actual = test::EmptyPlane(kKernelGrid), expected = actual;
      kernels_->DrawRing(ViewOf(actual), diameter, gap);
      portable_->DrawRing(ViewOf(expected), diameter, gap);
      EXPECT_TRUE(test::SameBits(actual, expected)) << diameter << ' ' << gap;
    }
  }
}

ORVANEL_ON_EVERY_KERNEL(Pipelines);

}  // namespace
}  // namespace orvanel
