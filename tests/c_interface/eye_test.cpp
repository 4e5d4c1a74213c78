// Tests eyes: conventions, refraction, adjustments, texts and files.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <string>
#include <vector>

#include "base/utf8.h"
#include "orvanel/orvanel.h"
#include "tests/c_interface/c_eyes.h"
#include "tests/support/temporary_folder.h"

namespace orvanel::test {
namespace {

std::vector<double> CoefficientsIn(const EyeHandle& eye, const orvanel_convention& convention) {
  uint64_t count = 0;
  EXPECT_EQ(orvanel_eye_coefficients(eye.get(), &convention, nullptr, 0, &count), ORVANEL_OK);
  std::vector<double> numbers(count);
  EXPECT_EQ(orvanel_eye_coefficients(eye.get(), &convention, numbers.data(), count, &count), ORVANEL_OK);
  return numbers;
}

EyeHandle Adjusted(const EyeHandle& eye, const orvanel_adjustments& adjustments) {
  orvanel_eye* adjusted = nullptr;
  EXPECT_EQ(orvanel_eye_adjusted(eye.get(), &adjustments, &adjusted), ORVANEL_OK) << LastError().text;
  return EyeHandle(adjusted);
}

orvanel_adjustments NoAdjustments() {
  orvanel_adjustments adjustments{};
  adjustments.size = sizeof adjustments;
  return adjustments;
}

orvanel_refraction RefractionOf(const EyeHandle& eye, int32_t method) {
  orvanel_refraction refraction{};
  refraction.size = sizeof refraction;
  EXPECT_EQ(orvanel_eye_refraction(eye.get(), method, &refraction), ORVANEL_OK);
  return refraction;
}

TEST(CEye, VersionsAreThoseOfTheHeaders) {
  EXPECT_EQ(orvanel_interface_version(), static_cast<uint32_t>(ORVANEL_INTERFACE));
  EXPECT_STREQ(orvanel_version(), ORVANEL_VERSION);
}

TEST(CEye, CoefficientsComeBackInEveryConvention) {
  std::vector<double> numbers = SomeModes();
  const EyeHandle eye = SomeEye();
  orvanel_convention convention = orvanel_osa_convention();
  EXPECT_EQ(CoefficientsIn(eye, convention), numbers);
  // Defocus is index 4 of OSA and Noll alike, Noll from 1. Its orthonormal polynomial is root 3 times the other.
  convention.unit = ORVANEL_NM;
  convention.indexing = ORVANEL_NOLL;
  convention.normalisation = ORVANEL_NOT_NORMALISED;
  EXPECT_DOUBLE_EQ(CoefficientsIn(eye, convention)[3], 210.0 * std::sqrt(3.0));
  // Sines of y change their sign: oblique astigmatism, index 3 of OSA.
  convention = orvanel_osa_convention();
  convention.y_axis = ORVANEL_Y_DOWN;
  EXPECT_DOUBLE_EQ(CoefficientsIn(eye, convention)[3], -0.08);
  EXPECT_DOUBLE_EQ(CoefficientsIn(eye, convention)[5], -0.05);
  convention = orvanel_osa_convention();
  convention.unit = ORVANEL_WAVES;
  convention.wavelength_nm = 500.0;
  EXPECT_DOUBLE_EQ(CoefficientsIn(eye, convention)[4], 0.42);
}

TEST(CEye, ABufferThatIsTooSmallIsNotWritten) {
  const EyeHandle eye = SomeEye();
  const orvanel_convention convention = orvanel_osa_convention();
  double buffer[2] = {7.0, 7.0};
  uint64_t count = 0;
  EXPECT_EQ(orvanel_eye_coefficients(eye.get(), &convention, buffer, 2, &count), ORVANEL_TRUNCATED);
  EXPECT_EQ(count, SomeModes().size());
  EXPECT_EQ(buffer[0], 7.0);
  char text[4] = "abc";
  EXPECT_EQ(orvanel_eye_text(eye.get(), text, sizeof text, &count), ORVANEL_TRUNCATED);
  EXPECT_STREQ(text, "abc");
}

TEST(CEye, RmsIsTheRootOfTheSumOfSquares) {
  std::vector<double> numbers = {9, 9, 9, 0.3, 0.4, 0, 0.1};
  const EyeHandle eye = MakeEye(InputOf(numbers));
  double rms = 0.0;
  ASSERT_EQ(orvanel_eye_rms(eye.get(), 2, 2, &rms), ORVANEL_OK);
  EXPECT_DOUBLE_EQ(rms, 0.5);
  ASSERT_EQ(orvanel_eye_rms(eye.get(), 3, 20, &rms), ORVANEL_OK);
  EXPECT_DOUBLE_EQ(rms, 0.1);
  EXPECT_EQ(orvanel_eye_rms(eye.get(), 3, 2, &rms), ORVANEL_INVALID_ARGUMENT);
}

TEST(CEye, DefocusAloneIsItsSphere) {
  // M = -4 root(3) c / r^2, with c in um and r in mm.
  std::vector<double> numbers = {0, 0, 0, 0, 0.5};
  const EyeHandle eye = MakeEye(InputOf(numbers));
  for (const int32_t method : {ORVANEL_LEAST_SQUARES, ORVANEL_PARAXIAL}) {
    const orvanel_refraction refraction = RefractionOf(eye, method);
    EXPECT_NEAR(refraction.m, -4.0 * std::sqrt(3.0) * 0.5 / 4.0, 1e-12);
    EXPECT_NEAR(refraction.sphere, refraction.m, 1e-12);
    EXPECT_EQ(refraction.cylinder, 0.0);
  }
}

TEST(CEye, AdjustmentsAddRefractionMirrorAndRescale) {
  const EyeHandle eye = SomeEye();
  const orvanel_refraction before = RefractionOf(eye, ORVANEL_LEAST_SQUARES);
  orvanel_adjustments adjustments = NoAdjustments();
  adjustments.sphere = -1.0;
  adjustments.cylinder = -0.5;
  adjustments.axis = 90.0;
  EXPECT_NEAR(RefractionOf(Adjusted(eye, adjustments), ORVANEL_LEAST_SQUARES).m, before.m - 1.25, 1e-12);
  // A lens at the cornea of the same power takes it away again.
  adjustments.lens_sphere = -1.0;
  adjustments.lens_cylinder = -0.5;
  adjustments.lens_axis = 90.0;
  EXPECT_NEAR(RefractionOf(Adjusted(eye, adjustments), ORVANEL_LEAST_SQUARES).m, before.m, 1e-12);

  adjustments = NoAdjustments();
  adjustments.laterality = ORVANEL_OS;
  const EyeHandle mirrored = Adjusted(eye, adjustments);
  EXPECT_EQ(CoefficientsIn(mirrored, orvanel_osa_convention())[3], -0.08);
  EXPECT_EQ(CoefficientsIn(mirrored, orvanel_osa_convention())[4], 0.21);
  orvanel_eye_facts facts{};
  facts.size = sizeof facts;
  ASSERT_EQ(orvanel_eye_get_facts(mirrored.get(), &facts), ORVANEL_OK);
  EXPECT_EQ(facts.laterality, ORVANEL_OS);

  // The curvature at the centre does not depend on the pupil.
  adjustments = NoAdjustments();
  adjustments.pupil_mm = 3.0;
  const EyeHandle small = Adjusted(eye, adjustments);
  EXPECT_NEAR(RefractionOf(small, ORVANEL_PARAXIAL).m, RefractionOf(eye, ORVANEL_PARAXIAL).m, 1e-12);
  ASSERT_EQ(orvanel_eye_get_facts(small.get(), &facts), ORVANEL_OK);
  EXPECT_EQ(facts.pupil_mm, 3.0);

  adjustments = NoAdjustments();
  adjustments.highest_order = 2;
  EXPECT_EQ(CoefficientsIn(Adjusted(eye, adjustments), orvanel_osa_convention()).size(), 6u);
}

TEST(CEye, ItsTextIsReadBackToTheSameBits) {
  std::vector<double> numbers = SomeModes();
  orvanel_eye_input input = InputOf(numbers);
  input.name = "Ein Auge, \xc3\xbc";
  input.reference_nm = 840.0;
  const EyeHandle eye = MakeEye(input);
  uint64_t length = 0;
  ASSERT_EQ(orvanel_eye_text(eye.get(), nullptr, 0, &length), ORVANEL_OK);
  std::string text(length + 1, '\0');
  ASSERT_EQ(orvanel_eye_text(eye.get(), text.data(), text.size(), &length), ORVANEL_OK);
  text.resize(length);

  orvanel_eye* parsed = nullptr;
  ASSERT_EQ(orvanel_eye_parse(text.data(), length, &parsed), ORVANEL_OK) << LastError().text;
  const EyeHandle again(parsed);
  EXPECT_EQ(CoefficientsIn(again, orvanel_osa_convention()), numbers);
  orvanel_eye_facts facts{};
  facts.size = sizeof facts;
  ASSERT_EQ(orvanel_eye_get_facts(again.get(), &facts), ORVANEL_OK);
  EXPECT_STREQ(facts.name, input.name);
  EXPECT_EQ(facts.reference_nm, 840.0);
  EXPECT_EQ(facts.convention.indexing, ORVANEL_OSA);
  EXPECT_STREQ(facts.warnings, "");

  const TemporaryFolder folder;
  const std::string file = (folder.path() / "eye.json").string();
  std::ofstream(file) << text;
  ASSERT_EQ(orvanel_eye_read(file.c_str(), 0, &parsed), ORVANEL_OK) << LastError().text;
  EXPECT_EQ(CoefficientsIn(EyeHandle(parsed), orvanel_osa_convention()), numbers);
}

TEST(CEye, ARowOfATableIsAnEye) {
  const TemporaryFolder folder;
  const std::string file = (folder.path() / "eyes.csv").string();
  std::ofstream(file) << "unit,normalisation,order,y_axis,eye,pupil_diameter_mm,Z3,Z4\n"
                         "um,orthonormal,osa,up,OD,5,0.1,0.2\num,orthonormal,osa,up,OS,4,0.3,0.4\n";
  orvanel_eye* read = nullptr;
  ASSERT_EQ(orvanel_eye_read(file.c_str(), 2, &read), ORVANEL_OK) << LastError().text;
  const EyeHandle eye(read);
  EXPECT_EQ(CoefficientsIn(eye, orvanel_osa_convention()), (std::vector<double>{0, 0, 0, 0.3, 0.4}));
  EXPECT_EQ(orvanel_eye_read(file.c_str(), 0, &read), ORVANEL_FILE);
}

TEST(CEye, TextsOfAnotherEncodingAreRefused) {
  std::vector<double> numbers = SomeModes();
  orvanel_eye_input input = InputOf(numbers);
  input.name = "M\xFCller";
  orvanel_eye* eye = nullptr;
  EXPECT_EQ(orvanel_eye_create(&input, &eye), ORVANEL_INVALID_ARGUMENT);
  EXPECT_EQ(eye, nullptr);
  EXPECT_STREQ(LastError().text, "name is not UTF-8, as all texts of this interface are; convert it");
  uint64_t count = 0;
  EXPECT_EQ(orvanel_metrics_count("VS\xFF", &count), ORVANEL_INVALID_ARGUMENT);
  EXPECT_EQ(orvanel_eye_read("\xFF.json", 0, &eye), ORVANEL_INVALID_ARGUMENT);
}

TEST(CEye, WordsOfFilesOfAnotherEncodingAreUtf8InErrors) {
  const TemporaryFolder folder;
  const std::string file = (folder.path() / "eyes.csv").string();
  std::ofstream(file) << "unit,normalisation,order,y_axis,eye,pupil_diameter_mm,Z3\num,orthonormal,osa,up,OD,5,\xFC\n";
  orvanel_eye* read = nullptr;
  EXPECT_NE(orvanel_eye_read(file.c_str(), 1, &read), ORVANEL_OK);
  const std::string text = LastError().text;
  EXPECT_NE(text.find("\\xfc"), std::string::npos) << text;
  EXPECT_TRUE(IsUtf8(text));
}

}  // namespace
}  // namespace orvanel::test
