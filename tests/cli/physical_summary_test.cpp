// Tests that the summary of the physical model has its numbers with their units.
#include "cli/physical_summary.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::cli {
namespace {

using Json = nlohmann::ordered_json;

SimulatedEye Perfect(PhysicalSettings settings = {}) {
  return PhysicallySimulated(PerfectEye(Millimetres(3.0)), {{1.0, Gap::kRight}, {1.0, Gap::kUp}, {0.5, Gap::kUp}},
                             std::move(settings));
}

TEST(PhysicalSummary, ScalarsOfAPerfectEyeFollowFromItsPupil) {
  const Json json = PhysicalScalarsJson(Perfect().results);
  EXPECT_NEAR(json["strehl_ratio_axis"].get<double>(), 1.0, 1e-9);
  EXPECT_NEAR(json["strehl_ratio_peak"].get<double>(), 1.0, 1e-9);
  EXPECT_LE(json["strehl_ratio_peak"].get<double>(), 1.0);
  // D/lambda per radian: 3e-3 / 555e-9 * pi / 180.
  EXPECT_NEAR(json["cutoff_cpd"].get<double>(), 94.3421, 1e-4);
  EXPECT_EQ(json["wavefront_peak_to_valley_um"], 0.0);
  EXPECT_NEAR(json["psf_sample_arcmin"].get<double>() * 256.0, json["psf_window_arcmin"].get<double>(), 1e-12);
}

// A perfect eye's PSF is an Airy pattern: beyond the radius r in units of lambda/D there is about 2/(pi^2 r) of the
// light; a square window of half side 10' has r from 15.7 to 22.2.
TEST(PhysicalSummary, StatesTheShareOfLightInTheWindow) {
  const double share = PhysicalScalarsJson(Perfect().results)["psf_light_in_window"].get<double>();
  EXPECT_GT(share, 1.0 - 0.2026 / 15.7);
  EXPECT_LT(share, 1.0 - 0.2026 / 22.2);
}

TEST(PhysicalSummary, TiltMovesThePeakAsTheOriginSays) {
  Eye eye = PerfectEye(Millimetres(6.0));
  eye.coefficients = {kOsaConvention, {0.0, 0.0, 1.0}};
  PhysicalSettings settings;
  settings.origin = physical::Origin::kPeak;
  const Json json = PhysicalScalarsJson(PhysicallySimulated(eye, {}, settings).results);
  // 1 um of Z(1, 1) over 6 mm is 4 um over 6 mm: 2.2918'.
  EXPECT_NEAR(json["psf_peak_x_arcmin"].get<double>(), -2.2918, 1e-4);
  EXPECT_EQ(json["psf_origin"], "peak");
  EXPECT_NEAR(json["psf_origin_x_arcmin"].get<double>(), -2.2918, 1e-4);
  EXPECT_EQ(json["wavefront_peak_to_valley_um"], 0.0);  // piston and tilt are left out
}

TEST(PhysicalSummary, ModelHasLightReferenceAndView) {
  PhysicalSettings settings;
  settings.light = {{600.0, 1.0}};
  settings.view = physical::View::kRetina;
  const Json json = ModelJson(Perfect(settings).results);
  EXPECT_EQ(json["name"], "physical");
  EXPECT_EQ(json["light"][0]["wavelength_nm"], 600.0);
  EXPECT_EQ(json["reference_wavelength_nm"], 600.0);
  EXPECT_EQ(json["reference_wavelength_assumed"], true);
  EXPECT_EQ(json["view"], "retina");
  EXPECT_EQ(ModelJson(Simulated(PerfectEye(Millimetres(3.0)), {}).results)["name"], "classic");
}

TEST(PhysicalSummary, MtfIsThatOfThePerfectPupil) {
  PhysicalSettings settings;
  settings.mtfAt = {CyclesPerDegree(94.3421 / 2.0)};
  const Json json = PhysicalMtfJson(Perfect(settings).results);
  // At half of the cut-off: (2/pi)(acos(1/2) - (1/2) sqrt(3)/2).
  EXPECT_NEAR(json[0]["horizontal"].get<double>(), 0.391002, 1e-5);
  EXPECT_NEAR(json[0]["vertical"].get<double>(), 0.391002, 1e-5);
  EXPECT_NEAR(json[0]["mean_over_angle"].get<double>(), 0.391002, 3e-5);
}

TEST(PhysicalSummary, RingsHaveTheAcuityRequested) {
  const SimulatedEye simulated = Perfect();
  const Json rings = PhysicalRingsJson(simulated.results);
  EXPECT_EQ(rings[0]["original_file"], "ring_acuity-1_gap-right_original.png");
  EXPECT_DOUBLE_EQ(rings[0]["diameter_arcmin"], 5.0);
  EXPECT_DOUBLE_EQ(rings[2]["diameter_arcmin"], 10.0);
  const std::string lines = PhysicalLines(simulated);
  EXPECT_NE(lines.find("at the peak, which is at x 0, y 0 arc minutes"), std::string::npos) << lines;
}

}  // namespace
}  // namespace orvanel::cli
