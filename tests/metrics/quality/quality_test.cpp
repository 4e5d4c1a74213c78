// Metrics of eyes against closed forms, identities and an independent script; degenerate eyes by name.
#include "metrics/quality/quality.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "tests/models/physical/examples.h"

namespace orvanel::metrics {
namespace {

using M = QualityMetric;

constexpr double kPi = std::numbers::pi;

std::vector<M> All() {
  std::vector<M> all;
  for (const QualityRow& row : QualityCatalogue()) all.push_back(row.metric);
  return all;
}

double UnitOf(double diameterMm, double wavelengthNm) { return wavelengthNm * 1e-3 / diameterMm * 10.8 / kPi; }

class QualityTest : public testing::Test {
 protected:
  Quality Of(const physical::Eye& eye, const QualityRequest& request, const physical::Light& light = {{550.0, 1.0}}) {
    const QualityOutcome outcome = QualityOf(eye, light, request, workspace_);
    EXPECT_TRUE(outcome);
    return outcome ? *outcome : Quality{};
  }
  QualityValue One(const physical::Eye& eye, M metric, QualityOrigin origin = QualityOrigin::kBest) {
    return Of(eye, {{metric}, origin}).values.at(0);
  }

  QualityWorkspace workspace_{*ActiveKernels()};
};

physical::Eye AnEye() {
  return physical::EyeOf({0, 0.1, -0.2, 0.06, 0.1, -0.04, 0.03, 0.06, -0.05, 0.02, 0.01, 0.02, 0.05, -0.01});
}
physical::Eye Defocused(double dioptres, double diameter) {
  return physical::EyeOf({0, 0, 0, 0, dioptres * diameter * diameter / (16.0 * std::sqrt(3.0))}, diameter, 550.0);
}

TEST_F(QualityTest, OfAPerfectEyeIsTheLimitOfEachMetric) {
  for (const double diameter : {3.0, 6.0}) {
    const Quality quality = Of(physical::EyeOf({}, diameter), {All()});
    const double unit = UnitOf(diameter, 550.0);
    const std::map<M, double> widths = {
        {M::kD50, 1.069664 * unit}, {M::kEw, 1.273240 * unit}, {M::kHwhh, 0.514497 * unit}, {M::kLib, 0.837785}};
    for (const QualityValue& value : quality.values) {
      const QualityRow& row = RowOf(value.metric);
      const auto width = widths.find(value.metric);
      if (width != widths.end()) {
        const double error = row.isRatio ? row.error : row.error * width->second;
        EXPECT_NEAR(value.value, width->second, error) << row.name;
        EXPECT_NEAR(value.limit, width->second, error) << row.name;
      } else if (row.isRatio) {
        EXPECT_NEAR(value.value, 1.0, 1e-5) << row.name;
      } else if (row.plane == QualityPlane::kPupil || value.metric == M::kSm) {
        EXPECT_EQ(value.value, 0.0) << row.name;
      } else {
        EXPECT_NEAR(value.value, value.limit, 1e-6) << row.name;
      }
    }
  }
}

TEST_F(QualityTest, OfAPerfectEyeIsTheLimitBehindAnEllipseWithTheStilesCrawfordEffect) {
  physical::Eye eye = physical::EyeOf({}, 6.0, 550.0);
  eye.outline = {0.9, 0.7, 0.4, 0.05, -0.1};
  eye.stilesCrawford = {0.05, 0.3, -0.2};
  for (const QualityValue& value : Of(eye, {All()}).values) {
    if (RowOf(value.metric).isRatio && value.metric != M::kLib) {
      EXPECT_NEAR(value.value, 1.0, 2e-4) << RowOf(value.metric).name;
    }
  }
}

TEST_F(QualityTest, VsxIsVsotfAndSrotfAtThePeakIsSrx) {
  const Quality best = Of(AnEye(), {{M::kVsx, M::kVsOtf}});
  EXPECT_EQ(best.values[0].value, best.values[1].value);
  const Quality peak = Of(AnEye(), {{M::kSrx, M::kSrOtf, M::kEw}, QualityOrigin::kPeak});
  EXPECT_NEAR(peak.values[0].value, peak.values[1].value, 1e-9);
  EXPECT_NEAR(peak.values[2].value, 1.273240 * UnitOf(6.0, 550.0) / std::sqrt(peak.values[0].value), 1e-6);
}

TEST_F(QualityTest, SmOfOneColourIsRmsS) {
  const Quality quality = Of(AnEye(), {{M::kSm, M::kRmsS}});
  EXPECT_NEAR(quality.values[0].value, quality.values[1].value, 1e-9);
}

TEST_F(QualityTest, OriginsFollowATilt) {
  // 1 um of c2 over 6 mm moves the PSF by 2.2918' to the left, 1 um of c1 up, as the patient sees it.
  for (const QualityOrigin origin : {QualityOrigin::kPeak, QualityOrigin::kCentroid, QualityOrigin::kBest}) {
    const Quality quality = Of(physical::EyeOf({0, 0.5, 1.0}), {{M::kVsx, M::kNs, M::kLib, M::kD50}, origin});
    EXPECT_NEAR(quality.originX, -2.2918, 1e-4);
    EXPECT_NEAR(quality.originY, 2.2918 / 2.0, 1e-4);
    EXPECT_NEAR(quality.values[0].value, 1.0, 1e-5);
    EXPECT_NEAR(quality.values[1].value, 1.0, 1e-5);
    EXPECT_NEAR(quality.values[2].value, 0.837785, 1e-5);
  }
}

TEST_F(QualityTest, D50AboutTheAxisReachesLightThatATiltMoves) {
  const double moved = 4.0;
  const QualityValue value = One(physical::EyeOf({0, 0, moved / 2.2918}), M::kD50, QualityOrigin::kAxis);
  EXPECT_NEAR(value.value, 2.0 * moved, 0.05);
}

TEST_F(QualityTest, BestIsNoLessThanAnyOtherOrigin) {
  const double best = One(AnEye(), M::kVsx).value;
  for (const QualityOrigin origin : {QualityOrigin::kAxis, QualityOrigin::kPeak, QualityOrigin::kCentroid}) {
    EXPECT_LE(One(AnEye(), M::kVsx, origin).value, best + 1e-12);
  }
}

TEST_F(QualityTest, RingShapedMaximumIsNotUnique) {
  const physical::Eye ring = Defocused(0.25, 4.0);
  EXPECT_EQ(One(ring, M::kVsx, QualityOrigin::kPeak).note, QualityNote::kPlaceNotUnique);
  EXPECT_EQ(One(ring, M::kVsx, QualityOrigin::kCentroid).note, QualityNote::kNone);
  EXPECT_EQ(One(ring, M::kSrx, QualityOrigin::kPeak).note, QualityNote::kNone);
}

TEST_F(QualityTest, VsxBelowZeroIsNoted) {
  // Light beside the origin, where the surround of the neural weighting is negative.
  const QualityValue value = One(physical::EyeOf({0, 0, 1.3}), M::kVsx, QualityOrigin::kAxis);
  EXPECT_LT(value.value, 0.0);
  EXPECT_EQ(value.note, QualityNote::kBelowZero);
  EXPECT_EQ(One(AnEye(), M::kVsx, QualityOrigin::kBest).note, QualityNote::kNone);
}

TEST_F(QualityTest, EmptyReferenceHasNoRatio) {
  int wrong = 0;
  QualityRequest request{{M::kAreaMtf, M::kAreaOtf, M::kVsMtf}};
  request.contrast = *ContrastSensitivity::Of({{0.0, 0.5}, {60.0, 0.1}}, wrong);
  const Quality quality = Of(AnEye(), request);
  EXPECT_TRUE(std::isnan(quality.values[0].value));
  EXPECT_EQ(quality.values[0].note, QualityNote::kEmptyReference);
  EXPECT_TRUE(std::isnan(quality.values[1].value));
  EXPECT_GT(quality.values[2].value, 0.0);
}

TEST_F(QualityTest, EmptyPupilIsRefused) {
  physical::Eye eye = AnEye();
  eye.outline.semiAxisA = 0.0;
  const QualityOutcome outcome = QualityOf(eye, {{550.0, 1.0}}, {All()}, workspace_);
  ASSERT_FALSE(outcome);
  EXPECT_EQ(outcome.refusal().problem, QualityProblem::kModel);
  EXPECT_EQ(outcome.refusal().model.problem, physical::Problem::kOutline);
}

TEST_F(QualityTest, WrongGaussianAndSteepWavefrontsAreRefused) {
  QualityRequest request{{M::kNs}};
  request.gaussianSdArcmin = 0.0;
  EXPECT_EQ(QualityOf(AnEye(), {{550.0, 1.0}}, request, workspace_).refusal().problem, QualityProblem::kGaussianSd);
  const QualityOutcome steep = QualityOf(Defocused(60.0, 8.0), {{550.0, 1.0}}, {{M::kVsx}}, workspace_);
  ASSERT_FALSE(steep);
  EXPECT_EQ(steep.refusal().model.problem, physical::Problem::kTooSteep);
}

TEST_F(QualityTest, ValuesDoNotDependOnOtherMetricsOrEarlierEyes) {
  const Quality all = Of(AnEye(), {All()});
  Of(Defocused(2.0, 6.0), {All()});
  for (const QualityValue& value : all.values) {
    QualityWorkspace fresh(*ActiveKernels());
    const QualityOutcome alone = QualityOf(AnEye(), {{550.0, 1.0}}, {{value.metric}}, fresh);
    EXPECT_EQ(alone->values[0].value, value.value) << RowOf(value.metric).name;
    EXPECT_EQ(One(AnEye(), value.metric).value, value.value) << RowOf(value.metric).name;
  }
}

TEST_F(QualityTest, EveryTableOfKernelsGivesTheSameBits) {
  const Quality active = Of(AnEye(), {All()});
  for (const Kernels* const kernels : RunnableKernels()) {
    QualityWorkspace workspace(*kernels);
    const QualityOutcome quality = QualityOf(AnEye(), {{550.0, 1.0}}, {All()}, workspace);
    for (std::size_t i = 0; i < active.values.size(); ++i) {
      EXPECT_EQ(quality->values[i].value, active.values[i].value) << RowOf(active.values[i].metric).name;
    }
  }
}

TEST_F(QualityTest, WhiteLightOfOneLineIsThatLine) {
  physical::Eye eye = AnEye();
  eye.referenceNm = 550.0;
  const Quality one = Of(eye, {All()}), white = Of(eye, {All()}, {{550.0, 0.7}, {600.0, 0.0}});
  for (std::size_t i = 0; i < one.values.size(); ++i) EXPECT_EQ(one.values[i].value, white.values[i].value);
}

TEST_F(QualityTest, WhiteLightIsTheSumOfItsLines) {
  physical::Eye eye = AnEye();
  eye.referenceNm = 550.0;
  const physical::Light lines = {{500.0, 0.4}, {550.0, 1.0}, {600.0, 0.6}};
  QualityRequest request{{M::kVsOtf, M::kNs, M::kSrOtf}, QualityOrigin::kAxis, QualityReference::kMonochromatic};
  const Quality white = Of(eye, request, lines);
  for (std::size_t i = 0; i < request.metrics.size(); ++i) {
    double sum = 0.0;
    for (const physical::SpectralLine& line : lines)
      sum += line.weight / 2.0 * Of(eye, request, {line}).values[i].value;
    EXPECT_NEAR(white.values[i].value, sum, 1e-4) << RowOf(request.metrics[i]).name;
  }
}

TEST_F(QualityTest, WhiteReferenceIsAboveTheEye) {
  physical::Eye eye = AnEye();
  eye.referenceNm = 550.0;
  const Quality same = Of(eye, {{M::kVsOtf}}, physical::WhiteLight());
  const Quality mono =
      Of(eye, {{M::kVsOtf}, QualityOrigin::kBest, QualityReference::kMonochromatic}, physical::WhiteLight());
  EXPECT_GT(same.values[0].value, 0.0);
  EXPECT_LT(same.values[0].value, 1.0);
  // Perfect white light and perfect light of 550 nm differ little in what they send to low frequencies.
  EXPECT_NEAR(mono.values[0].value / same.values[0].value, 1.0, 0.1);
}

// ---- The script's truth

struct TrueQuality {
  std::string name;
  physical::Eye eye;
  double wavelengthNm = 0.0;
  double placeX = 0.0, placeY = 0.0;
  struct Line {
    std::string origin, metric;
    double value;
  };
  std::vector<Line> lines;
};
void PrintTo(const TrueQuality& truth, std::ostream* out) { *out << truth.name; }

std::vector<TrueQuality> Truths() {
  std::ifstream file(ORVANEL_QUALITY_TRUTH);
  std::vector<TrueQuality> truths;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string first, second;
    words >> first >> second;
    if (first == "EYE") {
      truths.emplace_back();
      truths.back().name = second;
      words >> truths.back().eye.diameterMm >> truths.back().wavelengthNm;
      truths.back().eye.referenceNm = truths.back().wavelengthNm;
    } else if (second == "mode") {
      std::size_t index = 0;
      words >> index >> truths.back().eye.modesUm.at(index);
    } else if (second == "place") {
      words >> truths.back().placeX >> truths.back().placeY;
    } else {
      truths.back().lines.push_back({second, "", 0.0});
      words >> truths.back().lines.back().metric >> truths.back().lines.back().value;
    }
  }
  return truths;
}

class QualityTruth : public testing::TestWithParam<TrueQuality> {};

TEST_P(QualityTruth, IsMetWithinTheErrorsOfTheCatalogue) {
  const TrueQuality& truth = GetParam();
  QualityWorkspace workspace(*ActiveKernels());
  ASSERT_FALSE(truth.lines.empty());
  for (const auto& [origin, name, exact] : truth.lines) {
    const std::optional<M> metric = QualityMetricNamed(name);
    ASSERT_TRUE(metric) << name;
    const QualityRequest request{{*metric}, origin == "axis" ? QualityOrigin::kAxis : QualityOrigin::kBest};
    const QualityOutcome outcome = QualityOf(truth.eye, {{truth.wavelengthNm, 1.0}}, request, workspace);
    ASSERT_TRUE(outcome);
    const QualityRow& row = RowOf(*metric);
    const double value = outcome->values[0].value;
    RecordProperty((origin + name).c_str(), testing::PrintToString(value - exact));
    EXPECT_NEAR(value, exact, row.isRatio ? row.error : row.error * exact) << origin << ' ' << name;
    if (origin == "best" && row.usesOrigin) {
      EXPECT_NEAR(outcome->originX, truth.placeX, 2e-3);
      EXPECT_NEAR(outcome->originY, truth.placeY, 2e-3);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(OfTheScript, QualityTruth, testing::ValuesIn(Truths()), [](const auto& instance) {
  std::string name = instance.param.name;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

TEST(QualityTruthFile, HasEightEyes) { EXPECT_EQ(Truths().size(), 8u); }

}  // namespace
}  // namespace orvanel::metrics
