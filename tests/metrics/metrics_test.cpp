// Names, columns and costs of the metrics.
#include "metrics/metrics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "base/error.h"
#include "eye/refraction.h"

namespace orvanel::metrics {
namespace {

TEST(Metrics, AreChosenByName) {
  const auto chosen = MetricsNamed("rms,strehl,rms");
  ASSERT_EQ(chosen.size(), 2U);
  EXPECT_STREQ(chosen[0]->word, "rms");
  EXPECT_THROW(MetricsNamed("rms,"), Error);
  EXPECT_THROW(MetricsNamed("strehls"), Error);
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
  const auto cost = [](const char* list) { return CostOf({MetricsNamed(list), {}, {}}); };
  EXPECT_EQ(cost("rms,half_width,frequency_range,refraction,paraxial,power_vector,pupil,rms_orders"),
            Cost::kCoefficients);
  EXPECT_EQ(cost("rms,strehl"), Cost::kStrehl);
  EXPECT_EQ(cost("strehl_peak,strehl"), Cost::kPsf);
  EXPECT_EQ(cost("strehl,mtf_area"), Cost::kMtf);
  EXPECT_EQ(CostOf({{}, {CyclesPerDegree(3)}, {}}), Cost::kMtf);
  EXPECT_EQ(CostOf({{}, {}, {0.5}}), Cost::kCoefficients);
}

TEST(Metrics, TheUndersampledShareIsAddedOnce) {
  MetricChoice choice{MetricsNamed("rms,strehl"), {}, {}};
  AddUndersampled(choice);
  AddUndersampled(choice);
  ASSERT_EQ(choice.metrics.size(), 3U);
  const std::vector<std::string> columns = Columns(choice);
  EXPECT_EQ(columns[columns.size() - 2], "undersampled");
  EXPECT_EQ(CostOf({MetricsNamed("undersampled"), {}, {}}), Cost::kWavefront);
  const std::vector<const Metric*> usual = UsualMetrics(true);
  EXPECT_EQ(std::count(usual.begin(), usual.end(), choice.metrics.back()), 1);
}

TEST(Metrics, ZeroHasNoSign) {
  Eye perfect;
  perfect.pupil = Millimetres(4.5);
  MeasuredEye eye;
  eye.eye = &perfect;
  eye.osa = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
  eye.strehl = -0.0;
  // The refraction of this wavefront is computed as -0.
  EXPECT_TRUE(std::signbit(LeastSquaresRefraction(eye.osa, perfect.pupil).m.value()));
  const MetricChoice choice{MetricsNamed("strehl,rms,rms_orders,refraction,paraxial,power_vector"), {}, {}};
  const std::vector<std::string> columns = Columns(choice);
  const std::vector<double> values = Values(choice, eye);
  ASSERT_EQ(values.size(), columns.size());
  for (std::size_t i = 0; i < values.size(); ++i) EXPECT_FALSE(std::signbit(values[i])) << columns[i];
}

TEST(Metrics, WhatIsNoNumberIsAnError) {
  MeasuredEye eye;
  eye.strehl = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THROW(Values({MetricsNamed("strehl"), {}, {}}, eye), Error);
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
