// The table of metrics is complete, in order and well formed.
#include "metrics/quality/catalogue.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace orvanel::metrics {
namespace {

TEST(QualityCatalogue, HasEveryMetricAtItsPlace) {
  ASSERT_EQ(QualityCatalogue().size(), 31u);
  for (std::size_t i = 0; i < kQualityMetrics; ++i) {
    EXPECT_EQ(static_cast<std::size_t>(QualityCatalogue()[i].metric), i);
    EXPECT_EQ(&RowOf(static_cast<QualityMetric>(i)), &QualityCatalogue()[i]);
  }
}

TEST(QualityCatalogue, DefinesEachMetricInASentence) {
  std::set<std::string> names;
  for (const QualityRow& row : QualityCatalogue()) {
    const std::string definition = row.definition;
    EXPECT_TRUE(names.insert(row.name).second) << row.name;
    EXPECT_EQ(definition.back(), '.') << row.name;
    EXPECT_NE(std::string(row.source), "") << row.name;
    EXPECT_EQ(std::string(row.unit) == "1", row.isRatio) << row.name;
    EXPECT_GT(row.error, 0.0) << row.name;
  }
}

TEST(QualityCatalogue, CountsTenElevenAndTenByPlane) {
  int planes[3] = {};
  for (const QualityRow& row : QualityCatalogue()) ++planes[static_cast<int>(row.plane)];
  EXPECT_EQ(planes[0], 10);
  EXPECT_EQ(planes[1], 11);
  EXPECT_EQ(planes[2], 10);
}

TEST(QualityCatalogue, FindsNamesInAnyLetterCase) {
  EXPECT_EQ(QualityMetricNamed("vsotf"), QualityMetric::kVsOtf);
  EXPECT_EQ(QualityMetricNamed("D50"), QualityMetric::kD50);
  EXPECT_EQ(QualityMetricNamed("VSOT"), std::nullopt);
  EXPECT_EQ(QualityMetricNamed(""), std::nullopt);
}

}  // namespace
}  // namespace orvanel::metrics
