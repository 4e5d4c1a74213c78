// Tests general transforms, half spectra and images against plain ones, and fused forms against separate steps to the
// bit.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "optics/kernels/tables.h"
#include "orvanel/optics_engine.h"
#include "tests/optics/kernels/scratch.h"
#include "tests/support/error_bounds.h"
#include "tests/support/every_kernel.h"
#include "tests/support/plain.h"
#include "tests/support/planes.h"

namespace orvanel {
namespace {

using plain::ComplexPlane;
using reference::At;
using reference::Noise;
using reference::Real;
using reference::ToReal;
using test::SameBits;
using Plane = std::vector<double>;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

reference::ComplexPlane Exact(const ComplexPlane& x) { return {ToReal(x.re), ToReal(x.im)}; }

// Both forms may be off.
constexpr Real kTwoTransforms = 2 * reference::kTransformError;

// ---- The general transform

class KernelTransform : public test::EveryKernel {};

TEST_P(KernelTransform, IsThePlainOneInBothDirections) {
  OpticsEngine engine;
  for (const int direction : {0, 1}) {
    ComplexPlane actual{Noise(65536, 71), Noise(65536, 72)}, expected = actual;
    EXPECT_TRUE(engine.Fft2(actual.re.data(), actual.im.data(), 256, direction));
    plain::Fft2(expected, 256, direction);
    EXPECT_LE(reference::RelativeError(Exact(actual), Exact(expected)), kTwoTransforms) << direction;
  }
}

TEST_P(KernelTransform, OfPointsHasTheirPhases) {
  OpticsEngine engine;
  for (const auto& [row, column] : {std::pair{0, 1}, {1, 0}, {3, 200}, {255, 17}}) {
    ComplexPlane actual{Plane(65536), Plane(65536)};
    actual.re[At(row, column, 256)] = 0.7;
    ComplexPlane expected = actual;
    engine.Fft2(actual.re.data(), actual.im.data(), 256, 1);
    plain::Fft2(expected, 256, 1);
    for (std::size_t i = 0; i < 65536; ++i) {
      // A point's transform has the size of the point everywhere; its error is bounded by the norm's.
      ASSERT_NEAR(actual.re[i], expected.re[i], static_cast<double>(kTwoTransforms) * 256 * 0.7);
      ASSERT_NEAR(actual.im[i], expected.im[i], static_cast<double>(kTwoTransforms) * 256 * 0.7);
    }
  }
}

TEST_P(KernelTransform, LeavesOtherDirectionsAndOtherGridsToTheGeneralForm) {
  OpticsEngine engine;
  const Plane before = Noise(65536, 73);
  for (const int direction : {2, -1}) {
    Plane re = before, im = before;
    EXPECT_TRUE(engine.Fft2(re.data(), im.data(), 256, direction));
    EXPECT_TRUE(SameBits(re, before) && SameBits(im, before));
  }
  ComplexPlane actual{Noise(64 * 64, 74), Noise(64 * 64, 75)}, expected = actual;
  engine.Fft2(actual.re.data(), actual.im.data(), 64, 0);
  plain::Fft2(expected, 64, 0);
  EXPECT_LE(reference::RelativeError(Exact(actual), Exact(expected)), kTwoTransforms);
}

// ---- Spectra of real planes

class KernelSpectrum : public test::EveryKernel {
 protected:
  struct Result {
    double total = 0.0;
    ComplexPlane spectrum{Plane(65536, kNan), Plane(65536, kNan)};
  };
  static Result Of(const Plane& plane) {
    Result result;
    const test::KernelScratch scratch;
    result.total = GetParam()->realTransform(plane.data(), TransformTables(), scratch.Of(), scratch.Spectrum());
    GetParam()->unfold(scratch.Spectrum(), result.spectrum.re.data(), result.spectrum.im.data());
    return result;
  }

  static void ExpectPlain(const Plane& plane) {
    const Result actual = Of(plane);
    ComplexPlane expected{plane, Plane(65536)};
    plain::Fft2(expected, 256, 0);
    EXPECT_LE(reference::RelativeError(Exact(actual.spectrum), Exact(expected)), kTwoTransforms);
    const Real sum = reference::Sum(ToReal(plane));
    EXPECT_PRED3(reference::Near, actual.total, sum, reference::kTransformError * reference::Norm(ToReal(plane)) * 256);
  }
};

TEST_P(KernelSpectrum, IsThePlainTransform) {
  for (unsigned seed = 81; seed < 84; ++seed) ExpectPlain(Noise(65536, seed));
}

TEST_P(KernelSpectrum, IsItsOwnMirrorImage) {
  const ComplexPlane spectrum = Of(Noise(65536, 84)).spectrum;
  for (int p = 0; p < 256; ++p) {
    for (int q = 0; q < 256; ++q) {
      const std::size_t i = At(p, q, 256), m = At((256 - p) % 256, (256 - q) % 256, 256);
      ASSERT_EQ(spectrum.re[i], spectrum.re[m]) << p << "," << q;
      ASSERT_EQ(spectrum.im[i], -spectrum.im[m]) << p << "," << q;
    }
  }
}

TEST_P(KernelSpectrum, OfPlanesThatAreConstantInPartIsThePlainTransform) {
  ExpectPlain(Plane(65536, 0.3));
  // Bands of constant rows: whole ones, and some that end within a vector or miss their partner in the other half.
  for (const auto& [first, last] : {std::pair{0, 127}, {0, 255}, {128, 255}, {16, 31}, {8, 20}, {3, 130}, {120, 135}}) {
    Plane plane = Noise(65536, 85);
    for (int r = first; r <= last; ++r) std::fill_n(plane.begin() + 256 * r, 256, 0.01 * r);
    ExpectPlain(plane);
    for (int r = first; r <= last; ++r) std::fill_n(plane.begin() + 256 * (255 - r), 256, 0.5 + r);
    ExpectPlain(plane);
  }
}

TEST_P(KernelSpectrum, SeesTheOneSampleThatDiffersInAConstantPlane) {
  for (const int row : {0, 1, 2, 15, 16, 17, 128, 240, 254, 255}) {
    for (const int column : {0, 7, 127, 130, 255}) {
      Plane plane(65536, 1.0);
      plane[At(row, column, 256)] = 0.0;
      const Result actual = Of(plane);
      EXPECT_NEAR(actual.total, 65535.0, 1e-9);
      // -exp(2 pi i (row p + column q) / 256) / 65536 off the origin.
      const double angle = 6.283185307179586 * (3 * row + 5 * column) / 256.0;
      EXPECT_NEAR(actual.spectrum.re[At(3, 5, 256)], -std::cos(angle) / 65536.0, 1e-15);
      EXPECT_NEAR(actual.spectrum.im[At(3, 5, 256)], -std::sin(angle) / 65536.0, 1e-15);
    }
  }
}

TEST_P(KernelSpectrum, OfWhatIsNotANumberIsNotANumber) {
  for (const double value : {kNan, std::numeric_limits<double>::infinity()}) {
    const Result constant = Of(Plane(65536, value));
    EXPECT_FALSE(std::isfinite(constant.total));
    EXPECT_FALSE(std::isfinite(constant.spectrum.re[At(3, 5, 256)]));
    Plane plane = Noise(65536, 86);
    plane[At(200, 77, 256)] = value;
    EXPECT_FALSE(std::isfinite(Of(plane).spectrum.im[At(9, 4, 256)]));
    for (const int row : {3, 130, 255}) {  // at the beginning of a row that is constant otherwise, and in all of it
      Plane almostConstant(65536, 0.5);
      almostConstant[At(row, 0, 256)] = value;
      EXPECT_FALSE(std::isfinite(Of(almostConstant).spectrum.re[At(3, 5, 256)])) << row;
      std::fill_n(almostConstant.begin() + 256 * row, 256, value);
      EXPECT_FALSE(std::isfinite(Of(almostConstant).spectrum.re[At(3, 5, 256)])) << row;
    }
  }
}

TEST_P(KernelSpectrum, HasTheTotalOfWholeNumbersExactly) {
  Plane plane;
  double sum = 0.0;
  for (int i = 0; i < 65536; ++i) {
    plane.push_back(i * 37 % 101);
    sum += plane.back();
  }
  EXPECT_EQ(Of(plane).total, sum);
}

// ---- Images

class KernelImage : public test::EveryKernel {
 protected:
  KernelImage() {
    std::array<double, kCoefficients> c{};
    c[3] = 1.3e-4;
    c[4] = 5e-4;
    c[7] = 2e-4;
    c[9] = -1e-4;
    engine_.synthesizeWavefront(c.data(), 4.3, 1, 1, 1);
    Plane psf(65536);
    double pitch = 0.0, strehl = 0.0;
    engine_.ComputePsf(kWavelength, psf.data(), &pitch, &strehl, 256);
  }

  Plane ImageOf(const Plane& object, std::uint8_t normalise) {
    engine_.normaliseOutput = normalise;
    Plane image(65536, kNan);
    EXPECT_EQ(engine_.PatternRetinalImage(image.data(), object.data(), 256), 1);
    return image;
  }

  // Dim enough for nothing to be clipped but where clip is set.
  static Plane Stripes(bool clip) {
    Plane plane;
    for (int r = 0; r < 256; ++r) {
      for (int c = 0; c < 256; ++c) plane.push_back((r + 2 * c) / 7 % 2 == 0 ? 0.3 : clip ? 2.0 : 0.5);
    }
    return plane;
  }

  OpticsEngine engine_;
};

TEST_P(KernelImage, IsThePlainOneInBothNormalisations) {
  const Plane psf(engine_.psfPlane.begin(), engine_.psfPlane.end());
  for (const bool clip : {false, true}) {
    const Plane object = Stripes(clip);
    const Plane raw = plain::FilteredIntensity({object, Plane(65536)}, plain::EyeOtf(psf, 256), 256);
    const Real error = 2 * reference::ImageError(ToReal(object), ToReal(psf), ToReal(raw), 256, 0);

    Plane scaled = raw, stretched = raw;
    plain::KeepTotal(scaled, static_cast<double>(reference::Sum(ToReal(object))));
    plain::Stretch(stretched);
    ASSERT_EQ(*std::max_element(scaled.begin(), scaled.end()) == 1.0, clip);
    const Real scaledBound = reference::ScaledImageError(ToReal(object), ToReal(raw), 256, error);
    EXPECT_LE(reference::Difference("scaled", ToReal(ImageOf(object, 0)), ToReal(scaled), scaledBound), scaledBound);
    const Real stretchedBound = reference::StretchedImageError(ToReal(raw), error);
    EXPECT_LE(reference::Difference("stretched", ToReal(ImageOf(object, 1)), ToReal(stretched), stretchedBound),
              stretchedBound);
  }
}

TEST_P(KernelImage, SpansExactlyZeroToOneWhereItIsStretched) {
  const Plane image = ImageOf(Stripes(true), 1);
  EXPECT_EQ(*std::max_element(image.begin(), image.end()), 1.0);
  EXPECT_EQ(*std::min_element(image.begin(), image.end()), 0.0);
}

TEST_P(KernelImage, IsTheSameWhetherOrNotSomebodyHasLookedAtTheTransferFunction) {
  for (const std::uint8_t normalise : {std::uint8_t{0}, std::uint8_t{1}}) {
    const Plane unseen = ImageOf(Stripes(true), normalise);
    ASSERT_EQ(engine_.otfValid, 1);
    engine_.otfImagPlane.data();
    EXPECT_TRUE(SameBits(ImageOf(Stripes(true), normalise), unseen));
    engine_.otfRealPlane.data();
    EXPECT_TRUE(SameBits(ImageOf(Stripes(true), normalise), unseen));
  }
}

TEST_P(KernelImage, OfAPreparedObjectHasTheSameBits) {
  const Plane object = Stripes(true);
  const PreparedObject prepared = OpticsEngine().Prepare(object.data());
  EXPECT_FALSE(prepared.empty());
  for (const std::uint8_t normalise : {std::uint8_t{0}, std::uint8_t{1}}) {
    const Plane expected = ImageOf(object, normalise);
    Plane image(65536, kNan);
    engine_.PreparedRetinalImage(image.data(), prepared);
    EXPECT_TRUE(SameBits(image, expected));
  }
}

TEST_P(KernelImage, OfTheObjectsPlanesHasTheSameBits) {
  const Plane object = Stripes(true);
  const Plane expected = ImageOf(object, 1);
  Plane re = object, im(65536, -0.0), image(65536, kNan);
  engine_.FilterThroughEye(re.data(), im.data(), image.data(), 0.0);
  EXPECT_TRUE(SameBits(image, expected));
}

TEST_P(KernelImage, OfAComplexObjectIsThePlainOne) {
  const Plane psf(engine_.psfPlane.begin(), engine_.psfPlane.end());
  const ComplexPlane object{Stripes(false), Noise(65536, 91)};
  Plane expected = plain::FilteredIntensity(object, plain::EyeOtf(psf, 256), 256);
  const Real light = reference::Norm(ToReal(object.re)) + reference::Norm(ToReal(object.im));
  const Real error = 2 * reference::ImageError({light}, ToReal(psf), ToReal(expected), 256, 0);
  const Real bound = 700.0 / reference::Sum(ToReal(expected)) * error * 2 + 65536 * reference::kUlp;
  plain::KeepTotal(expected, 700.0);
  engine_.normaliseOutput = 0;
  Plane re = object.re, im = object.im, image(65536, kNan);
  engine_.FilterThroughEye(re.data(), im.data(), image.data(), 700.0);
  EXPECT_LE(reference::Difference("complex", ToReal(image), ToReal(expected), bound), bound);
  EXPECT_GT(*std::max_element(image.begin(), image.end()), 0.01);
}

TEST_P(KernelImage, ThroughPlanesOfAHostsOwnIsThePlainOne) {
  // Nothing of them follows from the rest, as it would in a transfer function of light.
  const Plane object = Stripes(false);
  const ComplexPlane otf{Noise(65536, 92), Noise(65536, 93)};
  Plane expected = plain::FilteredIntensity({object, Plane(65536)}, otf, 256);
  plain::Stretch(expected);

  engine_.EnsureOtf();
  std::copy(otf.re.begin(), otf.re.end(), engine_.otfRealPlane.begin());
  std::copy(otf.im.begin(), otf.im.end(), engine_.otfImagPlane.begin());
  const Plane image = ImageOf(object, 1);
  for (std::size_t i = 0; i < 65536; ++i) ASSERT_NEAR(image[i], expected[i], 1e-11) << i;
}

TEST_P(KernelImage, ThroughAnEmptyPsfIsBlackOrNotANumber) {
  std::fill(engine_.psfPlane.begin(), engine_.psfPlane.end(), 0.0);
  engine_.otfValid = 0;
  for (const double v : ImageOf(Stripes(true), 0)) ASSERT_EQ(v, 0.0);
  for (const double v : ImageOf(Stripes(true), 1)) ASSERT_TRUE(std::isnan(v));
}

// ---- Rings

using KernelRing = test::EveryKernel;

TEST_P(KernelRing, HasThePlainBits) {
  for (int diameter = -20; diameter <= 420; diameter += 5) {
    Plane plane(65536, kNan);
    const double centre = diameter % 2 == 0 ? 128.5 : 128.0, outer = 0.5 * diameter, inner = outer - 0.2 * diameter;
    GetParam()->drawRing(plane.data(), centre, inner * inner, outer * outer);
    EXPECT_TRUE(SameBits(plane, plain::DrawRing(diameter, 256, 0))) << diameter;
  }
}

ORVANEL_ON_EVERY_KERNEL(KernelTransform);
ORVANEL_ON_EVERY_KERNEL(KernelSpectrum);
ORVANEL_ON_EVERY_KERNEL(KernelImage);
ORVANEL_ON_EVERY_KERNEL(KernelRing);

}  // namespace
}  // namespace orvanel
