// Tests that text, JSON and table have every lens, every metric, the optimum and the depths of focus.
#include "cli/quality/focus_report.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "evaluation/evaluator.h"
#include "tests/eye/eyes.h"

namespace orvanel::cli {
namespace {

using Json = nlohmann::ordered_json;

// A parabola that is 0.8 at 0.25 D, and one of widths that misses its last value.
FocusedEye Example() {
  FocusedEye focused;
  focused.measured = focused.eye = AsymmetricEye();
  focused.conditions = Evaluator({ModelKind::kPhysical, {}}).Evaluate(focused.eye, {});
  NameMetrics("SFcMTF,MTF@10", focused.metrics);
  focused.focus.lenses = LensesOfRange("-1:1:0.25");
  for (QualityColumn& column : ColumnsOf(focused.metrics)) focused.focus.curves.push_back({column, {}, {}, {}});
  FocusCurve &cutOff = focused.focus.curves[0], &mtf = focused.focus.curves[1];
  for (const double lens : focused.focus.lenses) {
    cutOff.values.push_back(lens == 1.0 ? std::numeric_limits<double>::quiet_NaN() : 30.0 + lens);
    mtf.values.push_back(0.8 - (lens - 0.25) * (lens - 0.25));
  }
  for (FocusCurve* const curve : {&cutOff, &mtf}) {
    curve->optimum = OptimumOf(focused.focus.lenses, curve->values, {true, curve->column.isSmooth, true}, kDepthShares);
  }
  focused.warnings = {"a warning"};
  return focused;
}

TEST(FocusReport, TextHasTheTableTheBestFocusAndItsDepth) {
  const std::string text = ThroughFocusText(Example());
  for (const char* const part :
       {"Lens, D   SFcMTF, c/deg MTF@10\n", "-0.5      29.5          0.2375\n", "1         -             0.2375\n",
        "SFcMTF    30.75     with 0.75 D, the last lens\n", "MTF@10    0.8       with 0.25 D\n",
        "SFcMTF    at 80 %   more than 1.75 D, from -1 (end of the range) to 0.75 (end of the range) D\n",
        "MTF@10    at 80 %   0.8 D, from -0.15 to 0.65 D\n", "a plus lens makes the eye short-sighted"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
  }
}

TEST(FocusReport, JsonHasTheNumbers) {
  const Json json = Json::parse(ThroughFocusJson(Example()));
  EXPECT_EQ(json["lenses_d"].size(), 9U);
  EXPECT_EQ(json["metrics"][0]["unit"], "c/deg");
  EXPECT_TRUE(json["metrics"][0]["values"][8].is_null());
  EXPECT_TRUE(json["metrics"][0]["best"]["at_the_last_lens"]);
  const Json& mtf = json["metrics"][1];
  EXPECT_EQ(mtf["name"], "MTF@10");
  EXPECT_NEAR(mtf["best"]["lens_d"], 0.25, 1e-12);
  EXPECT_NEAR(mtf["best"]["value"], 0.8, 1e-12);
  EXPECT_NEAR(mtf["depth_of_focus"][0]["width_d"], 0.8, 1e-12);
  EXPECT_EQ(mtf["depth_of_focus"][1]["share"], 0.5);
  EXPECT_TRUE(mtf["depth_of_focus"][0]["ends_above"]);
  EXPECT_EQ(json["warnings"][0], "a warning");
}

TEST(FocusReport, CsvHasARowForEachLens) {
  const std::string csv = ThroughFocusCsv(Example().focus);
  EXPECT_EQ(csv.substr(0, csv.find('\n') + 1), "lens_d,SFcMTF_cpd,MTF@10\n");
  EXPECT_NE(csv.find("\n-0.5,29.5,0.2375"), std::string::npos) << csv;
  EXPECT_NE(csv.find("\n1,,0.2375"), std::string::npos) << csv;
}

}  // namespace
}  // namespace orvanel::cli
