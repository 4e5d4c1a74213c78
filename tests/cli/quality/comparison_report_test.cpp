// Tests that text and JSON have both values, the difference, and what the eyes do not have in common.
#include "cli/quality/comparison_report.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "metrics/quality_names.h"
#include "tests/eye/eyes.h"

namespace orvanel::cli {
namespace {

using Json = nlohmann::ordered_json;

Comparison Example(double pupilOfB) {
  Eye a, b;
  a.file = "a.json";
  b.file = "b.json";
  a.name = "Before";
  a.pupil = Millimetres(3.0);
  b.pupil = Millimetres(pupilOfB);
  a.coefficients.Replace({0.0, 0.0, 0.0, 0.0, 0.25});
  b.coefficients.Replace({0.0, 0.0, 0.0, 0.0, 0.125});
  ComparisonRequest request;
  NameMetrics("RMSw", request.metrics);
  return Compared(Viewed(a, request), Viewed(b, request));
}

TEST(ComparisonReport, TextHasBothValuesAndTheDifference) {
  const std::string text = ComparisonText(Example(3.0));
  for (const char* const part :
       {"Eye A           Before, laterality not stated, pupil 3 mm\n", "Eye B           b.json, ",
        "RMS, um      0.25         0.125        -0.125       orders 2 and above\n",
        "RMS of the wavefront B - A: 0.125 um, higher orders 0 um\n",
        "Coefficients    Z4, um       0.25         0.125        -0.125       defocus\n",
        "Metrics         RMSw, um     0.25         0.125        -0.125\n"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
  }
  EXPECT_EQ(text.find("Notes"), std::string::npos);
}

TEST(ComparisonReport, DifferencesWithoutAMeaningAreLeftOut) {
  const Comparison comparison = Example(4.0);
  const std::string text = ComparisonText(comparison);
  EXPECT_NE(text.find("Z4, um       0.25         0.125        -            defocus\n"), std::string::npos) << text;
  EXPECT_NE(text.find("Notes           The pupils differ"), std::string::npos) << text;
  const Json json = Json::parse(ComparisonJson(comparison));
  EXPECT_TRUE(json["rms_of_difference_um"].is_null());
  EXPECT_TRUE(json["coefficients"][0]["difference"].is_null());
  EXPECT_EQ(json["notes"].size(), 1U);
}

TEST(ComparisonReport, JsonHasTheNumbers) {
  const Json json = Json::parse(ComparisonJson(Example(3.0)));
  EXPECT_EQ(json["eyes"][0]["name"], "Before");
  EXPECT_EQ(json["eyes"][1]["file"], "b.json");
  EXPECT_EQ(json["rms_of_difference_um"], 0.125);
  EXPECT_EQ(json["coefficients"][0]["name"], "Z4");
  EXPECT_EQ(json["coefficients"][0]["a"], 0.25);
  EXPECT_EQ(json["coefficients"][0]["difference"], -0.125);
  EXPECT_EQ(json["refraction"].size(), 3U);
  EXPECT_EQ(json["metrics"][0]["unit"], "um");
}

}  // namespace
}  // namespace orvanel::cli
