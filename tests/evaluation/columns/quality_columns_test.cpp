// Tests values, missing values and notes of metrics of image quality as columns.
#include "evaluation/columns/quality_columns.h"

#include <gtest/gtest.h>

#include <cmath>

#include "metrics/quality_names.h"
#include "models/model.h"

namespace orvanel::evaluation {
namespace {

using M = QualityMetric;

Eye WithModes(const Coefficients& osa, double pupil = 3.0) {
  Eye eye;
  eye.pupil = Millimetres(pupil);
  eye.coefficients.Replace(osa);
  return eye;
}

QualityRequest RequestOf(const char* names) {
  QualityRequest request;
  request.metrics = QualityMetricsNamed(names);
  return request;
}

ColumnValues ColumnsOf(const Eye& eye, const QualityRequest& request) {
  QualityEvaluator evaluator(ModelRequest().physical, request);
  ColumnValues columns;
  AddQualityColumns(evaluator, eye, columns);
  return columns;
}

const Eye kEye = WithModes({0.0, 0.0, 0.0, 0.03, 0.02, -0.05, 0.01, 0.04, -0.02});
// Of 75 waves: too steep for the image of a point.
const Eye kSteep = WithModes({0.0, 0.0, 0.0, 0.0, 400.0});

TEST(QualityColumns, AValueDoesNotDependOnTheOtherMetrics) {
  const QualityRequest all = RequestOf("all");
  const std::vector<double> together = ColumnsOf(kEye, all).values();
  ASSERT_EQ(together.size(), kQualityMetrics);
  ASSERT_EQ(QualityColumnNames(all).size(), kQualityMetrics);
  for (std::size_t i = 0; i < together.size(); ++i) {
    const QualityRequest one = RequestOf(RowOf(all.metrics[i]).name);
    EXPECT_EQ(ColumnsOf(kEye, one).values().at(0), together[i]) << RowOf(all.metrics[i]).name;
  }
}

TEST(QualityColumns, OfATooSteepWavefrontOnlyThoseOfTheImageAreMissing) {
  const ColumnValues columns = ColumnsOf(kSteep, RequestOf("RMSw,VSX,SRX"));
  ASSERT_EQ(columns.values().size(), 3U);
  EXPECT_NEAR(columns.values()[0], 400.0, 1e-9);
  EXPECT_TRUE(std::isnan(columns.values()[1]));
  EXPECT_TRUE(std::isnan(columns.values()[2]));
  EXPECT_EQ(columns.Notes(),
            "VSX, SRX: the wavefront is too steep to be computed within the stated error; check the unit of the "
            "coefficients");
}

TEST(QualityColumns, NotesNameTheMetrics) {
  QualityRequest request = RequestOf("VSX,SRX,VSOTF");
  request.origin = QualityOrigin::kPeak;
  // 0.25 D over 4 mm has its maximum on a ring.
  const double c4 = 0.25 * 4.0 / (4.0 * std::sqrt(3.0));
  const ColumnValues columns = ColumnsOf(WithModes({0.0, 0.0, 0.0, 0.0, c4}, 4.0), request);
  EXPECT_EQ(columns.Notes(), "VSX, VSOTF: " + TextOf(QualityNote::kPlaceNotUnique));
}

TEST(QualityColumns, OtherRefusalsAreErrorsOfTheEye) {
  QualityEvaluator evaluator(ModelRequest().physical, RequestOf("VSX"));
  ColumnValues columns;
  EXPECT_THROW(AddQualityColumns(evaluator, WithModes({0.0}, 15.0), columns), PhysicalRefusal);
}

TEST(QualityColumns, AValueWithoutANumberAndWithoutANoteIsExplained) {
  ColumnValues columns;
  AddQuality({M::kVsx, std::nan("")}, "VSX", columns);
  AddQuality({M::kVsx, 0.5}, "VSX", columns);
  EXPECT_TRUE(std::isnan(columns.values().at(0)));
  EXPECT_EQ(columns.Notes(), "VSX: there is no value");
}

}  // namespace
}  // namespace orvanel::evaluation
