// Tests names, columns and needs of the metrics.
#include "metrics/metrics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <set>
#include <string>

#include "base/error.h"
#include "eye/refraction.h"
#include "metrics/errors.h"

namespace orvanel::metrics {
namespace {

TEST(Metrics, AreChosenByName) {
  const auto chosen = MetricsNamed("rms,strehl,rms");
  ASSERT_EQ(chosen.size(), 2U);
  EXPECT_STREQ(chosen[0]->word, "rms");
  EXPECT_THROW(MetricsNamed("rms,"), Error);
  EXPECT_THROW(MetricsNamed("strehls"), Error);
  try {
    MetricsNamed("strehl,foo");
    ADD_FAILURE() << "foo is a metric";
  } catch (const UnknownMetric& error) {
    EXPECT_EQ(error.wanted, "foo");
    EXPECT_EQ(error.known.substr(0, 19), "strehl, strehl_peak");
  }
}

TEST(Metrics, ColumnsNameUnitAndScaleAndAreAllDifferent) {
  MetricChoice choice;
  for (const Metric& metric : Metrics()) choice.metrics.push_back(&metric);
  choice.mtfAt = {CyclesPerDegree(10), CyclesPerDegree(2.5)};
  choice.acuities = {0.5};
  const std::vector<std::string> columns = Columns(choice);
  EXPECT_EQ(std::set<std::string>(columns.begin(), columns.end()).size(), columns.size());
  EXPECT_EQ(columns[0], "strehl_ratio");
  EXPECT_EQ(columns[columns.size() - 5], "mtf_horizontal_at_2.5_cpd_library_scale");
  EXPECT_EQ(columns[columns.size() - 2], "effective_acuity_of_ring_0.5_optical_scale");
  EXPECT_EQ(columns.back(), "implausible");
}

TEST(Metrics, NothingIsComputedThatNobodyAsksFor) {
  const auto needs = [](const char* list) { return NeedsOf({MetricsNamed(list), {}, {}}); };
  EXPECT_TRUE(needs("rms,half_width,frequency_range,refraction,paraxial,power_vector,pupil,rms_orders").empty());
  EXPECT_EQ(needs("rms,strehl"), Needs({Need::kStrehl}));
  EXPECT_EQ(needs("strehl_peak,strehl"), Needs({Need::kStrehl, Need::kStrehlPeak}));
  EXPECT_EQ(needs("strehl,mtf_area"), Needs({Need::kStrehl, Need::kSections}));
  EXPECT_EQ(NeedsOf({{}, {CyclesPerDegree(3)}, {}}), Needs({Need::kLineSpreads}));
  EXPECT_TRUE(NeedsOf({{}, {}, {0.5}}).empty());
}

// The name of a column ends with its unit, or has it before an addition, as "_mm_library_scale".
TEST(Metrics, UnitsAreThoseInTheNamesOfColumns) {
  const std::map<std::string, std::string> parts = {
      {"mm", "_mm"},         {"um", "_um"}, {"D", "_d"}, {"degrees", "_deg"}, {"cycles/degree", "_cpd"},
      {"arcmin", "_arcmin"}, {"nm", "_nm"}};
  for (const Metric& metric : Metrics()) {
    for (const Column& column : metric.columns) {
      const std::string name = std::string(column.name) + "_";
      for (const auto& [unit, part] : parts) {
        EXPECT_EQ(name.find(part + "_") != std::string::npos, unit == column.unit) << name;
      }
      if (!parts.contains(column.unit)) {
        EXPECT_STREQ(column.unit, "1") << name;
      }
    }
  }
}

TEST(Metrics, AColumnOfTheTableHasItsValueByName) {
  Results results;
  results.pupil = Millimetres(4.5);
  results.strehl = 0.25;
  const Coefficients osa = {0.0, 0.0, 0.0, 0.0, 0.3, 0.0, 0.0, 0.4};
  const MetricInput input{results, osa};
  EXPECT_EQ(ValueOf("strehl_ratio", input), 0.25);
  EXPECT_DOUBLE_EQ(ValueOf("rms_um_orders_2_and_above", input), 0.5);
  EXPECT_DOUBLE_EQ(ValueOf("rms_um_orders_3_and_above", input), 0.4);
  EXPECT_THROW(ValueOf("rms", input), UnknownColumn);
}

TEST(Metrics, TheUndersampledShareIsAddedOnce) {
  MetricChoice choice{MetricsNamed("rms,strehl"), {}, {}};
  AddUndersampled(choice);
  AddUndersampled(choice);
  ASSERT_EQ(choice.metrics.size(), 3U);
  const std::vector<std::string> columns = Columns(choice);
  EXPECT_EQ(columns[columns.size() - 2], "undersampled");
  EXPECT_EQ(NeedsOf({MetricsNamed("undersampled"), {}, {}}), Needs({Need::kUndersampled}));
  const std::vector<const Metric*> usual = UsualMetrics(true);
  EXPECT_EQ(std::count(usual.begin(), usual.end(), choice.metrics.back()), 1);
}

TEST(Metrics, ZeroHasNoSign) {
  Results results;
  results.pupil = Millimetres(4.5);
  results.strehl = -0.0;
  const Coefficients osa = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
  // The refraction of this wavefront is computed as -0.
  EXPECT_TRUE(std::signbit(LeastSquaresRefraction(osa, results.pupil).m.value()));
  const MetricChoice choice{MetricsNamed("strehl,rms,rms_orders,refraction,paraxial,power_vector"), {}, {}};
  const std::vector<std::string> columns = Columns(choice);
  const std::vector<double> values = Values(choice, {results, osa});
  ASSERT_EQ(values.size(), columns.size());
  for (std::size_t i = 0; i < values.size(); ++i) EXPECT_FALSE(std::signbit(values[i])) << columns[i];
}

TEST(Metrics, WhatIsNoNumberIsAnError) {
  Results results;
  results.strehl = std::numeric_limits<double>::quiet_NaN();
  try {
    Values({MetricsNamed("rms,strehl"), {}, {}}, {results, {}});
    ADD_FAILURE() << "not a number is a value";
  } catch (const ValueNotFinite& error) {
    EXPECT_EQ(error.column, "strehl_ratio");
  }
}

TEST(Metrics, WhatIsTheSameInAllRowsIsLeftOutUnlessAskedFor) {
  const auto words = [](const std::vector<const Metric*>& metrics) {
    std::set<std::string> set;
    for (const Metric* const metric : metrics) set.insert(metric->word);
    return set;
  };
  std::set<std::string> expected = words(UsualMetrics(false));
  EXPECT_EQ(expected.erase("half_width"), 1U);
  EXPECT_EQ(expected.erase("frequency_range"), 1U);
  EXPECT_EQ(words(UsualMetrics(true)), expected);
  EXPECT_TRUE(expected.contains("strehl"));
}

}  // namespace
}  // namespace orvanel::metrics
