// The summary: its numbers are those of the library.
#include "cli/summary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "tests/cli/simulated_eyes.h"

namespace orvanel::cli {
namespace {

const std::vector<RingRequest> kRings = {{0.7, Gap::kLeft}, {0.7, Gap::kUp}, {1.9, Gap::kDown}};

void ExpectNoNull(const nlohmann::json& value, const std::string& path) {
  EXPECT_FALSE(value.is_null()) << path;
  if (!value.is_structured()) return;
  for (const auto& [key, inner] : value.items()) ExpectNoNull(inner, path + "/" + key);
}

TEST(Summary, ValuesAreThoseThatTheLibraryGives) {
  const Results results = ResultsOf(AsymmetricEye(), kRings);
  const auto summary = nlohmann::json::parse(SummaryJson(results, {"one.png", "summary.json"}));

  Plane plane(ORVANEL_PLANE_SAMPLES);
  double strehl, halfWidth, range, acuity;
  ASSERT_EQ(OrvanelGetPSF(plane.data(), &strehl, &halfWidth), 1);
  ASSERT_EQ(OrvanelGetMTF(plane.data(), &range), 1);
  ASSERT_EQ(OrvanelGetOrvanel(0.7, plane.data(), &acuity, nullptr, 4), 1);
  EXPECT_EQ(summary["results"]["strehl_ratio"], strehl);
  EXPECT_EQ(summary["results"]["psf_half_width_mm_library_scale"], halfWidth);
  EXPECT_EQ(summary["results"]["mtf_frequency_range_cpd_library_scale"], range);
  EXPECT_EQ(summary["rings"][0]["acuity_drawn_library_scale"], acuity);
  EXPECT_EQ(summary["rings"][0]["diameter_samples"], results.simulation.rings[0].diameter);
  EXPECT_EQ(summary["rings"][2]["gap"], "down");
  EXPECT_EQ(summary["results"]["cutoff_cpd_optical_scale"], results.scales.opticalCutOff.value());
  EXPECT_EQ(summary["results"]["wavelength_nm"], 587.56);
}

TEST(Summary, GivesTheInputsAsGivenAndAsConverted) {
  const Results results = ResultsOf(AsymmetricEye(), kRings);
  const auto summary = nlohmann::json::parse(SummaryJson(results, {"summary.json"}));
  EXPECT_EQ(summary["program"], "orvanel");
  EXPECT_EQ(summary["version"], ORVANEL_VERSION);
  EXPECT_EQ(summary["eye"]["pupil_diameter_mm"], 4.5);
  EXPECT_EQ(summary["eye"]["coefficients_as_given"], results.eye.coefficients);
  EXPECT_EQ(summary["eye"]["convention"]["unit"], "um");
  ASSERT_EQ(summary["eye"]["coefficients_library_mm"].size(), 28U);
  EXPECT_DOUBLE_EQ(summary["eye"]["coefficients_library_mm"][7], 0.12e-3 * std::sqrt(8.0));
  EXPECT_EQ(summary["files"], std::vector<std::string>{"summary.json"});
  EXPECT_TRUE(summary["warnings"].empty());
}

TEST(Summary, TakesANameOfAFileThatIsNotUtf8) {
  Results results = ResultsOf(AsymmetricEye(), kRings);
  results.eye.file = "\xe4.json";
  const auto summary = nlohmann::json::parse(SummaryJson(results, {"summary.json"}));
  EXPECT_EQ(summary["eye"]["file"], "\ufffd.json");
}

TEST(Summary, HoldsNoNull) {
  const Results results = ResultsOf(PerfectEye(Millimetres(3.0)), kRings);
  ExpectNoNull(nlohmann::json::parse(SummaryJson(results, {"summary.json"})), "");
}

TEST(Summary, CarriesTheWarnings) {
  const Results results = ResultsOf(PerfectEye(Millimetres(25.0)), kRings);
  const auto summary = nlohmann::json::parse(SummaryJson(results, {"summary.json"}));
  ASSERT_FALSE(results.warnings.empty());
  EXPECT_EQ(summary["warnings"], results.warnings);
}

TEST(Summary, TextSaysBothScalesAndEndsWithWhereToLook) {
  const std::string text = SummaryText(ResultsOf(PerfectEye(Millimetres(3.0)), kRings), "out", 17);
  EXPECT_NE(text.find("178.43 cycles/degree (library scale)"), std::string::npos) << text;
  EXPECT_NE(text.find("89.11 cycles/degree for a pupil of 3 mm (optical scale)"), std::string::npos) << text;
  EXPECT_TRUE(text.ends_with("17 files in out; open out/overview.png first\n")) << text;
}

}  // namespace
}  // namespace orvanel::cli
