// Tests the names of metrics of image quality: lists, names that are near, and the words of choices.
#include "metrics/quality_names.h"

#include <gtest/gtest.h>

#include <set>

#include "metrics/errors.h"

namespace orvanel::metrics {
namespace {

using M = QualityMetric;

TEST(QualityNames, AListHasEachMetricOnceInItsOrder) {
  EXPECT_EQ(QualityMetricsNamed("vsotf,SRX,VsX,srx"), (std::vector<M>{M::kVsOtf, M::kSrx, M::kVsx}));
}

TEST(QualityNames, AllAreTheRestOfTheCatalogueInItsOrder) {
  const std::vector<M> metrics = QualityMetricsNamed("VSX,all");
  ASSERT_EQ(metrics.size(), kQualityMetrics);
  EXPECT_EQ(metrics[0], M::kVsx);
  EXPECT_EQ(metrics[1], M::kRmsW);
  EXPECT_EQ(metrics.back(), M::kVnotf);
}

TEST(QualityNames, AnUnknownNameListsThoseThatAreNear) {
  EXPECT_EQ(QualityMetricNamesNear("VSO"), "VSX, VSOTF");
  EXPECT_EQ(QualityMetricNamesNear("srk"), "SRX");
  EXPECT_EQ(QualityMetricNamesNear("sfcmft"), "SFcMTF");
  EXPECT_EQ(QualityMetricNamesNear("p"), "");
  EXPECT_EQ(QualityMetricNamesNear("strehl"), "");
  try {
    QualityMetricsNamed("SRX,VSO");
    FAIL();
  } catch (const UnknownMetric& error) {
    EXPECT_EQ(error.wanted, "VSO");
    EXPECT_EQ(error.near, "VSX, VSOTF");
    EXPECT_EQ(std::string(error.what()),
              "'VSO' is not a metric; names like it are VSX, VSOTF; use one of " + QualityMetricNames() + ", all");
  }
  EXPECT_THROW(QualityMetricsNamed(""), UnknownMetric);
  EXPECT_THROW(QualityMetricsNamed("VSX,,SRX"), UnknownMetric);
}

TEST(QualityNames, EveryChoiceHasItsWord) {
  for (const QualityOrigin origin :
       {QualityOrigin::kAxis, QualityOrigin::kPeak, QualityOrigin::kCentroid, QualityOrigin::kBest}) {
    EXPECT_EQ(QualityOriginNamed(Word(origin)), origin);
  }
  for (const QualityReference reference : {QualityReference::kSameLight, QualityReference::kMonochromatic}) {
    EXPECT_EQ(QualityReferenceNamed(Word(reference)), reference);
  }
  EXPECT_FALSE(QualityOriginNamed("Axis"));
  EXPECT_FALSE(QualityReferenceNamed(""));
  EXPECT_STREQ(Word(QualityNote::kNone), "");
  EXPECT_EQ(TextOf(QualityNote::kNone), "");
  std::set<std::string> words;
  for (const QualityNote note : {QualityNote::kPlaceNotUnique, QualityNote::kBelowZero, QualityNote::kEmptyReference,
                                 QualityNote::kOutsideWindow, QualityNote::kEndOfContrast}) {
    EXPECT_TRUE(words.insert(Word(note)).second && words.insert(TextOf(note)).second) << Word(note);
  }
}

}  // namespace
}  // namespace orvanel::metrics
