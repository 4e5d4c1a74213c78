// Tests the closed forms against published values, and against other methods.
#include "tests/accuracy/closed_forms.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>
#include <vector>

#include "tests/support/reference.h"

namespace orvanel::accuracy {
namespace {

using reference::Near;

// What 19 digits leave of sums of some hundred or thousand terms of size 1.
constexpr Real kLongDouble = 1e-16L;

TEST(ClosedForms, BesselFunctionsHaveTheirTabulatedValues) {
  // Abramowitz and Stegun, tables 9.1 and 9.4.
  EXPECT_PRED3(Near, BesselJ(0, 0), 1.0L, kLongDouble);
  EXPECT_PRED3(Near, BesselJ(0, 1), 0.765197686557967L, 1e-15L);
  EXPECT_PRED3(Near, BesselJ(1, 1), 0.4400505857449335L, 1e-15L);
  EXPECT_PRED3(Near, BesselJ(0, 10), -0.245935764451348L, 1e-15L);
  EXPECT_PRED3(Near, BesselJ(1, -2.5L), -0.4970941024642743L, 1e-15L);
}

TEST(ClosedForms, DarkRingsAndEnergiesOfTheAiryPatternAreThePublishedOnes) {
  // Born and Wolf, 8.5.2: 1.220, 2.233, 3.238 and 0.838, 0.910, 0.938; here with more digits.
  const Real radii[] = {1.219670L, 2.233131L, 3.238315L}, energies[] = {0.837785L, 0.909931L, 0.937647L};
  for (int ring = 1; ring <= 3; ++ring) {
    EXPECT_PRED3(Near, AiryDarkRing(ring), radii[ring - 1], 5e-7L);
    EXPECT_PRED3(Near, AiryEncircledEnergy(AiryDarkRing(ring)), energies[ring - 1], 5e-7L);
    EXPECT_LE(AiryIntensity(AiryDarkRing(ring)), 1e-30L);
  }
}

TEST(ClosedForms, StrehlRatiosOfSingleModesAreTheWorkedOnes) {
  const struct {
    Mode mode;
    Real strehl[5];
  } worked[] = {{{2, 0}, {0.905119L, 0.814126L, 0.662552L, 0.373840L, 0.142651L}},
                {{3, 1}, {0.905657L, 0.816200L, 0.669417L, 0.397210L, 0.182854L}},
                {{4, 0}, {0.905387L, 0.815201L, 0.666393L, 0.389964L, 0.181638L}}};
  const Real rms[] = {0.05L, 1 / 14.0L, 0.1L, 0.15L, 0.2L};
  for (const auto& row : worked) {
    for (int i = 0; i < 5; ++i) EXPECT_PRED3(Near, AxisStrehl(row.mode, rms[i]), row.strehl[i], 5e-7L);
  }
}

TEST(ClosedForms, StrehlOfDefocusIsASquaredSinc) {
  for (const Real rms : {0.07L, 0.2L, 0.41L}) {
    const Real x = 2 * std::numbers::pi_v<Real> * std::sqrt(3.0L) * rms;
    EXPECT_PRED3(Near, AxisStrehl({2, 0}, rms), std::pow(std::sin(x) / x, 2.0L), kLongDouble);
  }
}

TEST(ClosedForms, ThePolynomialIsTheSumOfItsTerms) {
  std::vector<Real> c;
  for (int j = 0; j < 28; ++j) c.push_back(0.3L - 0.07L * static_cast<Real>(j * j % 11));
  const Polynomial wavefront(c);
  for (const auto& [x, y] : {std::pair{0.31L, -0.73L}, std::pair{-0.9L, 0.2L}, std::pair{0.0L, 0.0L}}) {
    Real expected = 0;
    for (int n = 0; n <= 6; ++n) {
      for (int m = -n; m <= n; m += 2) {
        expected += c[static_cast<std::size_t>(IndexOf({n, m}))] * reference::ZernikeTerm(n, m, x, y);
      }
    }
    EXPECT_PRED3(Near, wavefront(x, y), expected, kLongDouble);
  }
}

TEST(ClosedForms, TheIntegralOfAFlatPupilIsTheDiffractionMtf) {
  const Polynomial flat(std::vector<Real>(28));
  for (const Real frequency : {0.0L, 0.01L, 0.37L, 0.8L, 0.99L}) {
    EXPECT_PRED3(Near, TransferFunction(flat, 0.6L * frequency, -0.8L * frequency, 24).real(),
                 DiffractionMtf(frequency), kLongDouble);
  }
  EXPECT_EQ(std::abs(TransferFunction(flat, 0.8L, 0.7L, 8)), 0);
}

TEST(ClosedForms, TheIntegralOfATiltIsAPhase) {
  std::vector<Real> c(28);
  c[1] = 0.21L, c[2] = -0.34L;  // of Y and X, waves
  const Real fx = 0.3L, fy = -0.2L, phase = 4 * std::numbers::pi_v<Real> * (c[2] * fx + c[1] * fy);
  const std::complex<Real> expected = std::polar(DiffractionMtf(std::hypot(fx, fy)), phase);
  EXPECT_LE(std::abs(TransferFunction(Polynomial(c), fx, fy, 24) - expected), kLongDouble);
}

TEST(ClosedForms, RescaledCoefficientsAreTheSameWavefront) {
  std::vector<Real> c;
  for (int j = 0; j < 28; ++j) c.push_back(0.2L - 0.05L * static_cast<Real>(j * j % 13));
  for (const Real ratio : {0.37L, 1.0L, 1.25L}) {
    const Polynomial whole(c), inner(RescaledCoefficients(c, ratio));
    const Real x = 0.52L, y = -0.41L;
    EXPECT_PRED3(Near, inner(x, y), whole(ratio * x, ratio * y), kLongDouble);
  }
  EXPECT_GT(std::abs(RescaledCoefficients(c, 0.5L)[4] - c[4] * 0.25L), 0.01L) << "fourth orders lend to the second";
}

TEST(ClosedForms, MarechalsEstimatesAgreeToSecondOrder) {
  const Real rms = 1e-3L, fourth = std::pow(2 * std::numbers::pi_v<Real> * rms, 4.0L);
  EXPECT_PRED3(Near, StrehlByMarechal(rms), StrehlBySquare(rms), fourth);
  EXPECT_PRED3(Near, StrehlByExponential(rms), StrehlBySquare(rms), fourth);
  EXPECT_PRED3(Near, AxisStrehl({5, 3}, rms), StrehlBySquare(rms), fourth);
}

}  // namespace
}  // namespace orvanel::accuracy
