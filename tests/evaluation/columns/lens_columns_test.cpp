// Tests columns of the best lens for eyes whose lens follows from their construction.
#include "evaluation/columns/lens_columns.h"

#include <gtest/gtest.h>

#include <cmath>

#include "eye/adjustments.h"
#include "metrics/quality_names.h"
#include "models/adapters/physical_refusal.h"
#include "models/model.h"

namespace orvanel::evaluation {
namespace {

constexpr std::size_t kColumns = 9;

QualityRequest RequestOf(const char* metric) {
  QualityRequest request;
  request.metrics = QualityMetricsNamed(metric);
  return request;
}

Eye WithRefractiveError(const Refraction& refraction) {
  Eye eye;
  eye.pupil = Millimetres(3.0);
  Adjustments adjustments;
  adjustments.refraction = ToPowerVector(refraction);
  return Adjusted(eye, adjustments);
}

ColumnValues ColumnsOf(const Eye& eye, const CorrectionRequest& request = {}) {
  QualityEvaluator evaluator(ModelRequest().physical, RequestOf("VSX"));
  ColumnValues columns;
  AddLensColumns(evaluator, eye, request, columns);
  return columns;
}

TEST(LensColumns, NameTheLensTheMetricAndItsConditions) {
  const std::vector<std::string> names = LensColumnNames(RequestOf("VSX"));
  EXPECT_EQ(names,
            (std::vector<std::string>{
                "refraction_sphere_d_by_VSX", "refraction_cylinder_d_by_VSX", "refraction_axis_deg_by_VSX",
                "refraction_sphere_d_by_VSX_trial_case", "refraction_cylinder_d_by_VSX_trial_case",
                "refraction_axis_deg_by_VSX_trial_case", "without_lens_VSX_origin_best_reference_same_light_physical",
                "best_lens_VSX_origin_best_reference_same_light_physical",
                "trial_case_VSX_origin_best_reference_same_light_physical"}));
}

TEST(LensColumns, OfARefractiveErrorAloneAreItsLens) {
  const ColumnValues columns = ColumnsOf(WithRefractiveError({Dioptres(-1.5), Dioptres(-0.75), Degrees(35.0)}));
  ASSERT_EQ(columns.values().size(), kColumns);
  EXPECT_NEAR(columns.values()[0], -1.5, 0.02);
  EXPECT_NEAR(columns.values()[1], -0.75, 0.03);
  EXPECT_NEAR(columns.values()[2], 35.0, 1.0);
  EXPECT_EQ(columns.values()[3], -1.5);
  EXPECT_EQ(columns.values()[4], -0.75);
  EXPECT_EQ(columns.values()[5], 35.0);
  EXPECT_LT(columns.values()[6], 0.3);
  EXPECT_NEAR(columns.values()[7], 1.0, 1e-3);
  EXPECT_NEAR(columns.values()[8], 1.0, 1e-4);  // the grid has the lens
  // The PSF is symmetric about its centre. Its maximum is off the centre, so there are two.
  EXPECT_EQ(columns.Notes(), "VSX without a lens: " + TextOf(QualityNote::kPlaceNotUnique));
}

TEST(LensColumns, OfAWavefrontThatIsTooSteepWithEveryLensAreMissing) {
  Eye eye;
  eye.pupil = Millimetres(3.0);
  Coefficients modes(13);
  modes[12] = 400.0;
  eye.coefficients.Replace(modes);
  const ColumnValues columns = ColumnsOf(eye);
  ASSERT_EQ(columns.values().size(), kColumns);
  for (const double value : columns.values()) EXPECT_TRUE(std::isnan(value));
  EXPECT_TRUE(columns.Notes().starts_with("lens by VSX: the wavefront is too steep")) << columns.Notes();
}

TEST(LensColumns, ASearchThatEndsEarlyIsNoted) {
  CorrectionRequest request;
  request.evaluations = 30;
  const ColumnValues columns =
      ColumnsOf(WithRefractiveError({Dioptres(-1.5), Dioptres(-0.75), Degrees(35.0)}), request);
  EXPECT_TRUE(columns.Notes().ends_with("lens by VSX: the search ended before its steps were small enough"))
      << columns.Notes();
}

}  // namespace
}  // namespace orvanel::evaluation
