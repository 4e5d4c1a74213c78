// Tests the exports, from coefficients to results, against the reference.
#include <gtest/gtest.h>
#include <orvanel/optics_engine.h>
#include <orvanel/orvanel.h>

#include <string>
#include <vector>

#include "tests/reference/eyes.h"
#include "tests/support/error_bounds.h"
#include "tests/support/plain.h"
#include "tests/support/reference.h"

namespace orvanel {
namespace {

using namespace reference;

class Exports : public testing::TestWithParam<Eye> {
 protected:
  void SetUp() override {
    OrvanelInputPupil(eye_.diameter);
    ASSERT_EQ(OrvanelInputZer(eye_.coefficients.data()), 1);
    const Plane wavefront = SynthesizeWavefront(eye_.coefficients, eye_.diameter, 256, 1, 1, 1).w;
    const Plane intensity = PupilIntensity(wavefront, 256, kWavelength);
    psf_ = PsfFromIntensity(intensity, 256, 129, FindPeak(intensity, 256));
    fieldError_ = FieldError(wavefront, WavefrontError(eye_.coefficients));
    ASSERT_TRUE(HasOnePeak(intensity, PsfError(psf_.plane, fieldError_)));
    halfWidth_ = PsfHalfWidth(129, kWavelength, eye_.diameter);
  }

  const Eye& eye_ = GetParam();
  Psf psf_;
  Real fieldError_ = 0, halfWidth_ = 0;
};

TEST_P(Exports, PointSpreadFunction) {
  std::vector<double> plane(65536);
  double strehl = -1.0, halfWidth = -1.0;
  ASSERT_EQ(OrvanelGetPSF(plane.data(), &strehl, &halfWidth), 1);
  const Real bound = PsfError(psf_.plane, fieldError_);
  EXPECT_LE(Difference("psf", ToReal(plane), psf_.plane, bound), bound);
  EXPECT_LE(Difference("strehl", {strehl / psf_.strehl}, {1}, bound), bound);
  EXPECT_PRED3(Near, halfWidth, halfWidth_, kScalarError * halfWidth_);
}

TEST_P(Exports, ModulationTransferFunctionAndItsSections) {
  std::vector<double> plane(65536), row(128), column(128), limit(128);
  double range = -1.0, graphRange = -1.0;
  ASSERT_EQ(OrvanelGetMTF(plane.data(), &range), 1);
  ASSERT_EQ(OrvanelGetMTFGraph(row.data(), column.data(), limit.data(), &graphRange), 1);
  const Plane expected = Mtf(psf_.plane, 256).modulation;
  const Real bound = MtfError(OtfError(psf_.plane, 256, fieldError_));
  EXPECT_LE(Difference("mtf", ToReal(plane), expected, bound), bound);
  EXPECT_LE(Difference("row", ToReal(row), RowSection(expected, 256, 256), bound), bound);
  EXPECT_LE(Difference("column", ToReal(column), ColumnSection(expected, 256, 256), bound), bound);
  EXPECT_LE(Difference("limit", ToReal(limit), DiffractionLimit(129, halfWidth_, 256), kScalarError), kScalarError);
  const Real expectedRange = FrequencyRange(FrequencyStep(256, halfWidth_));
  EXPECT_PRED3(Near, range, expectedRange, kScalarError * expectedRange);
  EXPECT_EQ(graphRange, range);
}

TEST_P(Exports, RingsInEveryDirection) {
  std::vector<double> unused(65536), image(65536), optotype(65536);
  double strehl, halfWidth, effective = -1.0;
  ASSERT_EQ(OrvanelGetPSF(unused.data(), &strehl, &halfWidth), 1);
  const ComplexPlane otf = EyeOtf(psf_.plane, 256);
  for (const int gap : {1, 2, 3, 4, -6}) {
    const double acuity = 0.21 + 0.07 * gap * gap;
    ASSERT_EQ(OrvanelGetOrvanel(acuity, image.data(), &effective, optotype.data(), gap), 1);
    const plain::RingSize size = plain::SizeOfRing(acuity, 256, 256, halfWidth, 17.0);
    EXPECT_EQ(effective, size.effectiveAcuity);
    ASSERT_EQ(optotype, plain::DrawRing(size.diameter, 256, gap == -6 ? 3 : gap));
    const Plane object = ToReal(optotype), raw = FilteredIntensity(object, otf, 256);
    const Real bound = ScaledImageError(object, raw, 256, ImageError(object, psf_.plane, raw, 256, fieldError_));
    const Plane expected = Clipped(ScaledToTotal(raw, Sum(object)));
    EXPECT_LE(Difference("diameter" + std::to_string(size.diameter), ToReal(image), expected, bound), bound);
  }
}

TEST_P(Exports, StarStretchedAndAfterARingScaled) {
  std::vector<double> stretched(65536), scaled(65536), star(65536), ring(65536);
  ASSERT_EQ(OrvanelGetPattern(stretched.data()), 1);
  double effective = -1.0;
  ASSERT_EQ(OrvanelGetOrvanel(0.7, ring.data(), &effective, nullptr, 2), 1);
  ASSERT_EQ(OrvanelGetPattern(scaled.data()), 1);
  ASSERT_EQ(OrvanelGetPatternOriginal(star.data()), 1);
  ASSERT_EQ(star, SectorStar());

  const Plane object = ToReal(star);
  const Plane raw = FilteredIntensity(object, EyeOtf(psf_.plane, 256), 256);
  const Real error = ImageError(object, psf_.plane, raw, 256, fieldError_);
  const Real stretchedBound = StretchedImageError(raw, error), scaledBound = ScaledImageError(object, raw, 256, error);
  EXPECT_LE(Difference("stretched", ToReal(stretched), Stretched(raw), stretchedBound), stretchedBound);
  EXPECT_LE(Difference("scaled", ToReal(scaled), Clipped(ScaledToTotal(raw, Sum(object))), scaledBound), scaledBound);
}

std::string EyeName(const testing::TestParamInfo<Eye>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Eyes, Exports, testing::ValuesIn(Eyes()), EyeName);

}  // namespace
}  // namespace orvanel
