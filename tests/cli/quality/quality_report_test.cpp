// Tests the lines and the JSON of metrics of image quality.
#include "cli/quality/quality_report.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "metrics/quality_names.h"

namespace orvanel::cli {
namespace {

using M = QualityMetric;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

QualityRequest Request() {
  QualityRequest request;
  request.metrics = {M::kVsx, M::kD50};
  request.origin = QualityOrigin::kPeak;
  return request;
}

Quality Example() {
  Quality quality;
  quality.values = {{M::kVsx, -0.125, 1.0, 1e-4, QualityNote::kBelowZero},
                    {M::kD50, kNan, 0.5, kNan, QualityNote::kOutsideWindow}};
  quality.origin = QualityOrigin::kPeak;
  quality.originX = 0.5;
  quality.originY = -2.0;
  return quality;
}

TEST(QualityReport, HasOneLineForEachMetricThenTheConditions) {
  EXPECT_EQ(QualityLines(Example(), Request()),
            "Image quality   VSX      -0.125         1 without aberration; error 0.0001; a value below 0 is worse than "
            "even light; it has no logarithm and gives no acuity\n"
            "                D50      unknown        0.5 arcmin without aberration; more than half of the light is "
            "farther away than the computation reaches\n"
            "                Origin of the metrics: peak, at x 0.5, y -2 arc minutes in the view of the patient.\n"
            "                Ratios are to the pupil without aberration in the same light (same-light).\n"
            "                Contrast sensitivity: Campbell and Green (1965).\n");
}

TEST(QualityReport, JsonHasEveryPropertyOfAMetric) {
  const nlohmann::ordered_json json = QualityJson(Example(), Request());
  EXPECT_EQ(json["origin"], "peak");
  EXPECT_EQ(json["origin_x_arcmin"], 0.5);
  EXPECT_EQ(json["origin_y_arcmin"], -2.0);
  EXPECT_EQ(json["reference"], "same-light");
  ASSERT_EQ(json["metrics"].size(), 2U);
  const nlohmann::ordered_json& vsx = json["metrics"][0];
  EXPECT_EQ(vsx["name"], "VSX");
  EXPECT_EQ(vsx["unit"], "1");
  EXPECT_EQ(vsx["value"], -0.125);
  EXPECT_EQ(vsx["without_aberration"], 1.0);
  EXPECT_EQ(vsx["error"], 1e-4);
  EXPECT_EQ(vsx["note"], metrics::TextOf(QualityNote::kBelowZero));
  EXPECT_EQ(vsx["larger_is_better"], true);
  EXPECT_EQ(vsx["definition"], RowOf(M::kVsx).definition);
  EXPECT_NE(json["metrics"][1].dump().find("\"value\":null"), std::string::npos);
}

TEST(QualityReport, FactsHaveOnlyNumbers) {
  const nlohmann::ordered_json facts = QualityFactsJson(Example());
  EXPECT_EQ(facts["VSX"], -0.125);
  EXPECT_FALSE(facts.contains("D50"));
}

}  // namespace
}  // namespace orvanel::cli
