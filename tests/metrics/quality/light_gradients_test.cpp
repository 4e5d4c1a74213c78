// Gradients of all metrics against differences of seven places and closed forms.
#include "metrics/quality/light_gradients.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "metrics/quality/quality.h"
#include "tests/models/physical/examples.h"

namespace orvanel::metrics {
namespace {

using M = QualityMetric;
using physical::Gradient;
using physical::kModes;

constexpr double kPi = std::numbers::pi;

struct Case {
  const char* name;
  physical::Eye eye;
  physical::Light light;
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

physical::Eye Random28() {
  std::mt19937 engine(11);  // NOLINT(bugprone-random-generator-seed,cert-msc51-cpp): the same eye each time
  physical::Eye eye = physical::EyeOf({}, 5.0, 550.0);
  for (std::size_t j = 1; j < 28; ++j) {
    const double n = std::floor((-3.0 + std::sqrt(9.0 + 8.0 * static_cast<double>(j))) / 2.0 + 0.999);
    eye.modesUm[j] = (static_cast<double>(engine()) / 4294967296.0 - 0.5) * 0.5 / (n * n);
  }
  return eye;
}

std::vector<Case> Cases() {
  std::vector<Case> cases;
  physical::Eye spherical = physical::EyeOf({}, 6.0, 550.0);
  spherical.modesUm[12] = 0.19;
  spherical.modesUm[4] = 0.11;
  spherical.modesUm[7] = 0.02;  // so that the best place is one
  cases.push_back({"SphericalAberration", spherical, {{550.0, 1.0}}});
  cases.push_back({"ComaAndAstigmatism",
                   physical::EyeOf({0, 0.2, -0.1, 0.21, 0.05, -0.12, 0.03, 0.16, -0.11}, 6.0, 555.0),
                   {{555.0, 1.0}}});
  cases.push_back({"Random", Random28(), {{550.0, 1.0}}});
  physical::Eye white =
      physical::EyeOf({0, 0.03, 0.07, 0.06, 0.1, -0.04, 0.03, 0.06, -0.05, 0.02, 0.01, 0.02, 0.05}, 5.0, 555.0);
  white.achromaticAxisXmm = 0.2;
  cases.push_back({"White", white, {{500.0, 0.5}, {555.0, 1.0}, {610.0, 0.6}}});
  physical::Eye ellipse =
      physical::EyeOf({0, 0.1, -0.2, 0.06, 0.1, -0.04, 0.03, 0.06, -0.05, 0.02, 0.01, 0.02, 0.05}, 6.0, 550.0);
  ellipse.outline = {0.9, 0.7, 0.4, 0.05, -0.1};
  ellipse.stilesCrawford = {0.05, 0.3, -0.2};
  cases.push_back({"Ellipse", ellipse, {{550.0, 1.0}}});
  return cases;
}

// Metrics, and the step of differences that suits them.
struct Group {
  double step;  // um
  std::vector<M> metrics;
};
std::vector<Group> Groups() {
  // A modulus has a kink at 0: the share of frequencies that are within a step of it goes with the square of the step.
  const std::vector<M> kinked = {M::kBave,  M::kEnt,   M::kAreaMtf, M::kAreaOtf,
                                 M::kSrMtf, M::kVsMtf, M::kVotf,    M::kVnotf};
  // Values round to some 1e-13, and the place of the peak to 1e-9. The error of the differences is h^6/140 of the
  // seventh derivative, some 40^7 of the value for phases of 40 rad per um.
  std::vector<Group> groups = {{1e-5, kinked}, {2e-4, {}}};
  for (const QualityRow& row : QualityCatalogue()) {
    const bool isKinked = std::find(kinked.begin(), kinked.end(), row.metric) != kinked.end();
    EXPECT_TRUE(row.hasGradient || !isKinked);
    if (row.hasGradient && !isKinked) groups[1].metrics.push_back(row.metric);
  }
  return groups;
}

class QualityGradients : public testing::TestWithParam<Case> {
 protected:
  std::vector<double> ValuesOf(const physical::Eye& eye, const QualityRequest& request) {
    const QualityOutcome outcome = QualityOf(eye, GetParam().light, request, workspace_);
    std::vector<double> values;
    EXPECT_TRUE(outcome);
    if (!outcome) return std::vector<double>(request.metrics.size());
    for (const QualityValue& value : outcome->values) values.push_back(value.value);
    return values;
  }

  // The derivatives along a direction, by differences of seven places.
  std::vector<double> DifferencesOf(const Gradient& direction, const QualityRequest& request, double step) {
    constexpr std::array<double, 3> kWeights = {0.75, -0.15, 1.0 / 60.0};
    std::vector<double> sum(request.metrics.size());
    for (std::size_t k = 0; k < kWeights.size(); ++k) {
      for (const double sign : {1.0, -1.0}) {
        physical::Eye eye = GetParam().eye;
        for (std::size_t j = 0; j < kModes; ++j) {
          eye.modesUm[j] += sign * static_cast<double>(k + 1) * step * direction[j];
        }
        const std::vector<double> values = ValuesOf(eye, request);
        for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += sign * kWeights[k] / step * values[i];
      }
    }
    return sum;
  }

  QualityWorkspace workspace_{*ActiveKernels()};
};

TEST_P(QualityGradients, EqualDifferences) {
  std::vector<Gradient> directions;
  for (const std::size_t mode : {1U, 2U, 4U, 7U, 12U, 27U}) {
    directions.emplace_back();
    directions.back()[mode] = 1.0;
  }
  Gradient mixed{};
  for (std::size_t j = 0; j < kModes; ++j) mixed[j] = 0.2 * std::sin(3.0 * static_cast<double>(j) + 1.0);
  directions.push_back(mixed);
  for (const QualityOrigin origin :
       {QualityOrigin::kBest, QualityOrigin::kAxis, QualityOrigin::kPeak, QualityOrigin::kCentroid}) {
    for (const Group& group : Groups()) {
      QualityRequest request{group.metrics, origin};
      request.gradient = true;
      const QualityOutcome quality = QualityOf(GetParam().eye, GetParam().light, request, workspace_);
      ASSERT_TRUE(quality);
      request.gradient = false;
      std::vector<double> worst(request.metrics.size());
      for (const Gradient& direction : directions) {
        const std::vector<double> differences = DifferencesOf(direction, request, group.step);
        for (std::size_t i = 0; i < differences.size(); ++i) {
          double derivative = 0.0;
          for (std::size_t j = 0; j < kModes; ++j) derivative += quality->values[i].gradient.at(j) * direction[j];
          const double error = std::fabs(derivative - differences[i]) / std::max(1.0, std::fabs(differences[i]));
          worst[i] = error <= worst[i] ? worst[i] : error;
        }
      }
      for (std::size_t i = 0; i < worst.size(); ++i) {
        const char* const name = RowOf(request.metrics[i]).name;
        RecordProperty(name + std::to_string(static_cast<int>(origin)), testing::PrintToString(worst[i]));
        EXPECT_LE(worst[i], 1e-7) << name << " at origin " << static_cast<int>(origin);
      }
    }
  }
}

class QualityGradient : public testing::Test {
 protected:
  QualityValue Of(const physical::Eye& eye, M metric, QualityOrigin origin = QualityOrigin::kBest) {
    QualityRequest request{{metric}, origin};
    request.gradient = true;
    const QualityOutcome outcome = QualityOf(eye, {{550.0, 1.0}}, request, workspace_);
    EXPECT_TRUE(outcome);
    return outcome ? outcome->values.at(0) : QualityValue{};
  }
  QualityWorkspace workspace_{*ActiveKernels()};
};

TEST_F(QualityGradient, OfSrxIsThatOfTheVarianceForSmallAberrations) {
  // SRX = 1 - k^2 sum c^2 and terms of third order.
  constexpr double kSmall = 1e-5, kWavenumber = 2.0 * kPi / 0.55;
  physical::Eye eye = physical::EyeOf({}, 6.0, 550.0);
  for (std::size_t j = 3; j < 21; ++j) eye.modesUm[j] = kSmall * static_cast<double>(j % 5);
  const QualityValue srx = Of(eye, M::kSrx);
  for (std::size_t j = 3; j < 21; ++j) {
    EXPECT_NEAR(srx.gradient[j], -2.0 * kWavenumber * kWavenumber * eye.modesUm[j], 1e-6) << j;
  }
}

TEST_F(QualityGradient, OfRmsWIsTheModesOverIt) {
  const physical::Eye eye = Random28();
  const QualityValue rms = Of(eye, M::kRmsW);
  for (std::size_t j = 3; j < kModes; ++j) EXPECT_NEAR(rms.gradient[j], eye.modesUm[j] / rms.value, 1e-14);
  EXPECT_EQ(rms.gradient[2], 0.0);
}

TEST_F(QualityGradient, OfWidthsByDefocusAloneIsTheWidthOverTheDefocus) {
  const physical::Eye eye = physical::EyeOf({0, 0, 0, 0, 0.4}, 6.0, 550.0);
  for (const M metric : {M::kRmsW, M::kRmsS, M::kSm, M::kBave}) {
    const QualityValue value = Of(eye, metric);
    EXPECT_NEAR(value.gradient[4], value.value / 0.4, 1e-12) << RowOf(metric).name;
    EXPECT_NEAR(value.gradient[5], 0.0, 1e-12) << RowOf(metric).name;
  }
}

TEST_F(QualityGradient, OfAWidthThatIsZeroDoesNotExist) {
  for (const M metric : {M::kRmsW, M::kRmsS, M::kSm, M::kBave}) {
    const QualityValue value = Of(physical::EyeOf({}, 6.0, 550.0), metric);
    EXPECT_EQ(value.value, 0.0);
    for (const double d : value.gradient) EXPECT_TRUE(std::isnan(d)) << RowOf(metric).name;
  }
}

TEST_F(QualityGradient, OfPistonAndOfTiltAtAFollowingOriginIsZero) {
  const physical::Eye eye = Random28();
  for (const M metric : {M::kVsx, M::kNs, M::kSrOtf}) {
    for (const QualityOrigin origin : {QualityOrigin::kBest, QualityOrigin::kPeak, QualityOrigin::kCentroid}) {
      const QualityValue value = Of(eye, metric, origin);
      EXPECT_EQ(value.gradient[0], 0.0);
      EXPECT_NEAR(value.gradient[1], 0.0, 1e-3) << RowOf(metric).name << static_cast<int>(origin);
      EXPECT_NEAR(value.gradient[2], 0.0, 1e-3) << RowOf(metric).name << static_cast<int>(origin);
    }
  }
}

TEST_F(QualityGradient, IsOnlyThereWhereWanted) {
  const QualityOutcome plain = QualityOf(Random28(), {{550.0, 1.0}}, {{M::kVsx}}, workspace_);
  EXPECT_TRUE(plain->values[0].gradient.empty());
  EXPECT_EQ(Of(Random28(), M::kVsx).value, plain->values[0].value);
  const QualityValue none = Of(Random28(), M::kPv);
  EXPECT_EQ(none.gradient.size(), kModes);
  EXPECT_TRUE(std::isnan(none.gradient[3]));
}

TEST_F(QualityGradient, AtARingShapedMaximumIsThatOfTheNamedPlace) {
  const physical::Eye ring = physical::EyeOf({0, 0, 0, 0, 0.25 * 16.0 / (16.0 * std::sqrt(3.0))}, 4.0, 550.0);
  EXPECT_TRUE(std::isnan(Of(ring, M::kNs, QualityOrigin::kPeak).gradient[4]));
  EXPECT_LT(Of(ring, M::kSrx, QualityOrigin::kPeak).gradient[4], 0.0);
}

INSTANTIATE_TEST_SUITE_P(Of, QualityGradients, testing::ValuesIn(Cases()),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace orvanel::metrics
