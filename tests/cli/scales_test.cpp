// The two scales, against numbers worked out by hand.
#include "cli/scales.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/cli/simulated_eyes.h"

namespace orvanel::cli {
namespace {

constexpr double kFourDigits = 5e-5;  // relative; the numbers below are rounded to five digits

const std::vector<RingRequest> kRings = {{1.0, Gap::kRight}};

TEST(Scales, OfAThreeMillimetrePupilAreTheWorkedValues) {
  const Results results = ResultsOf(PerfectEye(Millimetres(3.0)), kRings);
  EXPECT_NEAR(results.simulation.frequencyRange.value(), 178.43, 178.43 * kFourDigits);
  EXPECT_NEAR(results.scales.library.step.value(), 1.3995, 1.3995 * kFourDigits);
  // 3 mm / 587.56 nm = 5105.9 cycles a radian.
  EXPECT_NEAR(results.scales.opticalCutOff.value(), 89.114, 89.114 * kFourDigits);
  EXPECT_NEAR(results.scales.optical.step.value(), 89.114 / 128.0, 89.114 / 128.0 * kFourDigits);
  // 0.106544 mm of retina, of which 1 mm is 3.36646 degrees.
  EXPECT_NEAR(results.scales.library.halfWidthAngle.value(), 21.521, 21.521 * kFourDigits);
  EXPECT_NEAR(results.scales.library.pitch.value(), 2.0 * 21.521 / 255.0, 0.16879 * kFourDigits);
  // 587.56 nm / 6 mm = 97.927 microradians.
  EXPECT_NEAR(results.scales.optical.pitch.value(), 0.33665, 0.33665 * kFourDigits);
  EXPECT_NEAR(results.scales.optical.halfWidth.value(), 2.0 * 0.10654421333, 0.2 * 1e-9);
}

TEST(Scales, AcuityOnTheOpticalScaleIsAboutHalfOfThatOnTheLibraryScale) {
  const Results results = ResultsOf(PerfectEye(Millimetres(4.0)), kRings);
  const Ring& ring = results.simulation.rings.at(0);
  EXPECT_EQ(ring.diameter, 40);
  // 5 minutes of arc over 40 x 587.56 nm / 8 mm.
  EXPECT_NEAR(Acuity(ring.diameter, results.scales.optical), 0.49507, 0.49507 * kFourDigits);
  EXPECT_NEAR(ring.effectiveAcuity, 0.990156, 0.990156 * kFourDigits);
}

TEST(Scales, RatioIsTwoForThePupilTimesTheLibrarysRuleForSmallAngles) {
  for (const double pupil : {2.0, 3.0, 7.3}) {
    const Results results = ResultsOf(PerfectEye(Millimetres(pupil)), {{0.4, Gap::kRight}});
    EXPECT_NEAR(results.scales.ratio, 2.0 * (1.0 / 17.0) / std::atan(1.0 / 17.0), 1e-12) << pupil;
    EXPECT_NEAR(results.scales.ratio, 2.0023, 2.0 * kFourDigits) << pupil;
  }
}

TEST(Scales, MtfIsThatOfTheSamplesAndStraightBetween) {
  const Results results = ResultsOf(PerfectEye(Millimetres(3.0)), kRings);
  const Section& section = results.simulation.rowSection;
  const Scale& scale = results.scales.library;
  EXPECT_EQ(MtfAt(section, scale, CyclesPerDegree(0.0)), 1.0);
  EXPECT_DOUBLE_EQ(MtfAt(section, scale, 17.25 * scale.step), 0.75 * section[17] + 0.25 * section[18]);
  EXPECT_DOUBLE_EQ(MtfAt(section, scale, 127.5 * scale.step), 0.5 * section[127]);
  EXPECT_EQ(MtfAt(section, scale, 128.0 * scale.step), 0.0);
}

}  // namespace
}  // namespace orvanel::cli
