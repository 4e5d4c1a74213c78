// Tests construction, moves and destruction of engines.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

#include "orvanel/optics_engine.h"
#include "orvanel/transforms.h"

namespace orvanel {
namespace {

using Coefficients = std::array<double, kCoefficients>;

Coefficients SomeEye() {
  Coefficients c{};
  c[4] = 1e-4;
  c[7] = -2e-4;
  c[11] = 3e-5;
  return c;
}

TEST(Engine, IsMadeForTheFullGridByDefault) {
  const OpticsEngine engine;
  EXPECT_EQ(engine.gridSize, 256);
  const auto isZero = [](const GridPlane& plane) {
    return plane.side() == 256 && std::all_of(plane.begin(), plane.end(), [](double v) { return v == 0.0; });
  };
  EXPECT_TRUE(isZero(engine.wavefrontPlane));
  EXPECT_TRUE(isZero(engine.pupilXPlane));
  EXPECT_TRUE(isZero(engine.pupilYPlane));
  EXPECT_TRUE(isZero(engine.psfPlane));
  EXPECT_TRUE(isZero(engine.otfRealPlane));
  EXPECT_TRUE(isZero(engine.otfImagPlane));
  EXPECT_TRUE(isZero(engine.auxPlaneA));
  EXPECT_TRUE(isZero(engine.phasePlane));
}

TEST(Engine, StartsWithZeros) {
  const OpticsEngine engine(32);
  EXPECT_EQ(engine.gridSize, 32);
  EXPECT_EQ(engine.psfHalfWidth, 0.0);
  EXPECT_EQ(engine.strehlRatio, 0.0);
  EXPECT_EQ(engine.normaliseOutput, 0);
  EXPECT_EQ(engine.focalLength, 0.0);
  EXPECT_EQ(engine.pupilSamples, 0);
  EXPECT_EQ(engine.psfWavelength, 0.0);
  EXPECT_EQ(engine.pupilDiameter, 0.0);
  EXPECT_EQ(engine.otfValid, 0);
}

TEST(Engine, CanBeMadeWithItsWavefront) {
  const OpticsEngine made(SomeEye().data(), 4.2, 64, 0, 0, 1);
  OpticsEngine synthesized(64);
  synthesized.synthesizeWavefront(SomeEye().data(), 4.2, 0, 0, 1);
  EXPECT_TRUE(std::equal(made.wavefrontPlane.begin(), made.wavefrontPlane.end(), synthesized.wavefrontPlane.begin()));
  EXPECT_EQ(made.pupilDiameter, 4.2);
  EXPECT_EQ(made.pupilSamples, 33);
  EXPECT_EQ(made.normaliseOutput, 1);
}

TEST(Engine, KeepsItsPlanesForLife) {
  OpticsEngine engine(64);
  const double* const wavefront = engine.wavefrontPlane.data();
  const double* const psf = engine.psfPlane.data();
  std::vector<double> copy(64 * 64);
  double pitch = 0.0, strehl = 0.0;
  engine.synthesizeWavefront(SomeEye().data(), 4.2, 1, 1, 1);
  engine.ComputePsf(kWavelength, copy.data(), &pitch, &strehl, 64);
  EXPECT_EQ(engine.wavefrontPlane.data(), wavefront);
  EXPECT_EQ(engine.psfPlane.data(), psf);
  EXPECT_EQ(engine.gridSize, 64);
}

TEST(Engine, DoesNotTouchItsSparePlane) {
  OpticsEngine engine(SomeEye().data(), 4.2, 256, 1, 1, 1);
  std::fill(engine.auxPlaneA.begin(), engine.auxPlaneA.end(), 3.25);
  std::vector<double> plane(65536), image(65536);
  std::array<double, 128> row{}, column{}, limit{};
  double step = 0.0;
  engine.ComputeMtf(kWavelength, plane.data(), &step, row.data(), column.data(), limit.data(), 256);
  engine.PatternRetinalImage(image.data(), plane.data(), 256);
  EXPECT_TRUE(std::all_of(engine.auxPlaneA.begin(), engine.auxPlaneA.end(), [](double v) { return v == 3.25; }));
}

TEST(Engine, Moves) {
  OpticsEngine engine(SomeEye().data(), 4.2, 64, 1, 1, 1);
  const double value = engine.wavefrontPlane(40, 30);
  OpticsEngine moved = std::move(engine);
  EXPECT_EQ(moved.wavefrontPlane(40, 30), value);
  std::vector<double> copy(64 * 64);
  double pitch = 0.0, strehl = 0.0;
  EXPECT_TRUE(moved.ComputePsf(kWavelength, copy.data(), &pitch, &strehl, 64));
}

TEST(Engine, MovesWithEveryField) {
  static_assert(std::is_nothrow_move_constructible_v<OpticsEngine>);
  static_assert(std::is_nothrow_move_assignable_v<OpticsEngine>);
  for (const bool assigned : {false, true}) {
    OpticsEngine engine(SomeEye().data(), 4.2, 64, 1, 1, 1), other(128);
    engine.auxPlaneA(3, 4) = 7.5;
    engine.psfHalfWidth = 1.5;
    engine.strehlRatio = 2.5;
    engine.normaliseOutput = 3;
    engine.focalLength = 4.5;
    engine.pupilSamples = 5;
    engine.psfWavelength = 6.5;
    engine.pupilDiameter = 7.5;
    engine.otfValid = 8;
    const double* const wavefront = engine.wavefrontPlane.data();
    if (assigned) other = std::move(engine);
    const OpticsEngine moved = std::move(assigned ? other : engine);
    EXPECT_EQ(moved.gridSize, 64);
    EXPECT_EQ(moved.wavefrontPlane.data(), wavefront);
    EXPECT_EQ(moved.auxPlaneA(3, 4), 7.5);
    EXPECT_EQ(moved.psfHalfWidth, 1.5);
    EXPECT_EQ(moved.strehlRatio, 2.5);
    EXPECT_EQ(moved.normaliseOutput, 3);
    EXPECT_EQ(moved.focalLength, 4.5);
    EXPECT_EQ(moved.pupilSamples, 5);
    EXPECT_EQ(moved.psfWavelength, 6.5);
    EXPECT_EQ(moved.pupilDiameter, 7.5);
    EXPECT_EQ(moved.otfValid, 8);
  }
}

TEST(Engine, APlaneThatIsMovedOutOutlivesIt) {
  GridPlane wavefront;
  double value = 0.0;
  {
    OpticsEngine engine(SomeEye().data(), 4.2, 256, 1, 1, 1);
    value = engine.wavefrontPlane(130, 120);
    wavefront = std::move(engine.wavefrontPlane);
  }
  const OpticsEngine another(SomeEye().data(), 3.0, 256, 1, 1, 1);
  EXPECT_NE(value, kWavefrontOutside);
  EXPECT_EQ(wavefront(130, 120), value);
  EXPECT_EQ(wavefront(0, 0), kWavefrontOutside);
}

TEST(Engine, HasPlanesOfTheirOwn) {
  for (const int n : {256, 64}) {
    OpticsEngine engine(n);
    const std::array<double*, 8> planes = {
        engine.wavefrontPlane.data(), engine.pupilXPlane.data(),  engine.pupilYPlane.data(), engine.psfPlane.data(),
        engine.otfRealPlane.data(),   engine.otfImagPlane.data(), engine.auxPlaneA.data(),   engine.phasePlane.data()};
    const auto samples = static_cast<std::size_t>(n * n);
    for (std::size_t p = 0; p < planes.size(); ++p) std::fill_n(planes[p], samples, static_cast<double>(p));
    for (std::size_t p = 0; p < planes.size(); ++p) {
      EXPECT_EQ(std::count(planes[p], planes[p] + samples, static_cast<double>(p)), n * n);
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(planes[p]) % 64, 0U);
    }
    std::vector<double> image(samples), object(samples, 0.25);
    double pitch = 0.0, strehl = 0.0;
    engine.ComputePsf(kWavelength, image.data(), &pitch, &strehl, n);
    engine.PatternRetinalImage(image.data(), object.data(), n);
    for (const std::size_t p : {0U, 6U}) {  // the wavefront and the spare plane, where neither goes
      EXPECT_EQ(std::count(planes[p], planes[p] + samples, static_cast<double>(p)), n * n);
    }
  }
}

TEST(Engine, SynthesisOnAGridWithoutSamplesDoesNothing) {
  for (const int n : {0, -4}) {
    OpticsEngine engine(n);
    engine.synthesizeWavefront(SomeEye().data(), 4.2, 1, 1, 1);
    EXPECT_EQ(engine.wavefrontPlane.data(), nullptr);
    EXPECT_EQ(engine.gridSize, n);
  }
}

TEST(Engine, WavelengthHasItsExactBits) { EXPECT_EQ(std::bit_cast<std::uint64_t>(kWavelength), 0x3F4340CF7E020E77u); }

TEST(Engine, OffersTheTransformsOfItsSteps) {
  OpticsEngine engine(8);
  std::vector<double> re(64, 0.0), im(64, 0.0), power(64, -1.0);
  re[0] = 64.0;
  EXPECT_TRUE(engine.Fft2(re.data(), im.data(), 8, 0));
  EXPECT_EQ(re[63], 1.0);
  EXPECT_TRUE(engine.Fft2(re.data(), im.data(), 8, 1));
  engine.ShiftedPowerSpectrum(power.data(), re.data(), im.data());
  EXPECT_EQ(power[4 * 8 + 4], 4096.0);
  std::fill(re.begin(), re.end(), 0.0);
  re[4 * 8 + 4] = 1.0;
  engine.CentredFft2(re.data(), im.data(), 1, 8, 3);
  EXPECT_NEAR(re[13], 0.125, 1e-16);
}

TEST(Engine, ComputingOnAGridWithoutSamplesWritesNothing) {
  for (const int n : {0, -4}) {
    OpticsEngine engine(SomeEye().data(), 4.2, n, 1, 1, 1);
    double sample = 5.5, step = 6.5, strehl = 7.5;
    EXPECT_TRUE(engine.ComputeMtf(kWavelength, &sample, &step, &sample, &sample, &sample, n));
    EXPECT_FALSE(engine.ComputePsf(kWavelength, &sample, &step, &strehl, n));
    EXPECT_EQ(sample, 5.5);
    EXPECT_EQ(step, 6.5);
    EXPECT_EQ(strehl, 7.5);
  }
}

TEST(Engine, ItsCentredTransformOfOtherSidesAndLogarithmsIsThePlainOne) {
  OpticsEngine engine;
  const auto withBits = [&](int n, int log2n) {
    const auto size = static_cast<std::size_t>(n * n);
    std::vector<double> re(size), im(size);
    for (std::size_t i = 0; i < size; ++i)
      re[i] = static_cast<double>(i % 7) - 2.5, im[i] = static_cast<double>(i % 11);
    std::vector<double> plainRe = re, plainIm = im;
    engine.CentredFft2(re.data(), im.data(), 1, n, log2n);
    CentredFft2(plainRe.data(), plainIm.data(), 1, n, log2n);
    return re == plainRe && im == plainIm;
  };
  EXPECT_TRUE(withBits(256, 7));
  EXPECT_TRUE(withBits(64, 6));
  EXPECT_TRUE(withBits(64, 8));
}

TEST(Engine, ItsTransformReportsAMissingPlaneAndLeavesTheOther) {
  for (const int n : {64, 256}) {
    OpticsEngine engine(n);
    std::vector<double> plane(static_cast<std::size_t>(n * n), 2.5);
    for (const int direction : {0, 1}) {
      testing::internal::CaptureStderr();
      EXPECT_TRUE(engine.Fft2(nullptr, plane.data(), n, direction));
      EXPECT_TRUE(engine.Fft2(plane.data(), nullptr, n, direction));
      EXPECT_EQ(testing::internal::GetCapturedStderr(),
                "MKL ERROR : Parameter 1 of ZFFT2DC\nMKL ERROR : Parameter 2 of ZFFT2DC\n");
    }
    EXPECT_TRUE(std::all_of(plane.begin(), plane.end(), [](double v) { return v == 2.5; }));
  }
}

}  // namespace
}  // namespace orvanel
