// Tests that the classic model has the bits of the eight functions.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

#include "orvanel/orvanel.h"
#include "tests/c_interface/c_eyes.h"
#include "tests/support/captured_stdout.h"
#include "tests/support/loaded_library.h"

namespace orvanel::test {
namespace {

PlaneHandle Classic(const EyeHandle& eye, int32_t what, double acuity = 0.0, int32_t gap = 0) {
  orvanel_plane* made = nullptr;
  EXPECT_EQ(orvanel_classic(eye.get(), what, acuity, gap, &made), ORVANEL_OK) << LastError().text;
  return PlaneHandle(made);
}

// Millimetres, not normalised, by OSA index, y down.
const std::array<double, ORVANEL_COEFFICIENTS> kModes = {0,     0,    0,    1.1e-4, 2.3e-4, -0.7e-4, 0.4e-4,
                                                         -3e-5, 2e-5, 1e-5, 5e-6,   0,      6e-5,    0};

EyeHandle LibraryEye() {
  std::vector<double> numbers(kModes.begin(), kModes.end());
  orvanel_eye_input input = InputOf(numbers);
  input.pupil_mm = 3.0;
  input.convention.unit = ORVANEL_MM;
  input.convention.normalisation = ORVANEL_NOT_NORMALISED;
  input.convention.y_axis = ORVANEL_Y_DOWN;
  return MakeEye(input);
}

using Samples = std::vector<double>;

TEST(CClassic, PlanesHaveTheBitsOfTheEightFunctions) {
  const LoadedLibrary library;
  library.InputPupil(3.0);
  ASSERT_EQ(library.InputZer(kModes.data()), 1);
  const EyeHandle eye = LibraryEye();

  Samples plane(ORVANEL_PLANE_SAMPLES);
  double strehl = 0.0, halfWidth = 0.0, range = 0.0, acuity = 0.0;
  ASSERT_EQ(library.GetPSF(plane.data(), &strehl, &halfWidth), 1);
  const PlaneHandle psf = Classic(eye, ORVANEL_CLASSIC_PSF);
  EXPECT_EQ(SamplesOf(psf), plane);
  EXPECT_EQ(FactsOf(psf).strehl_sample, strehl);
  EXPECT_EQ(FactsOf(psf).half_width_mm, halfWidth);

  ASSERT_EQ(library.GetMTF(plane.data(), &range), 1);
  const PlaneHandle mtf = Classic(eye, ORVANEL_CLASSIC_MTF);
  EXPECT_EQ(SamplesOf(mtf), plane);
  EXPECT_EQ(FactsOf(mtf).frequency_range, range);

  ASSERT_EQ(library.GetPattern(plane.data()), 1);
  EXPECT_EQ(SamplesOf(Classic(eye, ORVANEL_CLASSIC_STAR_STRETCHED)), plane);
  ASSERT_EQ(library.GetPatternOriginal(plane.data()), 1);
  EXPECT_EQ(SamplesOf(Classic(eye, ORVANEL_CLASSIC_STAR)), plane);

  Samples drawn(ORVANEL_PLANE_SAMPLES);
  OutputOf([&] { library.GetOrvanel(0.5, plane.data(), &acuity, drawn.data(), 1); });
  const PlaneHandle ring = Classic(eye, ORVANEL_CLASSIC_RING, 0.5, 1);
  EXPECT_EQ(SamplesOf(ring), drawn);
  EXPECT_EQ(FactsOf(ring).effective_acuity, acuity);
  EXPECT_EQ(SamplesOf(Classic(eye, ORVANEL_CLASSIC_RING_IMAGE, 0.5, 1)), plane);
  ASSERT_EQ(library.GetPattern(plane.data()), 1);
  EXPECT_EQ(SamplesOf(Classic(eye, ORVANEL_CLASSIC_STAR_TOTAL_LIGHT)), plane);
}

TEST(CClassic, TheWavefrontIsThatOfThePhysicalModelUpToTheirSampling) {
  const PlaneHandle wavefront = Classic(LibraryEye(), ORVANEL_CLASSIC_WAVEFRONT);
  const orvanel_plane_facts facts = FactsOf(wavefront);
  EXPECT_EQ(facts.kind, ORVANEL_WAVEFRONT);
  EXPECT_TRUE(std::isnan(facts.samples.data[0]));
  // At the middle of the pupil: -c(2,0) + c(4,0).
  EXPECT_NEAR(facts.samples.data[128 * 256 + 128], -2.3e-4 + 6e-5, 2e-6);
}

TEST(CClassic, RefusesWhatItDoesNotHave) {
  orvanel_plane* made = nullptr;
  const EyeHandle eye = LibraryEye();
  EXPECT_EQ(orvanel_classic(eye.get(), 9, 1.0, 3, &made), ORVANEL_INVALID_ARGUMENT);
  EXPECT_EQ(orvanel_classic(eye.get(), ORVANEL_CLASSIC_RING, -1.0, 3, &made), ORVANEL_INVALID_ARGUMENT);
  EXPECT_EQ(orvanel_classic(eye.get(), ORVANEL_CLASSIC_RING, 1.0, 5, &made), ORVANEL_INVALID_ARGUMENT);
  EXPECT_EQ(orvanel_classic(eye.get(), ORVANEL_CLASSIC_RING, 1e6, 3, &made), ORVANEL_REFUSED);
  EXPECT_STREQ(LastError().code, "ring_too_small");
  std::vector<double> numbers(36);
  numbers[35] = 0.1;  // radial order 7
  EXPECT_EQ(orvanel_classic(MakeEye(InputOf(numbers)).get(), ORVANEL_CLASSIC_PSF, 0.0, 0, &made), ORVANEL_REFUSED);
  EXPECT_STREQ(LastError().code, "order_above_highest");
}

}  // namespace
}  // namespace orvanel::test
