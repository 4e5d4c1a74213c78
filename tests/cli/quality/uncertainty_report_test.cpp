// Tests that text and JSON have every value with its deviation and interval, and say what has none.
#include "cli/quality/uncertainty_report.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "evaluation/evaluator.h"
#include "metrics/quality_names.h"
#include "tests/eye/eyes.h"

namespace orvanel::cli {
namespace {

using Json = nlohmann::ordered_json;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

UncertainEye Example() {
  UncertainEye uncertain;
  uncertain.measured = uncertain.eye = AsymmetricEye();
  uncertain.conditions = Evaluator({ModelKind::kPhysical, {}}).Evaluate(uncertain.eye, {});
  NameMetrics("VSX,PV", uncertain.metrics);
  uncertain.source = "of a table";
  uncertain.values = {{"VSX", "1", 0.25, 0.24, 0.01, 0.22, 0.26, 0},
                      {"PV", "um", 3.5, 3.5, kNan, kNan, kNan, 0},
                      {"J0", "D", -0.0, -0.0, 0.0, -0.0, 0.0, 0},
                      {"M", "D", -1.0, -1.0, 0.125, -1.245, -0.755, 0}};
  uncertain.warnings = {"a warning"};
  return uncertain;
}

TEST(UncertaintyReport, TextHasATable) {
  UncertainEye uncertain = Example();
  std::string text = UncertaintyText(uncertain);
  for (const char* const part :
       {"to first order, by gradients\n", "VSX          0.25         0.24         0.01         ", "0.22 to 0.26\n",
        "PV, um       3.5          3.5          -            -\n",
        "J0, D        0            0            0            0 to 0\n",
        "M, D         -1           -1           0.125        -1.245 to -0.755\n"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
  }
  uncertain.draws = 500;
  uncertain.seed = 7;
  EXPECT_NE(UncertaintyText(uncertain).find("500 eyes drawn, seed 7\n"), std::string::npos);
}

TEST(UncertaintyReport, JsonHasTheNumbers) {
  UncertainEye uncertain = Example();
  const Json json = Json::parse(UncertaintyJson(uncertain));
  EXPECT_EQ(json["method"], "first order");
  EXPECT_FALSE(json.contains("draws"));
  EXPECT_EQ(json["values"][0]["name"], "VSX");
  EXPECT_EQ(json["values"][0]["interval_95"][1], 0.26);
  EXPECT_TRUE(json["values"][1]["standard_deviation"].is_null());
  EXPECT_EQ(json["values"][3]["unit"], "D");
  EXPECT_EQ(json["warnings"][0], "a warning");
  uncertain.draws = 500;
  EXPECT_EQ(Json::parse(UncertaintyJson(uncertain))["draws"], 500);
}

TEST(UncertaintyReport, WarnsOfWhatHasNoDeviation) {
  UncertainEye uncertain = Example();
  EXPECT_EQ(UncertaintyWarnings(uncertain.values, 0), (std::vector<std::string>{"no gradient for PV; use --draws N"}));
  uncertain.values[1] = {"D50", "arcmin", 3.5, 3.4, 0.2, 3.1, 3.7, 2};
  EXPECT_EQ(UncertaintyWarnings(uncertain.values, 50),
            (std::vector<std::string>{"D50 has no value for 2 of the 50 eyes drawn; they are left out"}));
  EXPECT_TRUE(UncertaintyWarnings({}, 0).empty());
  EXPECT_EQ(UncertaintyWarnings({}, 0, {"VSX", "NS"}),
            (std::vector<std::string>{"first order is wrong for VSX, NS, as 40 drawn eyes show: far from linear within "
                                      "this covariance; use --draws N"}));
}

}  // namespace
}  // namespace orvanel::cli
