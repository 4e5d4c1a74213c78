// Estimates of acuity at the ends of the regression and between them.
#include "metrics/acuity_estimate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orvanel::metrics {
namespace {

QualityValue Vsx(double value) {
  QualityValue quality;
  quality.metric = QualityMetric::kVsx;
  quality.value = value;
  return quality;
}

TEST(AcuityEstimate, InvertsTheRegression) {
  for (const double logMar : {-0.1, 0.0, 0.19}) {
    const auto acuity = AcuityFrom(Vsx(std::pow(10.0, -2.98 * logMar - 0.31)));
    ASSERT_TRUE(std::holds_alternative<double>(acuity)) << logMar;
    EXPECT_NEAR(std::get<double>(acuity), logMar, 1e-12);
  }
}

TEST(AcuityEstimate, SaysWhyThereIsNone) {
  const auto reason = [](const QualityValue& value) { return std::get<NoAcuity>(AcuityFrom(value)); };
  EXPECT_EQ(reason(Vsx(std::pow(10.0, -0.9001))), NoAcuity::kTooLow);
  EXPECT_TRUE(std::holds_alternative<double>(AcuityFrom(Vsx(std::pow(10.0, -0.8999)))));
  EXPECT_TRUE(std::holds_alternative<double>(AcuityFrom(Vsx(1.0))));
  EXPECT_EQ(reason(Vsx(1.0001)), NoAcuity::kTooHigh);
  EXPECT_EQ(reason(Vsx(0.0)), NoAcuity::kNotAboveZero);
  EXPECT_EQ(reason(Vsx(-0.2)), NoAcuity::kNotAboveZero);
  EXPECT_EQ(reason(Vsx(std::numeric_limits<double>::quiet_NaN())), NoAcuity::kNotAboveZero);
  QualityValue other = Vsx(0.5);
  other.metric = QualityMetric::kSrx;
  EXPECT_EQ(reason(other), NoAcuity::kOtherMetric);
  other.metric = QualityMetric::kVsOtf;
  EXPECT_TRUE(std::holds_alternative<double>(AcuityFrom(other)));
}

TEST(AcuityEstimate, CountsNoticeableDifferences) {
  EXPECT_NEAR(*NoticeableDifferences(Vsx(0.2), Vsx(0.2 * std::pow(10.0, 0.098))), 2.0, 1e-12);
  EXPECT_NEAR(*NoticeableDifferences(Vsx(0.2), Vsx(0.2 * std::pow(10.0, -0.049))), -1.0, 1e-12);
  EXPECT_FALSE(NoticeableDifferences(Vsx(-0.1), Vsx(0.5)));
  QualityValue other = Vsx(0.5);
  other.metric = QualityMetric::kRmsW;
  EXPECT_FALSE(NoticeableDifferences(other, other));
}

}  // namespace
}  // namespace orvanel::metrics
