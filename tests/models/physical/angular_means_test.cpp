// Tests the fast means over angle against overlap integrals and the closed form.
#include "models/physical/angular_means.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "optics/kernels/dispatch.h"

namespace orvanel::physical {
namespace {

constexpr double kBound = 1e-4;

Eye EyeOf(double diameterMm, std::initializer_list<std::pair<std::size_t, double>> modes) {
  Eye eye;
  eye.diameterMm = diameterMm;
  for (const auto& [j, value] : modes) eye.modesUm[j] = value;
  return eye;
}

void ExpectNear(const Eye& eye, const Light& light) {
  Workspace workspace(*ActiveKernels());
  const std::vector<double> frequencies = {0.0, 0.4, 2.0, 5.0, 12.0, 30.0, 61.0, 95.0};
  const auto fast = MeansOverAngleByLattice(eye, light, frequencies, workspace);
  const auto exact = MeansOverAngle(eye, light, frequencies, workspace);
  ASSERT_TRUE(fast && exact);
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    EXPECT_NEAR((*fast)[i].mtf, (*exact)[i].mtf, kBound) << frequencies[i];
    EXPECT_NEAR((*fast)[i].otf, (*exact)[i].otf, kBound) << frequencies[i];
  }
}

TEST(AngularMeans, OfAnEyeOfTenthsOfAWaveAreThoseOfTheReference) {
  ExpectNear(EyeOf(4.0, {{3, 0.1}, {4, 0.05}, {7, -0.06}, {12, 0.04}}), {{550.0, 1.0}});
}

TEST(AngularMeans, OfAnEyeOfAWaveAreThoseOfTheReference) {
  ExpectNear(EyeOf(6.0, {{3, 0.3}, {4, -0.3}, {6, 0.1}, {7, 0.25}, {12, 0.2}}), {{550.0, 1.0}});
}

TEST(AngularMeans, OfATiltedEyeAreThoseOfTheReference) {
  ExpectNear(EyeOf(5.0, {{1, 0.8}, {2, -0.5}, {5, 0.2}}), {{550.0, 1.0}});
}

TEST(AngularMeans, OfSeveralWavelengthsAreThoseOfTheReference) {
  Eye eye = EyeOf(4.0, {{3, 0.1}, {12, 0.05}});
  eye.referenceNm = 555.0;
  ExpectNear(eye, {{500.0, 0.4}, {555.0, 1.0}, {610.0, 0.5}});
}

TEST(AngularMeans, OfAPerfectEyeAreTheClosedForm) {
  Workspace workspace(*ActiveKernels());
  const double cutOff = 3.0 / 550e-6 * std::numbers::pi / 180.0;
  std::vector<double> frequencies;
  for (int i = 0; i <= 40; ++i) frequencies.push_back(cutOff * i / 39.0);  // the last is beyond
  const auto means = MeansOverAngleByLattice(EyeOf(3.0, {}), {{550.0, 1.0}}, frequencies, workspace);
  ASSERT_TRUE(means);
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    const double x = frequencies[i] / cutOff;
    const double expected = x < 1.0 ? 2.0 / std::numbers::pi * (std::acos(x) - x * std::sqrt(1.0 - x * x)) : 0.0;
    EXPECT_NEAR((*means)[i].mtf, expected, kBound) << x;
  }
}

}  // namespace
}  // namespace orvanel::physical
