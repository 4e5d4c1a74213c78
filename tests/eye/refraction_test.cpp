// Tests refraction against values computed by hand and the curvature of the wavefront.
#include "eye/refraction.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "eye/pupil_rescale.h"
#include "tests/eye/zernike_truth.h"

namespace orvanel::eye {
namespace {

constexpr double kSixDigits = 5e-7;  // the published values have six digits behind the point

PowerVector Powers(double m, double j0, double j45) { return {Dioptres(m), Dioptres(j0), Dioptres(j45)}; }

Refraction Lens(double sphere, double cylinder, double axis) {
  return {Dioptres(sphere), Dioptres(cylinder), Degrees(axis)};
}

Coefficients Lopsided(std::size_t count) {
  Coefficients coefficients(count);
  for (std::size_t j = 0; j < count; ++j) coefficients[j] = 0.3 * std::cos(1.9 * static_cast<double>(j) + 0.4);
  return coefficients;
}

TEST(Refraction, OneDioptreOfDefocusIsTheWorkedValue) {
  const Coefficients c = WithRefraction({}, Millimetres(4.5), Powers(-1.0, 0.0, 0.0));
  EXPECT_NEAR(c.at(4), 0.730709, kSixDigits);
  EXPECT_EQ(c.at(3), 0.0);
  EXPECT_EQ(c.at(5), 0.0);
}

TEST(Refraction, OneDioptreOfCylinderIsTheWorkedValue) {
  for (const double axis : {10.0, 45.0, 77.0, 180.0}) {
    const Coefficients c = WithRefraction({}, Millimetres(4.5), ToPowerVector(Lens(0.0, -1.0, axis)));
    EXPECT_NEAR(std::hypot(c.at(3), c.at(5)), 0.516689, kSixDigits) << axis;
  }
}

TEST(Refraction, LeastSquaresIsTheSecondOrderTimesItsFactors) {
  const Coefficients c = Lopsided(28);
  const PowerVector powers = LeastSquaresRefraction(c, Millimetres(5.0));
  EXPECT_DOUBLE_EQ(powers.m.value(), -4.0 * std::sqrt(3.0) * c[4] / 6.25);
  EXPECT_DOUBLE_EQ(powers.j0.value(), -2.0 * std::sqrt(6.0) * c[5] / 6.25);
  EXPECT_DOUBLE_EQ(powers.j45.value(), -2.0 * std::sqrt(6.0) * c[3] / 6.25);
}

TEST(Refraction, ParaxialAddsTheHigherOrders) {
  const Coefficients c = Lopsided(28);
  const double r2 = 6.25;
  const auto at = [&c](int n, int m) { return c[OsaIndex({n, m})]; };
  const PowerVector powers = ParaxialRefraction(c, Millimetres(5.0));
  EXPECT_NEAR(
      powers.m.value(),
      (-4.0 * std::sqrt(3.0) * at(2, 0) + 12.0 * std::sqrt(5.0) * at(4, 0) - 24.0 * std::sqrt(7.0) * at(6, 0)) / r2,
      1e-14);
  EXPECT_NEAR(
      powers.j0.value(),
      (-2.0 * std::sqrt(6.0) * at(2, 2) + 6.0 * std::sqrt(10.0) * at(4, 2) - 12.0 * std::sqrt(14.0) * at(6, 2)) / r2,
      1e-14);
  EXPECT_NEAR(
      powers.j45.value(),
      (-2.0 * std::sqrt(6.0) * at(2, -2) + 6.0 * std::sqrt(10.0) * at(4, -2) - 12.0 * std::sqrt(14.0) * at(6, -2)) / r2,
      1e-14);
}

// The sphere, cylinder and axis of the wavefront's second derivatives at the centre: along each meridian the power of
// the correcting lens is minus the curvature.
TEST(Refraction, ParaxialIsTheCurvatureAtTheCentreAlongEveryMeridian) {
  const Coefficients c = Lopsided(OsaIndex({10, 10}) + 1);
  constexpr long double kStep = 1e-5L, kRadius = 2.5L;  // of the unit pupil; mm
  // Of the fourth derivative, below 1e5, times h^2 / 12, and of rounding, 1e-18 / h^2.
  constexpr double kDifferences = 1e5 * 1e-10 / 12.0 + 1e-18 / 1e-10 * 10.0;
  const Refraction lens = ToRefraction(ParaxialRefraction(c, Millimetres(5.0)), CylinderSign::kMinus);
  const auto wave = [&c](long double x, long double y) {
    long double sum = 0.0L;
    for (std::size_t j = 0; j < c.size(); ++j) sum += c[j] * OsaPolynomial(Term(j).n, Term(j).m, x, y);
    return sum;
  };
  for (const double degrees : {0.0, 23.0, 45.0, 90.0, 131.0}) {
    const long double angle = degrees * std::numbers::pi_v<long double> / 180.0L;
    const long double x = kStep * std::cos(angle), y = kStep * std::sin(angle);
    const long double curvature = (wave(x, y) - 2.0L * wave(0.0L, 0.0L) + wave(-x, -y)) / (kStep * kStep);  // um
    const long double away = std::sin((degrees - lens.axis.value()) * std::numbers::pi_v<long double> / 180.0L);
    const long double power = lens.sphere.value() + lens.cylinder.value() * away * away;
    EXPECT_NEAR(static_cast<double>(power), static_cast<double>(-curvature / (kRadius * kRadius)), kDifferences)
        << degrees;
  }
}

TEST(Refraction, AddedGrowsBothRefractionsByItself) {
  const Millimetres pupil(5.7);
  const Coefficients c = Lopsided(28);
  const Coefficients more = WithRefraction(c, pupil, Powers(-1.25, 0.5, 0.375));
  for (const auto& refraction : {LeastSquaresRefraction, ParaxialRefraction}) {
    const PowerVector before = refraction(c, pupil), after = refraction(more, pupil);
    EXPECT_NEAR((after.m - before.m).value(), -1.25, 1e-14);
    EXPECT_NEAR((after.j0 - before.j0).value(), 0.5, 1e-14);
    EXPECT_NEAR((after.j45 - before.j45).value(), 0.375, 1e-14);
  }
}

TEST(Refraction, AddedBeforeOrAfterRescalingIsTheSame) {
  const PowerVector powers = Powers(-2.0, 0.25, -0.4);
  const Coefficients before = Rescaled(WithRefraction(Lopsided(28), Millimetres(6.0), powers), 0.5);
  const Coefficients after = WithRefraction(Rescaled(Lopsided(28), 0.5), Millimetres(3.0), powers);
  for (std::size_t j = 3; j < before.size(); ++j) EXPECT_NEAR(before[j], after[j], 1e-14) << j;
}

TEST(Refraction, ParaxialDoesNotDependOnThePupil) {
  const PowerVector wide = ParaxialRefraction(Lopsided(28), Millimetres(6.0));
  const PowerVector narrow = ParaxialRefraction(Rescaled(Lopsided(28), 0.35), Millimetres(2.1));
  EXPECT_NEAR(wide.m.value(), narrow.m.value(), 1e-13);
  EXPECT_NEAR(wide.j0.value(), narrow.j0.value(), 1e-13);
  EXPECT_NEAR(wide.j45.value(), narrow.j45.value(), 1e-13);
}

TEST(Refraction, AShortSightedEyeHasANegativeSphere) {
  EXPECT_LT(LeastSquaresRefraction({0, 0, 0, 0, 0.5}, Millimetres(4.0)).m, Dioptres(0.0));
}

// J0 = 0.5 and J45 = 0, by which c5 = -0.5 r^2 / (2 sqrt 6).
TEST(Refraction, AMinusCylinderAtOneEightyBelongsToANegativeVerticalTerm) {
  const Coefficients c = WithRefraction({}, Millimetres(4.0), ToPowerVector(Lens(0.0, -1.0, 180.0)));
  EXPECT_LT(c.at(5), 0.0);
  EXPECT_NEAR(c.at(3), 0.0, 1e-16);
}

TEST(Refraction, BothSignsOfCylinderAreTheSameLens) {
  const PowerVector powers = Powers(-0.75, 0.31, -0.22);
  const Refraction minus = ToRefraction(powers, CylinderSign::kMinus), plus = ToRefraction(powers, CylinderSign::kPlus);
  EXPECT_LT(minus.cylinder.value(), 0.0);
  EXPECT_NEAR(plus.sphere.value(), (minus.sphere + minus.cylinder).value(), 1e-15);
  EXPECT_NEAR(plus.cylinder.value(), -minus.cylinder.value(), 1e-15);
  EXPECT_NEAR(std::fabs(plus.axis.value() - minus.axis.value()), 90.0, 1e-12);
  for (const Refraction& lens : {minus, plus}) {
    EXPECT_NEAR(ToPowerVector(lens).m.value(), -0.75, 1e-15);
    EXPECT_NEAR(ToPowerVector(lens).j0.value(), 0.31, 1e-15);
    EXPECT_NEAR(ToPowerVector(lens).j45.value(), -0.22, 1e-15);
  }
}

TEST(Refraction, AxesReachFromAboveZeroToOneEighty) {
  for (int axis = 1; axis <= 180; ++axis) {
    const Refraction lens = ToRefraction(ToPowerVector(Lens(1.0, -0.5, axis)), CylinderSign::kMinus);
    EXPECT_NEAR(lens.axis.value(), axis, 1e-11);
  }
  EXPECT_EQ(ToRefraction(Powers(1.0, 0.0, 0.0), CylinderSign::kMinus).axis, Degrees(180.0));
}

}  // namespace
}  // namespace orvanel::eye
