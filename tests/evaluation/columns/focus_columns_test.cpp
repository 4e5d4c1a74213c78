// Tests columns through focus of eyes whose best focus follows from their construction.
#include "evaluation/columns/focus_columns.h"

#include <gtest/gtest.h>

#include <cmath>

#include "evaluation/through_focus.h"
#include "eye/adjustments.h"
#include "metrics/quality_names.h"
#include "models/adapters/physical_refusal.h"
#include "models/model.h"

namespace orvanel::evaluation {
namespace {

QualityRequest RequestOf(const char* list) {
  QualityRequest request;
  NameMetrics(list, request);
  return request;
}

Eye WithRefractiveError(double sphere, double pupil = 3.0) {
  Eye eye;
  eye.pupil = Millimetres(pupil);
  Adjustments adjustments;
  adjustments.refraction = {Dioptres(sphere), Dioptres(0.0), Dioptres(0.0)};
  return Adjusted(eye, adjustments);
}

ColumnValues ColumnsOf(const Eye& eye, const QualityRequest& request, const std::vector<double>& lenses) {
  QualityEvaluator evaluator(ModelRequest().physical, request);
  ColumnValues columns;
  AddFocusColumns(evaluator, eye, lenses, columns);
  return columns;
}

TEST(FocusColumns, NameLensValueAndDepths) {
  EXPECT_EQ(
      FocusColumnNames(RequestOf("VSX,MTF@7.5")),
      (std::vector<std::string>{"best_focus_lens_d_by_VSX", "best_focus_VSX_origin_best_reference_same_light_physical",
                                "depth_of_focus_d_at_80_percent_by_VSX", "depth_of_focus_d_at_50_percent_by_VSX",
                                "best_focus_lens_d_by_mtf_mean_over_angle_at_7.5_cpd",
                                "best_focus_mtf_mean_over_angle_at_7.5_cpd_physical",
                                "depth_of_focus_d_at_80_percent_by_mtf_mean_over_angle_at_7.5_cpd",
                                "depth_of_focus_d_at_50_percent_by_mtf_mean_over_angle_at_7.5_cpd"}));
}

TEST(FocusColumns, OfASphereAloneAreItsLensAndTheWidthOfItsPeak) {
  const ColumnValues columns = ColumnsOf(WithRefractiveError(-0.5), RequestOf("SRX"), LensesOfRange("-0.8:-0.2:0.05"));
  ASSERT_EQ(columns.values().size(), 4U);
  EXPECT_NEAR(columns.values()[0], -0.5, 1e-9);
  EXPECT_NEAR(columns.values()[1], 1.0, 1e-6);
  // Of pure defocus, SRX is sinc^2 of the phase at the rim over 2 pi: 0.8 at 0.2575 and 0.5 at 0.4429 turns. A dioptre
  // is r^2 / 2 um, 2.027 waves of 555 nm for r = 1.5 mm.
  constexpr double kWavesPerDioptre = 1.5 * 1.5 / 2.0 / 0.555;
  EXPECT_NEAR(columns.values()[2], 2.0 * 0.2575 / kWavesPerDioptre, 0.002);
  EXPECT_NEAR(columns.values()[3], 2.0 * 0.4429 / kWavesPerDioptre, 0.002);
  EXPECT_EQ(columns.Notes(), "");
}

TEST(FocusColumns, ADepthThatReachesTheEndOfTheRangeIsMissingAndNoted) {
  const ColumnValues columns = ColumnsOf(WithRefractiveError(-0.5), RequestOf("VSX"), {-0.5, -0.25, 0.0, 0.25, 0.5});
  ASSERT_EQ(columns.values().size(), 4U);
  EXPECT_EQ(columns.values()[0], -0.5);
  EXPECT_NEAR(columns.values()[1], 1.0, 1e-4);
  EXPECT_TRUE(std::isnan(columns.values()[2]));
  EXPECT_TRUE(std::isnan(columns.values()[3]));
  EXPECT_NE(columns.Notes().find("through focus: VSX is best with the last lens that has a value, -0.5 D"),
            std::string::npos)
      << columns.Notes();
  EXPECT_FALSE(columns.Notes().ends_with("."));
}

TEST(FocusColumns, OfAWavefrontThatIsTooSteepAreMissing) {
  Eye eye;
  eye.pupil = Millimetres(3.0);
  Coefficients modes(13);
  modes[12] = 400.0;
  eye.coefficients.Replace(modes);
  const ColumnValues columns = ColumnsOf(eye, RequestOf("VSX,SRX"), {-1.0, 0.0, 1.0});
  ASSERT_EQ(columns.values().size(), 8U);
  for (const double value : columns.values()) EXPECT_TRUE(std::isnan(value));
  EXPECT_TRUE(columns.Notes().starts_with("through focus: the wavefront is too steep")) << columns.Notes();
}

}  // namespace
}  // namespace orvanel::evaluation
