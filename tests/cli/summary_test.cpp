// Tests that the numbers of the summary are those of the library.
#include "cli/summary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::cli {
namespace {

const std::vector<RingRequest> kRings = {{0.7, Gap::kLeft}, {0.7, Gap::kUp}, {1.9, Gap::kDown}};

void ExpectNoNull(const nlohmann::json& value, const std::string& path) {
  EXPECT_FALSE(value.is_null()) << path;
  if (!value.is_structured()) return;
  for (const auto& [key, inner] : value.items()) ExpectNoNull(inner, path + "/" + key);
}

TEST(Summary, ValuesAreThoseThatTheLibraryGives) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  const auto summary = nlohmann::json::parse(SummaryJson(simulated, {"one.png", "summary.json"}));

  OrvanelInputPupil(simulated.results.pupil.value());
  ASSERT_EQ(OrvanelInputZer(Bare(ToLibrary(simulated.eye.coefficients)).data()), 1);
  Plane plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
  double strehl, halfWidth, range, acuity;
  OrvanelInputPupil(simulated.results.pupil.value());
  ASSERT_EQ(OrvanelInputZer(Bare(ToLibrary(simulated.eye.coefficients)).data()), 1);
  ASSERT_EQ(OrvanelGetPSF(plane.data(), &strehl, &halfWidth), 1);
  ASSERT_EQ(OrvanelGetMTF(plane.data(), &range), 1);
  ASSERT_EQ(OrvanelGetOrvanel(0.7, plane.data(), &acuity, nullptr, 4), 1);
  EXPECT_EQ(summary["results"]["strehl_ratio"], strehl);
  EXPECT_EQ(summary["results"]["strehl_ratio_peak"], simulated.results.strehlPeak);
  EXPECT_EQ(summary["results"]["psf_half_width_mm_library_scale"], halfWidth);
  EXPECT_EQ(summary["results"]["mtf_frequency_range_cpd_library_scale"], range);
  EXPECT_EQ(summary["rings"][0]["acuity_drawn_library_scale"], acuity);
  EXPECT_EQ(summary["rings"][0]["diameter_samples"], simulated.results.rings[0].diameter);
  EXPECT_EQ(summary["rings"][2]["gap"], "down");
  EXPECT_EQ(summary["results"]["cutoff_cpd_optical_scale"], simulated.results.scales.opticalCutOff.value());
  EXPECT_EQ(summary["results"]["wavelength_nm"], 587.56);
}

// Both scales of a quantity, wherever they stand side by side: how often, and whether always in the same ratio.
int CountPairs(const nlohmann::json& value, double ratio) {
  int pairs = 0;
  if (!value.is_structured()) return 0;
  for (const auto& [key, inner] : value.items()) {
    pairs += CountPairs(inner, ratio);
    const std::string ending = "_library_scale";
    if (!value.is_object() || !key.ends_with(ending)) continue;
    const std::string optical = key.substr(0, key.size() - ending.size()) + "_optical_scale";
    if (!value.contains(optical)) continue;
    const double quotient = value[optical].get<double>() / inner.get<double>();
    EXPECT_NEAR(std::max(quotient, 1.0 / quotient), ratio, 1e-12) << key;
    ++pairs;
  }
  return pairs;
}

TEST(Summary, HasOneRatioOfTheScalesThroughout) {
  SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  simulated.mtfAt = {CyclesPerDegree(7.5)};
  ObjectPicture object;
  object.channels.push_back(simulated.results.star.original);
  simulated.results.picture = RetinalPictureOf(simulated.eye, object);
  const auto summary = nlohmann::json::parse(SummaryJson(simulated, {"summary.json"}));
  const double ratio = 2.0 / (17.0 * std::atan(1.0 / 17.0));
  // Half width in two units, sample of PSF and MTF, a frequency, the picture's field, and acuity and size of each ring.
  EXPECT_EQ(CountPairs(summary, ratio), 6 + 2 * static_cast<int>(kRings.size()));
  const auto& scalars = summary["results"];
  EXPECT_NEAR(scalars["library_scale_over_optical_scale"].get<double>(), ratio, 1e-12);
  EXPECT_NEAR(scalars["mtf_frequency_range_cpd_library_scale"].get<double>() /
                  scalars["cutoff_cpd_optical_scale"].get<double>(),
              ratio, 1e-12);
}

TEST(Summary, GivesTheInputsAsGivenAndAsConverted) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  const auto summary = nlohmann::json::parse(SummaryJson(simulated, {"summary.json"}));
  EXPECT_EQ(summary["program"], "orvanel");
  EXPECT_EQ(summary["version"], ORVANEL_VERSION);
  EXPECT_EQ(summary["eye"]["pupil_diameter_mm"], 4.5);
  EXPECT_EQ(summary["eye"]["coefficients_as_given"], simulated.measured.coefficients.AsStated());
  EXPECT_EQ(summary["eye"]["eye"], "unknown");
  EXPECT_EQ(summary["eye"]["convention"]["order"], "osa");
  EXPECT_EQ(summary["eye"]["convention"]["unit"], "um");
  ASSERT_EQ(summary["eye"]["coefficients_library_mm"].size(), 28U);
  EXPECT_DOUBLE_EQ(summary["eye"]["coefficients_library_mm"][7], 0.12e-3 * std::sqrt(8.0));
  EXPECT_EQ(summary["files"], std::vector<std::string>{"summary.json"});
  EXPECT_TRUE(summary["warnings"].empty());
}

TEST(Summary, NamesTheViewOfEveryPlaneAndTheNasalSides) {
  SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  EXPECT_FALSE(nlohmann::json::parse(SummaryJson(simulated, {"summary.json"}))["views"].contains("nasal_side"));
  simulated.eye.side = Side::kOs;
  const auto views = nlohmann::json::parse(SummaryJson(simulated, {"summary.json"}))["views"];
  EXPECT_EQ(views["of_planes"]["wavefront"], "pupil");
  EXPECT_EQ(views["of_planes"]["psf"], "retina");
  EXPECT_EQ(views["of_planes"]["mtf"], "retina");
  EXPECT_EQ(views["of_planes"]["star_seen_stretched"], "patient");
  EXPECT_EQ(views["of_planes"]["ring_acuity-0.6855_gap-left_seen"], "patient");
  EXPECT_EQ(views["of_planes"].size(), 6U + 2 * kRings.size());
  EXPECT_EQ(views["nasal_side"]["retina"], "left");
  EXPECT_EQ(views["nasal_side"]["patient_field"], "right");
}

TEST(Summary, HasTheRingDrawnForEachAcuityAskedFor) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), {{0.7, Gap::kLeft}, {0.69, Gap::kLeft}, {2.0, Gap::kUp}});
  const auto rings = nlohmann::json::parse(SummaryJson(simulated, {"summary.json"}))["rings"];
  ASSERT_EQ(rings.size(), 3U);
  EXPECT_EQ(rings[0]["acuity_requested_library_scale"], 0.7);
  EXPECT_EQ(rings[0]["seen_file"], "ring_acuity-0.6855_gap-left_seen.png");
  EXPECT_EQ(rings[1]["acuity_requested_library_scale"], 0.69);
  EXPECT_EQ(rings[1]["seen_file"], rings[0]["seen_file"]);
  EXPECT_NEAR(rings[2]["acuity_drawn_above_requested_percent"].get<double>(), 11.4, 0.05);
  const std::string text = SummaryText(simulated, "out", 1);
  EXPECT_NE(text.find("20 samples, gap up; 11.4 % above the acuity requested"), std::string::npos);
}

TEST(Summary, TellsOfThePictureAndTheAngleThatItSpans) {
  SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  ObjectPicture object;
  object.request = {"photograph.png", Fit::kPad, false};
  object.width = 640;
  object.height = 480;
  object.bits = 16;
  object.transparent = true;
  object.channels.push_back(simulated.results.star.original);
  simulated.results.picture = RetinalPictureOf(simulated.eye, object);
  const auto picture = nlohmann::json::parse(SummaryJson(simulated, {"summary.json"}))["picture"];
  EXPECT_EQ(picture["file"], "photograph.png");
  EXPECT_EQ(picture["fit"], "pad");
  EXPECT_EQ(picture["values"], "sRGB");
  EXPECT_EQ(picture["bits"], 16);
  EXPECT_EQ(picture["field_arcmin_library_scale"], 256.0 * simulated.results.scales.library.pitch.value());
  EXPECT_NE(SummaryText(simulated, "out", 1).find("white under transparent parts"), std::string::npos);
}

TEST(Summary, FactsAreItsNumbersInOneList) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  bool strehl = false, unit = false, coefficients = false;
  for (const Fact& fact : FactsOf(simulated)) {
    if (fact.name == "strehl_ratio") strehl = std::get<double>(fact.value) == simulated.results.strehl;
    if (fact.name == "convention_unit") unit = std::get<std::string>(fact.value) == "um";
    if (fact.name == "coefficients_as_given") {
      coefficients = std::get<std::vector<double>>(fact.value) == simulated.eye.coefficients.AsStated();
    }
  }
  EXPECT_TRUE(strehl && unit && coefficients);
}

TEST(Summary, GivesFactsOfNamedCoefficientsAndChangesToo) {
  SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  Convention convention = kOsaConvention;
  convention.scheme = IndexScheme::kNamed;
  simulated.measured.coefficients.Restate(convention);
  simulated.changes = {"mirrored from OS to OD", "rescaled from 6 to 4.5 mm"};
  bool coefficients = false, changes = false;
  for (const Fact& fact : FactsOf(simulated)) {
    if (fact.name == "coefficients_as_given") {
      coefficients = std::get<std::vector<double>>(fact.value) == simulated.measured.coefficients.AsStated();
    }
    if (fact.name == "changes") {
      changes = std::get<std::string>(fact.value) == "mirrored from OS to OD; rescaled from 6 to 4.5 mm";
    }
  }
  EXPECT_TRUE(coefficients && changes);
}

TEST(Summary, TakesANameOfAFileThatIsNotUtf8) {
  SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  simulated.measured.file = "\xe4.json";
  const auto summary = nlohmann::json::parse(SummaryJson(simulated, {"summary.json"}));
  EXPECT_EQ(summary["eye"]["file"], "\ufffd.json");
}

TEST(Summary, HoldsNoNull) {
  const SimulatedEye simulated = Simulated(PerfectEye(Millimetres(3.0)), kRings);
  ExpectNoNull(nlohmann::json::parse(SummaryJson(simulated, {"summary.json"})), "");
}

TEST(Summary, TellsWhatWasDoneToTheEye) {
  SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  simulated.changes = {"rescaled from 6 to 4.5 mm"};
  simulated.measured.pupil = Millimetres(6.0);
  const auto summary = nlohmann::json::parse(SummaryJson(simulated, {"summary.json"}));
  EXPECT_EQ(summary["eye"]["changes"], simulated.changes);
  EXPECT_EQ(summary["eye"]["pupil_diameter_mm"], 6.0);
  EXPECT_EQ(summary["eye"]["simulated_pupil_diameter_mm"], 4.5);
  EXPECT_NE(SummaryText(simulated, "out", 1).find("Changes         rescaled from 6 to 4.5 mm\n"), std::string::npos);
}

TEST(Summary, GivesTheMtfAtFrequenciesOnBothScales) {
  SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  simulated.mtfAt = {10.0 * simulated.results.scales.library.step, CyclesPerDegree(1e6)};
  const auto summary = nlohmann::json::parse(SummaryJson(simulated, {"summary.json"}));
  constexpr double kRounding = 1e-13;
  EXPECT_NEAR(summary["mtf"][0]["horizontal"].get<double>(), simulated.results.rowSection[10], kRounding);
  EXPECT_NEAR(summary["mtf"][0]["vertical"].get<double>(), simulated.results.columnSection[10], kRounding);
  EXPECT_DOUBLE_EQ(summary["mtf"][0]["frequency_cpd_library_scale"], simulated.mtfAt[0].value());
  EXPECT_DOUBLE_EQ(summary["mtf"][0]["frequency_cpd_optical_scale"],
                   simulated.mtfAt[0].value() / simulated.results.scales.ratio);
  EXPECT_EQ(summary["mtf"][1]["horizontal"], 0.0);
}

TEST(Summary, CarriesTheWarnings) {
  const SimulatedEye simulated = Simulated(PerfectEye(Millimetres(25.0)), kRings);
  const auto summary = nlohmann::json::parse(SummaryJson(simulated, {"summary.json"}));
  ASSERT_FALSE(simulated.warnings.empty());
  EXPECT_EQ(summary["warnings"], simulated.warnings);
}

TEST(Summary, TextNamesItsModelAndEndsWithWhereToLook) {
  const std::string text = SummaryText(Simulated(PerfectEye(Millimetres(3.0)), kRings), "out", 17);
  EXPECT_NE(text.find("Classic model: "), std::string::npos) << text;
  EXPECT_NE(text.find("178.43 cycles/degree"), std::string::npos) << text;
  EXPECT_TRUE(text.ends_with("17 files in out; open out/overview.png first\n")) << text;
  EXPECT_TRUE(
      SummaryText(Simulated(PerfectEye(Millimetres(3.0)), kRings), "out", 2, false).ends_with("2 files in out\n"));
}

TEST(Summary, TextGivesTheVisualAngleOfPhysicalRings) {
  const SimulatedEye simulated =
      PhysicallySimulated(PerfectEye(Millimetres(3.0)), {{1.0, Gap::kRight}, {1.0, Gap::kUp}, {0.5, Gap::kUp}}, {});
  const std::string text = SummaryText(simulated, "out", 3);
  EXPECT_NE(text.find("acuity 1, 5 arc minutes wide, gap right, up\n"), std::string::npos) << text;
  EXPECT_NE(text.find("acuity 0.5, 10 arc minutes wide, gap up\n"), std::string::npos) << text;
}

}  // namespace
}  // namespace orvanel::cli
