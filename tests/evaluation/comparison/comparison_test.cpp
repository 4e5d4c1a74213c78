// Tests the differences of two eyes by closed forms, and what eyes do not have in common.
#include "evaluation/comparison/comparison.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/error.h"
#include "evaluation/quality_evaluator.h"
#include "metrics/quality_names.h"
#include "tests/eye/eyes.h"

namespace orvanel::evaluation {
namespace {

Eye WithModes(const Coefficients& osa) {
  Eye eye;
  eye.pupil = Millimetres(3.0);
  eye.coefficients.Replace(osa);
  return eye;
}

ComparisonRequest Usual(const char* metrics) {
  ComparisonRequest request;
  NameMetrics(metrics, request.metrics);
  return request;
}

Comparison ComparisonOf(const Eye& a, const Eye& b, const ComparisonRequest& request = Usual("RMSw,MTF@10,VSX")) {
  return Compared(Viewed(a, request), Viewed(b, request));
}

bool Says(const Comparison& comparison, const char* words) {
  return std::any_of(comparison.notes.begin(), comparison.notes.end(),
                     [words](const std::string& note) { return note.find(words) != std::string::npos; });
}

const Eye kBefore = WithModes({0.0, 0.1, 0.0, 0.03, 0.3, 0.0, 0.0, -0.04});
const Eye kAfter = WithModes({0.0, 0.0, 0.0, 0.03, 0.1, 0.0, 0.0, 0.02});

TEST(Comparison, DifferencesAreOfTheSecondEyeLessTheFirst) {
  const Comparison comparison = ComparisonOf(kBefore, kAfter);
  // A um of defocus is 4 root 3 / r^2 dioptres, to be corrected by a minus lens.
  const double dioptres = -4.0 * std::numbers::sqrt3 / (1.5 * 1.5);
  ASSERT_EQ(comparison.refractions.size(), 3U);
  EXPECT_EQ(comparison.refractions[0].name, "M");
  EXPECT_NEAR(comparison.refractions[0].a, 0.3 * dioptres, 1e-12);
  EXPECT_NEAR(comparison.refractions[0].b, 0.1 * dioptres, 1e-12);
  EXPECT_NEAR(comparison.refractions[0].difference, -0.2 * dioptres, 1e-12);
  EXPECT_NEAR(comparison.refractions[2].difference, 0.0, 1e-12);
  ASSERT_EQ(comparison.rms.size(), 2U);
  EXPECT_NEAR(comparison.rms[0].a, std::sqrt(0.03 * 0.03 + 0.3 * 0.3 + 0.04 * 0.04), 1e-15);
  EXPECT_NEAR(comparison.rms[1].difference, 0.02 - 0.04, 1e-15);
  // The RMS of the difference is not the difference of the RMS.
  EXPECT_NEAR(comparison.differenceRms->value(), std::sqrt(0.2 * 0.2 + 0.06 * 0.06), 1e-15);
  EXPECT_NEAR(comparison.higherDifferenceRms->value(), 0.06, 1e-15);
}

TEST(Comparison, CoefficientsThatAreZeroInBothEyesAreLeftOut) {
  const Comparison comparison = ComparisonOf(kBefore, kAfter);
  std::string names;
  for (const ComparedNumber& pair : comparison.coefficients) names += pair.name + " ";
  EXPECT_EQ(names, "Z1 Z3 Z4 Z7 ");
  EXPECT_EQ(comparison.coefficients[2].description, "defocus");
  EXPECT_NEAR(comparison.coefficients[2].difference, -0.2, 1e-15);
  names.clear();
  for (const ComparedNumber& pair : LargestOf(comparison.coefficients, 2)) names += pair.name + " ";
  EXPECT_EQ(names, "Z4 Z7 ") << "Z1 does not blur";
}

TEST(Comparison, MetricsAreThoseOfEachEyeAlone) {
  const Comparison comparison = ComparisonOf(kBefore, kAfter);
  ASSERT_EQ(comparison.metrics.size(), 3U);
  EXPECT_EQ(comparison.metrics[0].name, "RMSw");
  EXPECT_EQ(comparison.metrics[0].unit, "um");
  EXPECT_NEAR(comparison.metrics[0].difference, comparison.rms[0].difference, 1e-12);
  const QualityRequest& request = comparison.metricRequest;
  const double vsx = QualityEvaluator({}, request).Evaluate(kAfter).values[1].value;
  EXPECT_EQ(comparison.metrics[1].name, "VSX");
  EXPECT_EQ(comparison.metrics[1].b, vsx);
  EXPECT_GT(comparison.metrics[1].difference, 0.0) << "after is better";
  EXPECT_EQ(comparison.metrics[2].name, "MTF@10");
}

TEST(Comparison, AnEyeComparedWithItselfHasNoDifference) {
  const Comparison comparison = ComparisonOf(kBefore, kBefore);
  for (const auto* const numbers :
       {&comparison.refractions, &comparison.rms, &comparison.coefficients, &comparison.metrics}) {
    for (const ComparedNumber& pair : *numbers) EXPECT_EQ(pair.difference, 0.0) << pair.name;
  }
  EXPECT_EQ(comparison.differenceRms->value(), 0.0);
  EXPECT_TRUE(comparison.notes.empty());
}

TEST(Comparison, DifferentPupilsHaveNoDifferenceOfWavefronts) {
  Eye larger = kAfter;
  larger.pupil = Millimetres(4.0);
  const Comparison comparison = ComparisonOf(kBefore, larger);
  EXPECT_FALSE(comparison.differenceRms);
  EXPECT_TRUE(std::isnan(comparison.coefficients[0].difference));
  EXPECT_FALSE(std::isnan(comparison.refractions[0].difference)) << "dioptres do not depend on the pupil";
  EXPECT_TRUE(Says(comparison, "The pupils differ, 3 and 4 mm"));
  EXPECT_EQ(LargestOf(comparison.coefficients, 1)[0].name, "Z4");
  ComparisonRequest request = Usual("RMSw");
  request.adjustments.pupil = Millimetres(3.0);
  EXPECT_TRUE(ComparisonOf(kBefore, larger, request).differenceRms);
}

TEST(Comparison, SaysWhereLateralitiesDiffer) {
  Eye right = kBefore, left = kBefore;
  right.side = Side::kOd;
  left.side = Side::kOs;
  EXPECT_TRUE(Says(ComparisonOf(right, left), "A is OD and B is OS: their nasal sides are opposite"));
  EXPECT_TRUE(Says(ComparisonOf(right, kBefore), "The laterality of B is not stated"));
  EXPECT_TRUE(Says(ComparisonOf(kBefore, left), "The laterality of A is not stated"));
  ComparisonRequest request = Usual("RMSw");
  request.adjustments.mirror = Side::kOd;
  const Comparison mirrored = ComparisonOf(right, left, request);
  EXPECT_TRUE(mirrored.notes.empty());
  EXPECT_EQ(mirrored.coefficients[0].difference, 0.0) << "Z1 is even from left to right";
  EXPECT_NEAR(mirrored.coefficients[1].b, -0.03, 1e-15) << "Z3 is odd";
}

TEST(Comparison, SaysWhereWavelengthsDifferAndWhatMetricsNote) {
  Eye near = kBefore;
  near.referenceWavelength = Nanometres(840.0);
  EXPECT_TRUE(Says(ComparisonOf(near, kBefore), "A at 840 nm, B at no stated wavelength"));
  const Eye ring = WithModes({0.0, 0.0, 0.0, 0.0, 0.4});
  const Comparison comparison = ComparisonOf(kBefore, ring, Usual("SRX,NS,D50"));
  const std::string note = TextOf(QualityNote::kPlaceNotUnique);
  ASSERT_EQ(comparison.b.quality->values[1].note, QualityNote::kPlaceNotUnique);
  EXPECT_TRUE(Says(comparison, ("NS, D50 of B: " + note).c_str()));
}

TEST(Comparison, PlanesAndLettersAreMadeOnRequest) {
  ComparisonRequest request = Usual("RMSw");
  const SimulatedEye numbers = Viewed(kBefore, request);
  EXPECT_TRUE(numbers.results.psf.empty());
  EXPECT_FALSE(numbers.letters);
  request.planes = request.letters = true;
  const SimulatedEye all = Viewed(kBefore, request);
  EXPECT_FALSE(all.results.psf.empty());
  EXPECT_FALSE(all.results.mtf.empty());
  EXPECT_EQ(all.letters->lines.size(), 5U);
}

}  // namespace
}  // namespace orvanel::evaluation
