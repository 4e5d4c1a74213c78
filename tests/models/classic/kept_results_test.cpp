// Tests that results that an engine keeps between calls are never visible: results are those of an engine that keeps
// nothing.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "orvanel/optics_engine.h"
#include "tests/support/every_kernel.h"

namespace orvanel {
namespace {

using Plane = std::vector<double>;
using test::SameBits;

OpticsEngine Eye(double defocus, int n = 256) {
  std::array<double, kCoefficients> c{};
  c[4] = defocus;
  c[7] = 2e-4;
  OpticsEngine engine(c.data(), 4.4, n, 1, 1, 1);
  Plane psf(engine.psfPlane.size());
  double pitch = 0.0, strehl = 0.0;
  engine.ComputePsf(kWavelength, psf.data(), &pitch, &strehl, n);
  return engine;
}

Plane Squares(int n) {
  Plane plane;
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < n; ++c) plane.push_back((r / 9 + 2 * c / 13) % 3 == 0 ? 0.75 : 0.25);
  }
  return plane;
}

Plane ImageBy(OpticsEngine& engine) {
  const int n = engine.gridSize;
  Plane image(engine.psfPlane.size(), -1.0);
  EXPECT_EQ(engine.PatternRetinalImage(image.data(), Squares(n).data(), n), 1);
  return image;
}

// Of an engine that holds this PSF and nothing else.
Plane ImageThrough(const GridPlane& psf, std::uint8_t normalise) {
  OpticsEngine engine(psf.side());
  std::copy(psf.begin(), psf.end(), engine.psfPlane.begin());
  engine.normaliseOutput = normalise;
  return ImageBy(engine);
}

struct Ring {
  Plane image = Plane(65536, -1.0), optotype = image;
  double effectiveAcuity = -1.0;
  std::string trace;
};

Ring RingBy(OpticsEngine& engine, double acuity, int gapDirection) {
  Ring ring;
  testing::internal::CaptureStdout();
  engine.RingRetinalImage(ring.image.data(), ring.optotype.data(), acuity, &ring.effectiveAcuity, gapDirection);
  ring.trace = testing::internal::GetCapturedStdout();
  return ring;
}

class KeptResults : public test::EveryKernel {
 protected:
  OpticsEngine engine_ = Eye(3e-4);
};

TEST_P(KeptResults, TransferFunctionIsThatOfTheNextPsf) {
  ImageBy(engine_);
  OpticsEngine other = Eye(-5e-4);
  std::copy(other.wavefrontPlane.begin(), other.wavefrontPlane.end(), engine_.wavefrontPlane.begin());
  Plane psf(65536);
  double pitch = 0.0, strehl = 0.0;
  engine_.ComputePsf(kWavelength, psf.data(), &pitch, &strehl, 256);
  EXPECT_TRUE(SameBits(ImageBy(engine_), ImageBy(other)));
}

TEST_P(KeptResults, TransferFunctionAfterAnMtfIsThatOfItsPsf) {
  ImageBy(engine_);
  std::array<double, kCoefficients> c{};
  c[5] = 4e-4;
  engine_.synthesizeWavefront(c.data(), 3.0, 1, 1, 1);
  Plane mtf(65536);
  double step = 0.0;
  engine_.ComputeMtf(kWavelength, mtf.data(), &step, nullptr, nullptr, nullptr, 256);
  EXPECT_TRUE(SameBits(ImageBy(engine_), ImageThrough(engine_.psfPlane, 1)));
}

TEST_P(KeptResults, TransferFunctionAfterWhiteLightIsThatOfItsPsf) {
  ImageBy(engine_);
  Plane white(65536);
  double spacing = 0.0;
  engine_.PolychromaticPsf(white.data(), &spacing, 0);
  ASSERT_TRUE(SameBits(engine_.psfPlane, white));
  EXPECT_TRUE(SameBits(ImageBy(engine_), ImageThrough(engine_.psfPlane, 1)));
}

TEST_P(KeptResults, TransferFunctionIsThatOfAPsfThatTheHostWrote) {
  for (const auto& [looked, afterItsMtf] : {std::pair{false, false}, {true, false}, {false, true}}) {
    OpticsEngine engine = Eye(3e-4);
    if (looked) engine.otfRealPlane.data();
    if (afterItsMtf) {
      Plane mtf(65536);
      double step = 0.0;
      engine.ComputeMtf(kWavelength, mtf.data(), &step, nullptr, nullptr, nullptr, 256);
    }
    ImageBy(engine);
    for (std::size_t i = 0; i < engine.psfPlane.size(); ++i) engine.psfPlane[i] = i % 777 == 5 ? 1.0 : 0.0;
    engine.otfValid = 0;
    EXPECT_TRUE(SameBits(ImageBy(engine), ImageThrough(engine.psfPlane, 1)));
    // And it is what a host reads.
    OpticsEngine fresh;
    std::copy(engine.psfPlane.begin(), engine.psfPlane.end(), fresh.psfPlane.begin());
    fresh.EnsureOtf();
    EXPECT_TRUE(SameBits(engine.otfRealPlane, fresh.otfRealPlane));
    EXPECT_TRUE(SameBits(engine.otfImagPlane, fresh.otfImagPlane));
  }
}

TEST_P(KeptResults, TransferFunctionIsThatWhichTheHostWrote) {
  OpticsEngine other = Eye(-5e-4);
  other.EnsureOtf();
  for (const bool before : {false, true}) {
    OpticsEngine engine = Eye(3e-4);
    if (before) ImageBy(engine);
    std::copy(other.otfRealPlane.begin(), other.otfRealPlane.end(), engine.otfRealPlane.begin());
    std::copy(other.otfImagPlane.begin(), other.otfImagPlane.end(), engine.otfImagPlane.begin());
    engine.otfValid = 1;
    EXPECT_TRUE(SameBits(ImageBy(engine), ImageBy(other)));
    // One sample changed, and the flag left as it is.
    engine.otfImagPlane(3, 200) += 1e-3;
    EXPECT_FALSE(SameBits(ImageBy(engine), ImageBy(other)));
  }
}

TEST_P(KeptResults, TransferFunctionIsThatOfWhichTheHostWroteOnePlaneAlone) {
  for (const bool real : {false, true}) {
    OpticsEngine engine = Eye(3e-4);
    const Plane before = ImageBy(engine);
    (real ? engine.otfRealPlane : engine.otfImagPlane)(3, 200) += 1e-3;
    const Plane image = ImageBy(engine);
    EXPECT_FALSE(SameBits(image, before));
    // With the other plane read too it is no other.
    (real ? engine.otfImagPlane : engine.otfRealPlane).data();
    EXPECT_TRUE(SameBits(ImageBy(engine), image));
  }
}

TEST_P(KeptResults, TransferFunctionReadEarlyAndLateIsTheSame) {
  engine_.EnsureOtf();
  OpticsEngine late = Eye(3e-4);
  ImageBy(late);
  RingBy(late, 0.3, 1);
  EXPECT_TRUE(SameBits(late.otfImagPlane, engine_.otfImagPlane));
  EXPECT_TRUE(SameBits(late.otfRealPlane, engine_.otfRealPlane));
}

TEST_P(KeptResults, TransferFunctionOnceEnsuredIsKeptWhileTheWavefrontChanges) {
  const Plane image = ImageBy(engine_);
  engine_.synthesizeWavefront(std::array<double, kCoefficients>{}.data(), 4.4, 1, 1, 1);
  engine_.ComputeStrehl(kWavelength);
  std::fill(engine_.psfPlane.begin(), engine_.psfPlane.end(), 0.0);
  EXPECT_TRUE(SameBits(ImageBy(engine_), image));
}

TEST_P(KeptResults, MoveWithTheirEngine) {
  const Plane image = ImageBy(engine_);
  OpticsEngine moved = std::move(engine_);
  EXPECT_EQ(moved.otfValid, 1);
  EXPECT_TRUE(SameBits(ImageBy(moved), image));
  OpticsEngine other = Eye(3e-4);
  other.EnsureOtf();
  EXPECT_TRUE(SameBits(moved.otfImagPlane, other.otfImagPlane));
  OpticsEngine assigned = Eye(-5e-4);
  ImageBy(assigned);
  assigned = std::move(moved);
  EXPECT_TRUE(SameBits(ImageBy(assigned), image));
  assigned.otfValid = 0;
  EXPECT_TRUE(SameBits(ImageBy(assigned), image));
}

TEST_P(KeptResults, RingsRepeatedAreTracedDrawnAndMeasuredEachTime) {
  for (const double acuity : {0.4, 0.4, 0.9, 0.4}) {
    for (const int gap : {1, 1, 2}) {
      const Ring ring = RingBy(engine_, acuity, gap);
      OpticsEngine fresh = Eye(3e-4);
      const Ring expected = RingBy(fresh, acuity, gap);
      EXPECT_EQ(ring.trace, expected.trace);
      EXPECT_NE(ring.trace.find('\n'), std::string::npos);
      EXPECT_EQ(ring.effectiveAcuity, expected.effectiveAcuity);
      EXPECT_GT(ring.effectiveAcuity, 0.0);
      EXPECT_TRUE(SameBits(ring.optotype, expected.optotype));
      EXPECT_TRUE(SameBits(ring.image, expected.image));
    }
  }
}

TEST_P(KeptResults, RingsAfterAnotherEyeAreThoseOfThatEye) {
  RingBy(engine_, 0.4, 2);
  OpticsEngine other = Eye(-5e-4);
  std::copy(other.wavefrontPlane.begin(), other.wavefrontPlane.end(), engine_.wavefrontPlane.begin());
  Plane psf(65536);
  double pitch = 0.0, strehl = 0.0;
  engine_.ComputePsf(kWavelength, psf.data(), &pitch, &strehl, 256);
  EXPECT_TRUE(SameBits(RingBy(engine_, 0.4, 2).image, RingBy(other, 0.4, 2).image));
}

TEST_P(KeptResults, RingsMayBeDrawnWhereTheirImageGoes) {
  const Ring expected = RingBy(engine_, 0.4, 2);
  Plane image(65536, -1.0);
  double acuity = 0.0;
  testing::internal::CaptureStdout();
  engine_.RingRetinalImage(image.data(), image.data(), 0.4, &acuity, 2);
  testing::internal::GetCapturedStdout();
  EXPECT_TRUE(SameBits(image, expected.image));
}

TEST_P(KeptResults, BuffersOfTheCallerMayHaveAnyAlignment) {
  // Each buffer begins in the middle of a double.
  const auto odd = [](std::vector<char>& bytes) {
    bytes.assign(65536 * sizeof(double) + 3, 0);
    return reinterpret_cast<double*>(bytes.data() + 3);
  };
  std::vector<char> mtfBytes, imageBytes, ringBytes, patternBytes, psfBytes;
  double* const mtf = odd(mtfBytes);
  double* const image = odd(imageBytes);
  double* const ring = odd(ringBytes);
  double* const pattern = odd(patternBytes);
  double* const psf = odd(psfBytes);
  const Plane squares = Squares(256);
  std::memcpy(static_cast<void*>(pattern), squares.data(), squares.size() * sizeof(double));
  const auto same = [](const double* a, const Plane& b) {
    return std::memcmp(a, b.data(), b.size() * sizeof(double)) == 0;
  };

  double step = 0.0, acuity = 0.0, pitch = 0.0, strehl = 0.0;
  Plane expectedMtf(65536), expectedPsf(65536);
  engine_.ComputePsf(kWavelength, psf, &pitch, &strehl, 256);
  engine_.ComputePsf(kWavelength, expectedPsf.data(), &pitch, &strehl, 256);
  EXPECT_TRUE(same(psf, expectedPsf));
  for (const int s : {256, 91}) {
    engine_.ComputeMtf(kWavelength, mtf, &step, nullptr, nullptr, nullptr, s);
    engine_.ComputeMtf(kWavelength, expectedMtf.data(), &step, nullptr, nullptr, nullptr, s);
    EXPECT_TRUE(same(mtf, expectedMtf));
  }
  for (const std::uint8_t normalise : {std::uint8_t{0}, std::uint8_t{1}}) {
    engine_.normaliseOutput = normalise;
    engine_.PatternRetinalImage(image, pattern, 256);
    EXPECT_TRUE(same(image, ImageBy(engine_)));
    engine_.PreparedRetinalImage(image, engine_.Prepare(pattern));
    EXPECT_TRUE(same(image, ImageBy(engine_)));
    testing::internal::CaptureStdout();
    engine_.RingRetinalImage(image, ring, 0.5, &acuity, 4);
    testing::internal::GetCapturedStdout();
    const Ring expected = RingBy(engine_, 0.5, 4);
    EXPECT_TRUE(same(image, expected.image));
    EXPECT_TRUE(same(ring, expected.optotype));
  }
  Plane re = squares, im = squares;
  std::memcpy(static_cast<void*>(psf), squares.data(), squares.size() * sizeof(double));
  engine_.Fft2(psf, pattern, 256, 0);
  engine_.CentredFft2(psf, pattern, 1, 256, 8);
  engine_.Fft2(re.data(), im.data(), 256, 0);
  engine_.CentredFft2(re.data(), im.data(), 1, 256, 8);
  EXPECT_TRUE(same(psf, re));
  EXPECT_TRUE(same(pattern, im));
}

ORVANEL_ON_EVERY_KERNEL(KeptResults);

// Grids without kernels keep their own way.
class OtherGrids : public testing::TestWithParam<int> {};

TEST_P(OtherGrids, HaveTheSameResultsOnEveryPath) {
  const int n = GetParam();
  OpticsEngine engine = Eye(3e-4, n);
  EXPECT_EQ(engine.ComputeStrehl(kWavelength), engine.strehlRatio);
  for (const std::uint8_t normalise : {std::uint8_t{0}, std::uint8_t{1}}) {
    engine.normaliseOutput = normalise;
    const Plane image = ImageBy(engine);
    EXPECT_TRUE(SameBits(image, ImageThrough(engine.psfPlane, normalise)));
    Plane prepared(image.size());
    engine.PreparedRetinalImage(prepared.data(), engine.Prepare(Squares(n).data()));
    EXPECT_TRUE(SameBits(prepared, image));
    EXPECT_GT(*std::max_element(image.begin(), image.end()), 0.3);
  }
}

TEST_P(OtherGrids, PhaseIsThatOfTheLastMtf) {
  const int n = GetParam();
  OpticsEngine first = Eye(3e-4, n), second = Eye(3e-4, n);
  Plane mtf(first.psfPlane.size());
  double step = 0.0;
  first.ComputeMtf(kWavelength, mtf.data(), &step, nullptr, nullptr, nullptr, n);
  second.phasePlane.data();
  second.ComputeMtf(kWavelength, mtf.data(), &step, nullptr, nullptr, nullptr, n);
  double pitch = 0.0, strehl = 0.0;
  first.ComputePsf(0.0005, mtf.data(), &pitch, &strehl, n);
  EXPECT_TRUE(SameBits(first.phasePlane, second.phasePlane));
}

INSTANTIATE_TEST_SUITE_P(, OtherGrids, testing::Values(64, 128, 512), testing::PrintToStringParamName());

}  // namespace
}  // namespace orvanel
