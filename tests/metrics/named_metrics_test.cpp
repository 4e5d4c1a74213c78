// Tests lists of metrics of both tables.
#include "metrics/named_metrics.h"

#include <gtest/gtest.h>

#include <string>

#include "metrics/errors.h"
#include "metrics/quality_names.h"

namespace orvanel::metrics {
namespace {

using M = QualityMetric;

TEST(NamedMetrics, BothTablesHaveOneNameSpace) {
  const NamedMetrics named = AnyMetricsNamed("rms,vsx,refraction,D50,VSX,rms", ModelKind::kPhysical);
  ASSERT_EQ(named.table.size(), 2U);
  EXPECT_STREQ(named.table[0]->word, "rms");
  EXPECT_STREQ(named.table[1]->word, "refraction");
  EXPECT_EQ(named.quality, (std::vector<M>{M::kVsx, M::kD50}));
}

TEST(NamedMetrics, NoNameIsInBothTables) {
  for (const Metric& metric : Metrics()) EXPECT_FALSE(QualityMetricNamed(metric.word)) << metric.word;
  EXPECT_FALSE(QualityMetricNamed("all"));
  for (const ModelKind model : {ModelKind::kClassic, ModelKind::kPhysical}) {
    EXPECT_EQ(MetricNamed("all", model), nullptr);
  }
}

TEST(NamedMetrics, AllAreThoseOfTheModel) {
  const NamedMetrics physical = AnyMetricsNamed("all", ModelKind::kPhysical);
  EXPECT_EQ(physical.quality.size(), kQualityMetrics);
  for (const Metric* const metric : physical.table) EXPECT_TRUE(IsFor(*metric, ModelKind::kPhysical));
  const NamedMetrics classic = AnyMetricsNamed("strehl,all", ModelKind::kClassic);
  EXPECT_TRUE(classic.quality.empty());
  EXPECT_STREQ(classic.table[0]->word, "strehl");
  std::size_t count = 0;
  for (const Metric& metric : Metrics()) count += IsFor(metric, ModelKind::kClassic) ? 1U : 0U;
  EXPECT_EQ(classic.table.size(), count);
}

TEST(NamedMetrics, AnUnknownNameListsBothTablesAndThoseThatAreNear) {
  try {
    AnyMetricsNamed("rms,VSO", ModelKind::kPhysical);
    FAIL();
  } catch (const UnknownMetric& error) {
    EXPECT_EQ(error.wanted, "VSO");
    EXPECT_EQ(error.near, "VSX, VSOTF");
    EXPECT_EQ(error.known, MetricWords(ModelKind::kPhysical) + ", " + QualityMetricNames() + ", all");
  }
  EXPECT_THROW(AnyMetricsNamed("", ModelKind::kPhysical), UnknownMetric);
  EXPECT_THROW(AnyMetricsNamed("VSX,,rms", ModelKind::kPhysical), UnknownMetric);
}

TEST(NamedMetrics, TheClassicModelHasNoneOfImageQuality) {
  try {
    AnyMetricsNamed("strehl,vsx", ModelKind::kClassic);
    FAIL();
  } catch (const MetricOfPhysicalModel& error) {
    EXPECT_EQ(error.wanted, "vsx");
    EXPECT_STREQ(error.what(), "the classic model has no metric 'vsx'; choose the physical model");
  }
}

}  // namespace
}  // namespace orvanel::metrics
