// Tests the names of metrics of image quality: lists, names that are near, and the words of choices.
#include "metrics/quality_names.h"

#include <gtest/gtest.h>

#include <set>

#include "base/error.h"
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

TEST(QualityNames, AListMayHaveFrequenciesOfTheMtf) {
  QualityRequest request;
  NameMetrics("mtf@10,VSX,MTF@2.5,rmsw,MTF@10.0", request);
  EXPECT_EQ(request.metrics, (std::vector<M>{M::kVsx, M::kRmsW}));
  EXPECT_EQ(request.mtfAtCpd, (std::vector<double>{10.0, 2.5}));
  const std::vector<QualityColumn> columns = ColumnsOf(request);
  ASSERT_EQ(columns.size(), 4U);
  EXPECT_EQ(columns[0].name, "VSX");
  EXPECT_EQ(columns[1].name, "RMSw");
  EXPECT_STREQ(columns[1].unit, "um");
  EXPECT_FALSE(columns[1].higherIsBetter);
  EXPECT_EQ(columns[2].name, "MTF@10");
  EXPECT_EQ(columns[3].name, "MTF@2.5");
  EXPECT_TRUE(columns[3].higherIsBetter);
  NameMetrics("MTF@7", request);
  EXPECT_TRUE(request.metrics.empty());
  EXPECT_EQ(request.mtfAtCpd, std::vector<double>{7.0});
  NameMetrics("PFWt,ENT", request);
  EXPECT_TRUE(request.mtfAtCpd.empty());
  EXPECT_FALSE(ColumnsOf(request)[0].isSmooth);
  EXPECT_TRUE(ColumnsOf(request)[0].hasZero);
  EXPECT_FALSE(ColumnsOf(request)[1].hasZero);
}

TEST(QualityNames, AListRefusesFrequenciesThatAreNone) {
  QualityRequest request;
  for (const char* const list : {"MTF@", "MTF@0", "MTF@-3", "VSX,MTF@ten"}) {
    EXPECT_THROW(NameMetrics(list, request), Error) << list;
  }
  EXPECT_THROW(NameMetrics("", request), UnknownMetric);
  EXPECT_THROW(NameMetrics("MTF@10,", request), UnknownMetric);
  EXPECT_THROW(NameMetrics("MTF", request), UnknownMetric);
}

TEST(QualityNames, ValuesAreInTheOrderOfTheColumns) {
  Quality quality;
  quality.values = {{M::kVsx, 0.25}, {M::kSrx, 0.5}};
  quality.mtf = {{10.0, 0.75, 1e-5}};
  EXPECT_EQ(ValuesOf(quality), (std::vector<double>{0.25, 0.5, 0.75}));
}

TEST(QualityNames, AColumnNamesWhatItsValuesDependOn) {
  QualityRequest request;
  const auto name = [&request](M metric) { return ColumnNameOf(metric, request); };
  EXPECT_EQ(name(M::kVsx), "VSX_origin_best_reference_same_light_physical");
  EXPECT_EQ(name(M::kRmsW), "RMSw_um_physical");
  EXPECT_EQ(name(M::kBave), "Bave_d_physical");
  EXPECT_EQ(name(M::kPfCt), "PFCt_physical");
  EXPECT_EQ(name(M::kSfcMtf), "SFcMTF_cpd_physical");
  EXPECT_EQ(name(M::kD50), "D50_arcmin_origin_best_physical");
  EXPECT_EQ(name(M::kLib), "LIB_origin_best_physical");
  EXPECT_EQ(name(M::kVotf), "VOTF_origin_best_physical");
  EXPECT_EQ(name(M::kNs), "NS_sd_1_arcmin_origin_best_reference_same_light_physical");
  request.origin = QualityOrigin::kPeak;
  request.reference = QualityReference::kMonochromatic;
  request.gaussianSdArcmin = 0.75;
  int wrong = 0;
  request.contrast = *ContrastSensitivity::Of({{0.0, 10.0}, {30.0, 1.0}}, wrong);
  EXPECT_EQ(name(M::kNs), "NS_sd_0.75_arcmin_origin_peak_reference_monochromatic_physical");
  EXPECT_EQ(name(M::kVsMtf), "VSMTF_own_csf_reference_monochromatic_physical");
  EXPECT_EQ(name(M::kSrx), "SRX_reference_monochromatic_physical");
  std::set<std::string> names;
  for (const QualityRow& row : QualityCatalogue()) names.insert(name(row.metric));
  EXPECT_EQ(names.size(), kQualityMetrics);
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
