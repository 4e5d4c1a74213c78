// What metrics need of the light.
#include "metrics/quality/light_sums.h"

#include <gtest/gtest.h>

namespace orvanel::metrics {
namespace {

using M = QualityMetric;

const std::vector<M> kVsx = {M::kVsx}, kSrx = {M::kSrx}, kRmsW = {M::kRmsW}, kStd = {M::kStd}, kSm = {M::kSm};

TEST(LightSums, OfThePupilPlaneNeedNoImage) {
  EXPECT_EQ(NeedsOf(kRmsW, QualityOrigin::kBest), Needs{});
  EXPECT_EQ(NeedsOf(kSm, QualityOrigin::kPeak), Needs{});
}

TEST(LightSums, NeedThePeakWhereItIsTheOrigin) {
  EXPECT_TRUE(NeedsOf(kVsx, QualityOrigin::kPeak).peak);
  EXPECT_FALSE(NeedsOf(kVsx, QualityOrigin::kBest).peak);
  EXPECT_TRUE(NeedsOf(kSrx, QualityOrigin::kBest).peak);
}

TEST(LightSums, WithoutAnOriginDoNotSearchForIt) {
  EXPECT_FALSE(NeedsOf(kStd, QualityOrigin::kBest).origin);
  EXPECT_FALSE(NeedsOf(kSrx, QualityOrigin::kPeak).origin);
  EXPECT_TRUE(NeedsOf(kVsx, QualityOrigin::kAxis).origin);
}

TEST(LightSums, OfSeveralMetricsNeedWhatEachNeeds) {
  const std::vector<M> both = {M::kVsx, M::kStd};
  EXPECT_EQ(NeedsOf(both, QualityOrigin::kBest),
            NeedsOf(kVsx, QualityOrigin::kBest) | NeedsOf(kStd, QualityOrigin::kBest));
}

}  // namespace
}  // namespace orvanel::metrics
