// Tests the two scales against numbers computed by hand.
#include "models/scales.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "models/sampling.h"

namespace orvanel::models {
namespace {

constexpr double kFourDigits = 5e-5;  // relative; the numbers below are rounded to five digits

TEST(Scales, OfAThreeMillimetrePupilAreTheWorkedValues) {
  const Scales scales = ScalesOf(Millimetres(3.0));
  EXPECT_NEAR(FrequencyRange(Millimetres(3.0)).value(), 178.43, 178.43 * kFourDigits);
  EXPECT_NEAR(scales.library.step.value(), 178.43 / 128.0, 178.43 / 128.0 * kFourDigits);
  // 3 mm / 587.56 nm = 5105.9 cycles a radian.
  EXPECT_NEAR(scales.frequencyRange.value(), 178.43, 178.43 * kFourDigits);
  EXPECT_NEAR(scales.opticalCutOff.value(), 89.114, 89.114 * kFourDigits);
  EXPECT_NEAR(scales.optical.step.value(), 89.114 / 128.0, 89.114 / 128.0 * kFourDigits);
  // 0.106544 mm of retina, of which 1 mm is 3.36646 degrees.
  EXPECT_NEAR(scales.library.halfWidthAngle.value(), 21.521, 21.521 * kFourDigits);
  EXPECT_NEAR(scales.library.pitch.value(), 21.521 / 128.0, 0.16813 * kFourDigits);
  // 587.56 nm / 6 mm = 97.927 microradians.
  EXPECT_NEAR(scales.optical.pitch.value(), 0.33665, 0.33665 * kFourDigits);
  // 128 of them, of which 3.36646 degrees are 1 mm of retina.
  EXPECT_NEAR(scales.optical.halfWidth.value(), 128.0 * 0.33665 / 60.0 / 3.36646, 0.2133 * kFourDigits);
}

TEST(Scales, AcuityOnTheOpticalScaleIsAboutHalfOfThatOnTheLibraryScale) {
  const Scales scales = ScalesOf(Millimetres(4.0));
  const int diameter = RingDiameter(Millimetres(4.0), 1.0);
  EXPECT_EQ(diameter, 40);
  const double effectiveAcuity = EffectiveAcuity(Millimetres(4.0), diameter);
  EXPECT_NEAR(effectiveAcuity, 0.990156, 0.990156 * kFourDigits);
  EXPECT_NEAR(OpticalAcuity(effectiveAcuity, scales), 0.990156 / 2.0023, 0.495 * kFourDigits);
  // 5 minutes of arc over 40 x 587.56 nm / 8 mm. The library counts a millimetre of retina as 1/17 radians for a ring,
  // and as the angle whose tangent is 1/17 for a frequency.
  EXPECT_NEAR(OpticalAcuity(effectiveAcuity, scales), 0.49507 * 17.0 * std::atan(1.0 / 17.0), 0.495 * kFourDigits);
}

TEST(Scales, RatioIsTwoForThePupilTimesTheLibrarysRuleForSmallAngles) {
  for (const double pupil : {2.0, 3.0, 7.3}) {
    const Scales scales = ScalesOf(Millimetres(pupil));
    EXPECT_NEAR(scales.ratio, 2.0 * (1.0 / 17.0) / std::atan(1.0 / 17.0), 1e-12) << pupil;
    EXPECT_NEAR(scales.ratio, 2.0023, 2.0 * kFourDigits) << pupil;
  }
}

TEST(Scales, OneRatioStandsBetweenThem) {
  const Scales scales = ScalesOf(Millimetres(4.7));
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

}  // namespace
}  // namespace orvanel::models
