// Tests that the report has each lens with its value, and says what has none.
#include "cli/correction_report.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "evaluation/evaluator.h"
#include "tests/eye/eyes.h"

namespace orvanel::cli {
namespace {

using Json = nlohmann::ordered_json;

LensValue Behind(double sphere, double cylinder, double axis, double value, QualityMetric metric) {
  LensValue lens;
  lens.lens.power = {Dioptres(sphere), Dioptres(cylinder), Degrees(axis)};
  lens.quality.metric = metric;
  lens.quality.value = value;
  return lens;
}

CorrectedEye Example(QualityMetric metric = QualityMetric::kVsx) {
  CorrectedEye corrected;
  corrected.measured = corrected.eye = AsymmetricEye();
  corrected.conditions = Evaluator({ModelKind::kPhysical, {}}).Evaluate(corrected.eye, {});
  corrected.metric.metrics = {metric};
  Correction& c = corrected.correction;
  c.none = Behind(0.0, 0.0, 180.0, 0.1, metric);
  c.best = Behind(-0.61, -0.38, 33.4, 0.5, metric);
  c.inCase = Behind(-0.5, -0.5, 35.0, 0.45, metric);
  c.leastSquares = Behind(-0.9, -0.1, 20.0, 0.3, metric);
  c.paraxial = Behind(-0.2, -0.6, 61.0, 0.35, metric);
  c.evaluations = 123;
  c.converged = true;
  return corrected;
}

TEST(CorrectionReport, HasEachLensWithItsValue) {
  const std::string text = CorrectionText(Example());
  for (const char* const part :
       {"No lens         plano              0.1\n", "Best lens       -0.61/-0.38x33     0.5\n",
        "-0.50/-0.50x35     0.45  in steps of 0.25 D and 5 degrees", "-0.90/-0.10x20     0.3\n",
        "-0.20/-0.60x61     0.35\n", "123 lenses tried, converged", "origin best"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << text;
  }
  // log10 of 5 and of 4.5, in steps of 0.049.
  EXPECT_NE(text.find("14.3 and 13.3 just noticeable differences"), std::string::npos) << text;
  // (log10 0.5 + 0.31) / -2.98 and so on; log10 0.1 is below -0.9.
  EXPECT_NE(text.find("without a lens: none, since log10 VSX is below -0.9"), std::string::npos) << text;
  EXPECT_NE(text.find("with that of the trial case: 0.01 logMAR"), std::string::npos) << text;
}

TEST(CorrectionReport, GivesNoAcuityForOtherMetrics) {
  const std::string text = CorrectionText(Example(QualityMetric::kSrx));
  EXPECT_EQ(text.find("logMAR"), std::string::npos);
  EXPECT_EQ(text.find("noticeable"), std::string::npos);
  EXPECT_NE(text.find("not estimated"), std::string::npos);
}

TEST(CorrectionReport, SaysWhichValueIsNotToBeTrusted) {
  CorrectedEye corrected = Example();
  corrected.correction.none.quality.value = std::numeric_limits<double>::quiet_NaN();
  corrected.correction.paraxial.quality.note = QualityNote::kPlaceNotUnique;
  const std::string text = CorrectionText(corrected);
  EXPECT_NE(text.find("not computed: the wavefront is too steep"), std::string::npos) << text;
  EXPECT_NE(text.find("0.35 (place-not-unique)"), std::string::npos) << text;
  EXPECT_NE(text.find("Notes           place-not-unique: "), std::string::npos) << text;
  const Json json = Json::parse(CorrectionJson(corrected));
  EXPECT_TRUE(json["lenses"]["none"]["value"].is_null());
  EXPECT_EQ(json["lenses"]["paraxial"]["note"], "place-not-unique");
  EXPECT_EQ(json["lenses"]["best"]["sphere_d"], -0.61);
  EXPECT_TRUE(json["noticeable_differences"]["best"].is_null());
}

}  // namespace
}  // namespace orvanel::cli
