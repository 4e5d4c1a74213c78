// Tests the engine step by step, each step from the engine's input to it.
#include <gtest/gtest.h>
#include <orvanel/optics_engine.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "tests/reference/eyes.h"
#include "tests/support/error_bounds.h"
#include "tests/support/plain.h"
#include "tests/support/reference.h"

namespace orvanel {
namespace {

using namespace reference;

// Difference of phases, each weighted by the reference's modulation, the shorter way round.
Plane WeightedPhaseDifference(const Plane& phase, const TransferFunction& expected) {
  Plane result;
  for (std::size_t i = 0; i < phase.size(); ++i) {
    result.push_back(std::remainder(phase[i] - expected.phase[i], 2 * kPi) * expected.modulation[i]);
  }
  return result;
}

struct Case {
  Eye eye;
  int n;
};

void PrintTo(const Case& one, std::ostream* out) { *out << one.eye.name << one.n; }

std::vector<Case> Cases(const std::vector<int>& sides) {
  std::vector<Case> cases;
  for (const Eye& eye : Eyes()) {
    for (const int n : sides) cases.push_back({eye, n});
  }
  return cases;
}

std::string CaseName(const testing::TestParamInfo<Case>& info) {
  return info.param.eye.name + std::to_string(info.param.n);
}

class EngineOnAnyGrid : public testing::TestWithParam<Case> {
 protected:
  const Eye& eye_ = GetParam().eye;
  const int n_ = GetParam().n;
  OpticsEngine engine_{eye_.coefficients.data(), eye_.diameter, n_, 1, 1, 1};

  void ComputePsf() {
    std::vector<double> copy(Area(n_));
    ASSERT_TRUE(engine_.ComputePsf(kWavelength, copy.data(), &pitch_, &strehl_, n_));
    ASSERT_TRUE(std::equal(copy.begin(), copy.end(), engine_.psfPlane.begin()));
  }

  // The object as the engine shows it, against the reference's chain on the engine's PSF.
  void ExpectImage(const std::string& what, const std::vector<double>& image, const Plane& object) {
    const Plane psf = ToReal(engine_.psfPlane);
    if (otf_.re.empty()) otf_ = EyeOtf(psf, n_);
    const Plane raw = FilteredIntensity(object, otf_, n_);
    const Real error = ImageError(object, psf, raw, n_, 0);
    if (engine_.normaliseOutput != 0) {
      const Real bound = StretchedImageError(raw, error);
      EXPECT_LE(Difference(what, ToReal(image), Stretched(raw), bound), bound);
    } else {
      const Real bound = ScaledImageError(object, raw, n_, error);
      const Plane scaled = ScaledToTotal(raw, Sum(object));
      EXPECT_LE(Difference(what, ToReal(image), Clipped(scaled), bound), bound);
    }
  }

  double pitch_ = -1.0, strehl_ = -2.0;

 private:
  ComplexPlane otf_;  // the reference's, of the engine's PSF
};

using EngineOn256 = EngineOnAnyGrid;

TEST_P(EngineOnAnyGrid, WavefrontIsTheSumOfItsTerms) {
  const Wavefront expected = SynthesizeWavefront(eye_.coefficients, eye_.diameter, n_, 1, 1, 1);
  EXPECT_EQ(engine_.pupilSamples, expected.pupilSamples);
  const Real bound = WavefrontError(eye_.coefficients);
  EXPECT_LE(Difference("wavefront", ToReal(engine_.wavefrontPlane), expected.w, bound), bound);
  for (std::size_t i = 0; i < expected.w.size(); ++i) {
    ASSERT_EQ(engine_.wavefrontPlane[i] == kWavefrontOutside, expected.w[i] == 1000) << i;
    if (expected.w[i] == 1000) continue;
    ASSERT_PRED3(Near, engine_.pupilXPlane[i], expected.pupilX[i], kScalarError * eye_.diameter) << i;
    ASSERT_PRED3(Near, engine_.pupilYPlane[i], expected.pupilY[i], kScalarError * eye_.diameter) << i;
  }
}

TEST_P(EngineOnAnyGrid, PsfIsTheSquaredFieldOfThePupilAroundItsPeak) {
  ComputePsf();
  const Plane wavefront = ToReal(engine_.wavefrontPlane);
  const Plane intensity = PupilIntensity(wavefront, n_, kWavelength);
  const Psf expected = PsfFromIntensity(intensity, n_, engine_.pupilSamples, FindPeak(intensity, n_));
  const Real bound = PsfError(expected.plane, FieldError(wavefront, 0));
  ASSERT_TRUE(HasOnePeak(intensity, bound));
  EXPECT_NE(FindPeak(intensity, n_).row, n_ / 2) << "this eye would not show a missing shift";
  EXPECT_NE(FindPeak(intensity, n_).column, n_ / 2);
  EXPECT_LE(Difference("psf", ToReal(engine_.psfPlane), expected.plane, bound), bound);
  EXPECT_LE(Difference("strehl", {strehl_ / expected.strehl}, {1}, bound), bound);
  EXPECT_EQ(engine_.strehlRatio, strehl_);

  const Real halfWidth = PsfHalfWidth(engine_.pupilSamples, kWavelength, eye_.diameter);
  EXPECT_PRED3(Near, engine_.psfHalfWidth, halfWidth, halfWidth * kScalarError);
  EXPECT_PRED3(Near, pitch_, PsfPitch(halfWidth, n_), halfWidth * kScalarError);
}

TEST_P(EngineOnAnyGrid, RingsAreTheReferencesSampleForSample) {
  ComputePsf();
  std::vector<double> plane(Area(n_));
  for (const double acuity : {0.11, 0.23, 0.37, 0.61, 0.97, 1.7, 2.9, 45.0}) {
    const plain::RingSize size = plain::SizeOfRing(acuity, n_, n_, engine_.psfHalfWidth, engine_.focalLength);
    for (int gap = 0; gap <= 5; ++gap) {
      double effective = -1.0;
      engine_.DrawRingOptotype(plane.data(), n_, acuity, &effective, gap);
      EXPECT_EQ(effective, size.effectiveAcuity) << acuity;
      EXPECT_EQ(plane, plain::DrawRing(size.diameter, n_, gap)) << acuity << ", gap " << gap;
    }
  }
}

TEST_P(EngineOnAnyGrid, RingImagesAreTheFilteredRingsInBothNormalisations) {
  ComputePsf();
  std::vector<double> image(Area(n_)), optotype(Area(n_));
  double effective = -1.0;
  const std::array diameters = {35, 60, 15, 80};  // odd and even; the largest is cut off by the smallest grid
  for (int gap = 1; gap <= 4; ++gap) {
    const int diameter = diameters[static_cast<std::size_t>(gap - 1)];
    // The acuity of this raw size; the ring is rounded up to it from two samples below.
    const double acuity = (n_ == 256 ? 5.0 : 3.0) / diameter * n_ / engine_.psfHalfWidth * 17.0 * 0.000145444;
    engine_.normaliseOutput = gap == 2 ? 1 : 0;
    engine_.RingRetinalImage(image.data(), optotype.data(), acuity, &effective, gap);
    ASSERT_EQ(optotype, plain::DrawRing(diameter, n_, gap));
    ExpectImage("diameter" + std::to_string(diameter), image, ToReal(optotype));
  }
}

TEST_P(EngineOn256, MtfAndPhaseAreTheTransformOfThePsf) {
  std::vector<double> mtf(65536), row(128), column(128), limit(128);
  double step = -1.0;
  ASSERT_TRUE(engine_.ComputeMtf(kWavelength, mtf.data(), &step, row.data(), column.data(), limit.data(), 256));
  const Plane psf = ToReal(engine_.psfPlane);
  const TransferFunction expected = Mtf(psf, 256);
  const Real error = OtfError(psf, 256, 0), bound = MtfError(error), phaseBound = WeightedPhaseError(error);
  EXPECT_LE(Difference("mtf", ToReal(mtf), expected.modulation, bound), bound);
  EXPECT_LE(Difference("row", ToReal(row), RowSection(expected.modulation, 256, 256), bound), bound);
  EXPECT_LE(Difference("column", ToReal(column), ColumnSection(expected.modulation, 256, 256), bound), bound);
  const Plane phase = WeightedPhaseDifference(ToReal(engine_.phasePlane), expected);
  EXPECT_LE(Difference("phase", phase, Zeros(256), phaseBound), phaseBound);

  const Real halfWidth = PsfHalfWidth(129, kWavelength, eye_.diameter);
  const Real expectedStep = FrequencyStep(256, halfWidth);
  EXPECT_PRED3(Near, step, expectedStep, expectedStep * kScalarError);
  EXPECT_LE(Difference("limit", ToReal(limit), DiffractionLimit(129, halfWidth, 256), kScalarError), kScalarError);
}

TEST_P(EngineOn256, ACroppedMtfIsTheCentralPart) {
  std::vector<double> mtf(65536), row(45), column(45), limit(45);
  double step = -1.0;
  ASSERT_TRUE(engine_.ComputeMtf(kWavelength, mtf.data(), &step, row.data(), column.data(), limit.data(), 90));
  const Plane psf = ToReal(engine_.psfPlane);
  const Plane expected = Mtf(psf, 256).modulation;
  const Real bound = MtfError(OtfError(psf, 256, 0));
  EXPECT_LE(Difference("mtf", ToReal(mtf), CentralPart(expected, 256, 90), bound), bound);
  EXPECT_LE(Difference("row", ToReal(row), RowSection(expected, 256, 90), bound), bound);
  EXPECT_LE(Difference("column", ToReal(column), ColumnSection(expected, 256, 90), bound), bound);
}

TEST_P(EngineOn256, TheStarIsFilteredInBothNormalisations) {
  ComputePsf();
  const std::vector<double> star = SectorStar();
  std::vector<double> image(65536);
  for (const int normalise : {1, 0}) {
    engine_.normaliseOutput = static_cast<std::uint8_t>(normalise);
    ASSERT_EQ(engine_.PatternRetinalImage(image.data(), star.data(), 256), 1);
    ExpectImage(normalise != 0 ? "stretched" : "scaled", image, ToReal(star));
  }
}

TEST_P(EngineOnAnyGrid, FrequencyStepAndDiffractionLimitBelongToTheGrid) {
  std::vector<double> mtf(Area(n_)), row(Area(n_)), column(Area(n_)), limit(Area(n_));
  double step = -1.0;
  ASSERT_TRUE(engine_.ComputeMtf(kWavelength, mtf.data(), &step, row.data(), column.data(), limit.data(), n_ - 10));
  const Real halfWidth = PsfHalfWidth(n_ / 2 + 1, kWavelength, eye_.diameter);
  const Real expectedStep = FrequencyStep(n_, halfWidth);
  EXPECT_PRED3(Near, step, expectedStep, expectedStep * kScalarError);
  const Plane expected = DiffractionLimit(n_ / 2 + 1, halfWidth, n_ - 10);
  EXPECT_LE(Difference("limit", ToReal(limit), expected, kScalarError), kScalarError);
  EXPECT_EQ(limit[expected.size()], 0.0);
}

// The synthesis alone takes any side. On one of 22 the pupil's radius, half of 12 samples, lies outside the unit disc.
TEST(EngineWavefront, EveryFlagSelectsWhatTheReferenceSelects) {
  const Eye& eye = Eyes()[1];
  const Real edge = 12.0L / 11;
  // X and Y are rounded twice, and there are six factors of them.
  const Real bound =
      WavefrontError(eye.coefficients) * (kWavefrontRoundings + 12) / kWavefrontRoundings * std::pow(edge, 6.0L);
  for (const int n : {22, 64}) {
    OpticsEngine engine(n);
    for (const int astigmatism : {0, 1, 7}) {
      for (const int all : {0, 1, 2}) {
        for (const int defocus : {0, 1, -1}) {
          engine.synthesizeWavefront(eye.coefficients.data(), eye.diameter, astigmatism, all, defocus);
          const Plane expected = SynthesizeWavefront(eye.coefficients, eye.diameter, n, astigmatism, all, defocus).w;
          EXPECT_LE(Difference("wavefront", ToReal(engine.wavefrontPlane), expected, bound), bound)
              << n << ": " << astigmatism << all << defocus;
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Eyes, EngineOnAnyGrid, testing::ValuesIn(Cases({64, 128, 256})), CaseName);
INSTANTIATE_TEST_SUITE_P(Eyes, EngineOn256, testing::ValuesIn(Cases({256})), CaseName);

}  // namespace
}  // namespace orvanel
