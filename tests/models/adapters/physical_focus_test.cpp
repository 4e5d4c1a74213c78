// Tests the search for the best focus by the physical model.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "models/adapters/physical_model.h"

namespace orvanel::models {
namespace {

Eye EyeOf(double pupilMm, std::vector<double> osa) {
  Eye eye;
  eye.pupil = Millimetres(pupilMm);
  eye.coefficients.Replace(std::move(osa));
  return eye;
}

TEST(PhysicalFocus, TakesSecondOrderTermsAway) {
  const Eye eye = EyeOf(5.0, {0.0, 0.0, 0.0, 0.15, 0.4, -0.1});
  PhysicalModel model(PhysicalSettings{});
  for (const FocusMethod& method : FocusMethodsOf(ModelKind::kPhysical)) {
    if (method.measure == FocusMeasure::kMtfHorizontal || method.measure == FocusMeasure::kMtfVertical) continue;
    FocusRequest request{method};
    request.astigmatism = true;
    const BestFocus best = model.FindBestFocus(eye, request);
    EXPECT_TRUE(best.converged);
    EXPECT_LT(best.before.strehl, 0.3);
    EXPECT_NEAR(best.after.strehl, 1.0, 1e-8) << method.name;
    for (const std::size_t j : {3U, 4U, 5U}) EXPECT_NEAR(best.eye.coefficients.osa().at(j), 0.0, 1e-5) << j;
  }
}

// Defocus balances spherical aberration: for small aberrations the Strehl ratio is highest where Z(2, 0) is 0, since
// the modes are orthogonal.
TEST(PhysicalFocus, LeavesSmallHigherOrdersWithoutDefocus) {
  PhysicalModel model(PhysicalSettings{});
  std::vector<double> osa(15);
  osa[4] = 0.3;
  osa[12] = 0.01;
  const BestFocus best = model.FindBestFocus(EyeOf(5.0, osa), {PhysicalModel::FocusMethods().front()});
  EXPECT_NEAR(best.eye.coefficients.osa().at(4), 0.0, 1e-3);
  EXPECT_EQ(best.eye.coefficients.osa().at(12), 0.01);
  EXPECT_GT(best.after.strehl, best.before.strehl);
}

// Astigmatism of axis 90 or 180 has two line foci: each direction of frequency has its own best defocus.
TEST(PhysicalFocus, OfEachDirectionIsAtItsLineFocus) {
  PhysicalModel model(PhysicalSettings{});
  const Eye eye = EyeOf(4.0, {0.0, 0.0, 0.0, 0.0, 0.1, 0.2});
  std::vector<double> foci;
  for (const FocusMethod& method : FocusMethodsOf(ModelKind::kPhysical)) {
    if (method.measure != FocusMeasure::kMtfHorizontal && method.measure != FocusMeasure::kMtfVertical) continue;
    FocusRequest request{method};
    request.frequency = CyclesPerDegree(5.0);
    const BestFocus best = model.FindBestFocus(eye, request);
    EXPECT_GT(best.after.value, best.before.value);
    foci.push_back(best.eye.coefficients.osa().at(4));
  }
  ASSERT_EQ(foci.size(), 2U);
  // Z(2, 2) and Z(2, 0) have the same curvature along x for coefficients of ratio sqrt(2) : 1, with opposite signs
  // along y. A wavefront that is flat along x images horizontal frequencies best.
  EXPECT_NEAR(foci[0], -0.2 / std::sqrt(2.0), 1e-3);
  EXPECT_NEAR(foci[1], 0.2 / std::sqrt(2.0), 1e-3);
}

// In light of another wavelength than the reference the focus is at the defocus that the chromatic difference adds,
// however far away that is.
TEST(PhysicalFocus, FollowsTheChromaticDifference) {
  PhysicalSettings settings;
  settings.light = {{555.0, 1.0}};
  PhysicalModel model(settings);
  Eye eye = EyeOf(6.0, {});
  eye.referenceWavelength = Nanometres(850.0);
  const BestFocus best = model.FindBestFocus(eye, {PhysicalModel::FocusMethods().front()});
  EXPECT_NEAR(best.after.strehl, 1.0, 1e-8);
  const double shift = physical::ChromaticDifference(555.0, 850.0) * 9.0 / (4.0 * std::sqrt(3.0));
  EXPECT_LT(shift, -1.0);
  EXPECT_NEAR(best.eye.coefficients.osa().at(4), shift, 1e-5);
}

}  // namespace
}  // namespace orvanel::models
