// Tests the texts of metrics and of the conditions that they depend on.
#include "evaluation/quality_notes.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvanel::evaluation {
namespace {

using M = QualityMetric;
using Texts = std::vector<std::string>;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(QualityNotes, AValueHasUnitLimitAndError) {
  const QualityText ratio = TextOf({M::kVsx, 0.123456, 1.0, 1e-4});
  EXPECT_EQ(ratio.name, "VSX");
  EXPECT_EQ(ratio.value, "0.1235");
  EXPECT_EQ(ratio.limit, "1");
  EXPECT_EQ(ratio.error, "0.0001");
  EXPECT_EQ(ratio.note, "");
  const QualityText width = TextOf({M::kD50, 4.31872, 0.33214, 0.0129});
  EXPECT_EQ(width.value, "4.319 arcmin");
  EXPECT_EQ(width.limit, "0.3321 arcmin");
  EXPECT_EQ(width.error, "0.01 arcmin");
}

TEST(QualityNotes, TheMtfFollowsTheMetrics) {
  Quality quality;
  quality.values = {{M::kVsx, 0.123456, 1.0, 1e-4}};
  quality.mtf = {{12.5, 0.654321, 1e-5}};
  const std::vector<QualityText> texts = TextsOf(quality);
  ASSERT_EQ(texts.size(), 2U);
  EXPECT_EQ(texts[0].name, "VSX");
  EXPECT_EQ(texts[1].name, "MTF@12.5");
  EXPECT_EQ(texts[1].value, "0.6543");
  EXPECT_EQ(texts[1].error, "1e-05");
}

TEST(QualityNotes, WhatIsNoNumberIsUnknown) {
  const QualityText text = TextOf({M::kD50, kNan, kNan, kNan, QualityNote::kOutsideWindow});
  EXPECT_EQ(text.value, "unknown");
  EXPECT_EQ(text.limit, "");
  EXPECT_EQ(text.error, "");
  EXPECT_EQ(text.note, "more than half of the light is farther away than the computation reaches");
}

TEST(QualityNotes, OnlyConditionsThatCountAreStated) {
  Quality quality;
  quality.origin = QualityOrigin::kPeak;
  quality.originX = 1.25;
  quality.originY = -1e-9;
  const auto of = [&quality](std::vector<M> metrics) {
    QualityRequest request;
    request.metrics = std::move(metrics);
    return QualityConditions(quality, request);
  };
  const std::string origin = "Origin of the metrics: peak, at x 1.25, y 0 arc minutes in the view of the patient.";
  const std::string reference = "Ratios are to the pupil without aberration in the same light (same-light).";
  EXPECT_EQ(of({M::kRmsW, M::kPfWc, M::kEw}), Texts());
  EXPECT_EQ(of({M::kD50}), Texts({origin}));
  EXPECT_EQ(of({M::kSrx}), Texts({reference}));
  EXPECT_EQ(of({M::kVsx}), Texts({origin, reference, "Contrast sensitivity: Campbell and Green (1965)."}));
  EXPECT_EQ(of({M::kNs}), Texts({origin, reference, "Standard deviation of the Gaussian of NS, in arc minutes: 1."}));
  quality.reference = QualityReference::kMonochromatic;
  EXPECT_EQ(of({M::kSrx}),
            Texts({"Ratios are to the pupil without aberration at the reference wavelength (monochromatic)."}));
  int wrong = 0;
  QualityRequest own;
  own.metrics = {M::kVsMtf};
  own.contrast = *ContrastSensitivity::Of({{1.0, 10.0}, {20.0, 3.0}}, wrong);
  EXPECT_EQ(QualityConditions(quality, own).back(), "Contrast sensitivity: a table of the user.");
}

TEST(QualityNotes, ConditionsOfSeveralEyesHaveNoPlace) {
  QualityRequest request;
  request.metrics = {M::kVsx};
  request.origin = QualityOrigin::kCentroid;
  request.reference = QualityReference::kMonochromatic;
  EXPECT_EQ(QualityConditions(request),
            Texts({"Origin of the metrics: centroid, found for each image.",
                   "Ratios are to the pupil without aberration at the reference wavelength (monochromatic).",
                   "Contrast sensitivity: Campbell and Green (1965)."}));
}

}  // namespace
}  // namespace orvanel::evaluation
