// Tests the facts of planes: axes, errors, notes.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "tests/c_interface/c_eyes.h"

namespace orvanel::test {
namespace {

TEST(CPlaneFacts, ThePsfHasItsAxesAndItsError) {
  const EyeHandle eye = SomeEye();
  orvanel_settings settings = UsualSettings();
  settings.field_arcmin = 5.0;
  settings.samples = 25;
  orvanel_plane* made = nullptr;
  ASSERT_EQ(orvanel_psf(eye.get(), &settings, &made), ORVANEL_OK) << LastError().text;
  const PlaneHandle psf(made);
  const orvanel_plane_facts facts = FactsOf(psf);
  EXPECT_EQ(facts.kind, ORVANEL_PSF);
  EXPECT_EQ(facts.view, ORVANEL_PATIENT);
  EXPECT_EQ(facts.samples.shape[0], 25);
  EXPECT_EQ(facts.samples.shape[1], 25);
  EXPECT_EQ(facts.samples.strides[0], 25 * 8);
  EXPECT_EQ(facts.samples.owner, made);
  // The middle sample is the axis, and x grows to the right.
  EXPECT_DOUBLE_EQ(facts.x_step, 0.2);
  EXPECT_DOUBLE_EQ(facts.x_first + 12 * facts.x_step, 0.0);
  EXPECT_DOUBLE_EQ(facts.y_first + 12 * facts.y_step, 0.0);
  EXPECT_LT(facts.y_step, 0.0);
  EXPECT_NEAR(facts.samples.data[12 * 25 + 12], facts.strehl_axis, 2e-9);  // the errors of both
  EXPECT_EQ(facts.error, 1e-9);
  EXPECT_STREQ(facts.axis_unit, "arcmin");
  EXPECT_NE(std::string(facts.notes).find("Light: 555 nm"), std::string::npos) << facts.notes;
  EXPECT_TRUE(std::isnan(facts.surround));
  // 4 mm over 555 nm, in cycles per degree.
  EXPECT_NEAR(facts.cut_off, 4.0 / 555e-6 * 3.14159265358979 / 180.0, 1e-9);
}

TEST(CPlaneFacts, AWindowThatLosesLightIsWarnedOf) {
  std::vector<double> numbers = {0, 0, 0, 0, 1.5};
  const EyeHandle eye = MakeEye(InputOf(numbers));
  orvanel_settings settings = UsualSettings();
  settings.field_arcmin = 2.0;
  settings.samples = 16;
  orvanel_plane* made = nullptr;
  ASSERT_EQ(orvanel_psf(eye.get(), &settings, &made), ORVANEL_OK) << LastError().text;
  const PlaneHandle psf(made);
  EXPECT_NE(std::string(FactsOf(psf).warnings).find("% of the light; use a larger field"), std::string::npos);
  EXPECT_LT(FactsOf(psf).light_share, 0.5);
}

TEST(CPlaneFacts, TheWavefrontIsInMillimetresOverThePupil) {
  std::vector<double> numbers = {0, 0, 0, 0, 0.5};
  const EyeHandle eye = MakeEye(InputOf(numbers));
  const orvanel_settings settings = UsualSettings();
  orvanel_plane* made = nullptr;
  ASSERT_EQ(orvanel_wavefront(eye.get(), &settings, &made), ORVANEL_OK);
  const PlaneHandle wavefront(made);
  const orvanel_plane_facts facts = FactsOf(wavefront);
  EXPECT_STREQ(facts.value_unit, "mm");
  EXPECT_TRUE(std::isnan(facts.samples.data[0]));
  // root(3) (2 rho^2 - 1) c at the sample right below the middle.
  const double x = facts.x_first + 128 * facts.x_step, y = facts.y_first + 128 * facts.y_step;
  const double rho2 = (x * x + y * y) / 4.0;
  EXPECT_NEAR(facts.samples.data[128 * 256 + 128], std::sqrt(3.0) * (2.0 * rho2 - 1.0) * 0.5e-3, 1e-15);
}

}  // namespace
}  // namespace orvanel::test
