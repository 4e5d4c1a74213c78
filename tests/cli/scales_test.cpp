// The two scales, against numbers worked out by hand.
#include "cli/scales.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/cli/simulated_eyes.h"

namespace orvanel::cli {
namespace {

constexpr double kFourDigits = 5e-5;  // relative; the numbers below are rounded to five digits

const std::vector<RingRequest> kRings = {{1.0, Gap::kRight}};

TEST(Scales, OfAThreeMillimetrePupilAreTheWorkedValues) {
  const Results results = ResultsOf(PerfectEye(Millimetres(3.0)), kRings);
  EXPECT_NEAR(results.simulation.frequencyRange.value(), 178.43, 178.43 * kFourDigits);
  EXPECT_NEAR(results.scales.library.step.value(), 178.43 / 128.0, 178.43 / 128.0 * kFourDigits);
  // 3 mm / 587.56 nm = 5105.9 cycles a radian.
  EXPECT_NEAR(results.scales.opticalCutOff.value(), 89.114, 89.114 * kFourDigits);
  EXPECT_NEAR(results.scales.optical.step.value(), 89.114 / 128.0, 89.114 / 128.0 * kFourDigits);
  // 0.106544 mm of retina, of which 1 mm is 3.36646 degrees.
  EXPECT_NEAR(results.scales.library.halfWidthAngle.value(), 21.521, 21.521 * kFourDigits);
  EXPECT_NEAR(results.scales.library.pitch.value(), 21.521 / 128.0, 0.16813 * kFourDigits);
  // 587.56 nm / 6 mm = 97.927 microradians.
  EXPECT_NEAR(results.scales.optical.pitch.value(), 0.33665, 0.33665 * kFourDigits);
  // 128 of them, of which 3.36646 degrees are 1 mm of retina.
  EXPECT_NEAR(results.scales.optical.halfWidth.value(), 128.0 * 0.33665 / 60.0 / 3.36646, 0.2133 * kFourDigits);
}

TEST(Scales, AcuityOnTheOpticalScaleIsAboutHalfOfThatOnTheLibraryScale) {
  const Results results = ResultsOf(PerfectEye(Millimetres(4.0)), kRings);
  const Ring& ring = results.simulation.rings.at(0);
  EXPECT_EQ(ring.diameter, 40);
  EXPECT_NEAR(ring.effectiveAcuity, 0.990156, 0.990156 * kFourDigits);
  EXPECT_NEAR(OpticalAcuity(ring.effectiveAcuity, results.scales), 0.990156 / 2.0023, 0.495 * kFourDigits);
  // 5 minutes of arc over 40 x 587.56 nm / 8 mm. The library counts a millimetre of retina as 1/17 radians for a ring,
  // and as the angle whose tangent is 1/17 for a frequency.
  EXPECT_NEAR(OpticalAcuity(ring.effectiveAcuity, results.scales), 0.49507 * 17.0 * std::atan(1.0 / 17.0),
              0.495 * kFourDigits);
}

TEST(Scales, RatioIsTwoForThePupilTimesTheLibrarysRuleForSmallAngles) {
  for (const double pupil : {2.0, 3.0, 7.3}) {
    const Results results = ResultsOf(PerfectEye(Millimetres(pupil)), {{0.4, Gap::kRight}});
    EXPECT_NEAR(results.scales.ratio, 2.0 * (1.0 / 17.0) / std::atan(1.0 / 17.0), 1e-12) << pupil;
    EXPECT_NEAR(results.scales.ratio, 2.0023, 2.0 * kFourDigits) << pupil;
  }
}

TEST(Scales, OneRatioStandsBetweenThem) {
  const Scales scales = ResultsOf(PerfectEye(Millimetres(4.7)), kRings).scales;
  const double ratio = 2.0 / (17.0 * std::atan(1.0 / 17.0));
  constexpr double kRounding = 1e-13;
  EXPECT_NEAR(scales.optical.halfWidth / scales.library.halfWidth, ratio, kRounding);
  EXPECT_NEAR(scales.optical.halfWidthAngle / scales.library.halfWidthAngle, ratio, kRounding);
  EXPECT_NEAR(scales.optical.pitch / scales.library.pitch, ratio, kRounding);
  EXPECT_NEAR(scales.library.step / scales.optical.step, ratio, kRounding);
  // The field and the range have 256 and 128 samples.
  for (const Scale& scale : {scales.library, scales.optical}) {
    EXPECT_NEAR(scale.halfWidthAngle / scale.pitch, 128.0, 128.0 * kRounding);
  }
  EXPECT_NEAR(scales.opticalCutOff / scales.optical.step, 128.0, 128.0 * kRounding);
}

TEST(Scales, MtfIsThatOfTheSamplesAtTheirFrequencies) {
  const Results results = ResultsOf(AsymmetricEye(), kRings);
  const Simulation& s = results.simulation;
  const Scale& scale = results.scales.library;
  constexpr double kRounding = 1e-13;
  for (const std::size_t i : {0U, 1U, 17U, 64U, 127U}) {
    const CyclesPerDegree frequency = static_cast<double>(i) * scale.step;
    EXPECT_NEAR(MtfAt(s.lineSpreads.horizontal, scale, frequency), s.rowSection[i], kRounding) << i;
    EXPECT_NEAR(MtfAt(s.lineSpreads.vertical, scale, frequency), s.columnSection[i], kRounding) << i;
  }
  EXPECT_EQ(MtfAt(s.lineSpreads.horizontal, scale, s.frequencyRange), 0.0);
}

TEST(Scales, MtfOfAPerfectEyeIsTheClosedFormAtAnyFrequency) {
  const Results results = ResultsOf(PerfectEye(Millimetres(3.0)), kRings);
  constexpr double kFlatMtfSampling = 9.5e-4;  // the staircase of the pupil's edge
  for (double share = 0.0005; share < 1.0; share += 0.00171) {
    const double expected = 2.0 / std::numbers::pi * (std::acos(share) - share * std::sqrt(1.0 - share * share));
    const CyclesPerDegree frequency = share * results.simulation.frequencyRange;
    EXPECT_NEAR(MtfAt(results.simulation.lineSpreads.vertical, results.scales.library, frequency), expected,
                kFlatMtfSampling)
        << share;
  }
}

}  // namespace
}  // namespace orvanel::cli
