// The run through the library: every value is the one that the exports give.
#include "evaluation/simulation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "base/error.h"
#include "models/sampling.h"
#include "orvanel/psf_peak.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::evaluation {
namespace {

const std::vector<RingRequest> kRings = {{0.7, Gap::kLeft}, {1.9, Gap::kDown}};

// Gives the eye of the results to the library anew.
void Enter(const Results& results) {
  double coefficients[ORVANEL_COEFFICIENTS];
  std::transform(results.simulation.coefficients.begin(), results.simulation.coefficients.end(), coefficients,
                 [](Millimetres c) { return c.value(); });
  OrvanelInputPupil(results.simulation.pupil.value());
  ASSERT_EQ(OrvanelInputZer(coefficients), 1);
}

TEST(Simulation, PointSpreadAndTransferAreThoseOfTheLibrary) {
  const Results results = ResultsOf(AsymmetricEye(), kRings);
  const Simulation& s = results.simulation;
  Enter(results);
  Plane plane(ORVANEL_PLANE_SAMPLES);
  double strehl, halfWidth, range;
  ASSERT_EQ(OrvanelGetPSF(plane.data(), &strehl, &halfWidth), 1);
  EXPECT_EQ(s.psf, plane);
  EXPECT_EQ(s.strehl, strehl);
  EXPECT_EQ(s.psfHalfWidth, Millimetres(halfWidth));
  ASSERT_EQ(OrvanelGetMTF(plane.data(), &range), 1);
  EXPECT_EQ(s.mtf, plane);
  EXPECT_EQ(s.frequencyRange, CyclesPerDegree(range));
  Section row, column, limit;
  ASSERT_EQ(OrvanelGetMTFGraph(row.data(), column.data(), limit.data(), &range), 1);
  EXPECT_EQ(s.rowSection, row);
  EXPECT_EQ(s.columnSection, column);
  EXPECT_EQ(s.diffractionLimit, limit);
}

TEST(Simulation, RingsAreThoseOfTheLibrary) {
  const Results results = ResultsOf(AsymmetricEye(), kRings);
  Enter(results);
  Plane seen(ORVANEL_PLANE_SAMPLES), original(ORVANEL_PLANE_SAMPLES);
  for (const auto& [index, direction] : {std::pair<std::size_t, int>{0, 4}, {1, 1}}) {
    const Ring& ring = results.simulation.rings.at(index);
    double acuity;
    ASSERT_EQ(OrvanelGetOrvanel(kRings[index].acuity, seen.data(), &acuity, original.data(), direction), 1);
    EXPECT_EQ(ring.seen, seen);
    EXPECT_EQ(ring.original, original);
    EXPECT_EQ(ring.effectiveAcuity, acuity);
  }
}

TEST(Simulation, RingDiameterIsThatOfTheDrawing) {
  for (const Ring& ring : ResultsOf(AsymmetricEye(), kRings).simulation.rings) {
    // Neither gap is above; even rings are centred between rows 128 and 129, odd ones on row 128.
    int top = 0;
    while (ring.original[static_cast<std::size_t>(top * ORVANEL_GRID_SIZE + ORVANEL_GRID_SIZE / 2)] == 1.0) ++top;
    EXPECT_EQ(ring.diameter, ring.diameter % 2 == 0 ? 2 * (129 - top) : 2 * (128 - top) + 1) << ring.request.acuity;
  }
}

TEST(Simulation, StarComesStretchedAndWithItsTotalLight) {
  const Simulation s = ResultsOf(AsymmetricEye(), kRings).simulation;
  const auto [least, most] = std::minmax_element(s.starStretched.begin(), s.starStretched.end());
  EXPECT_EQ(*least, 0.0);
  EXPECT_EQ(*most, 1.0);
  EXPECT_EQ(std::accumulate(s.starOriginal.begin(), s.starOriginal.end(), 0.0), 32402.0);
  const double light = std::accumulate(s.starTotalLight.begin(), s.starTotalLight.end(), 0.0);
  EXPECT_GT(light, 0.9 * 32402.0);
  EXPECT_LE(light, 32402.0 * (1.0 + 1e-9));
  EXPECT_NE(s.starTotalLight, s.starStretched);
}

TEST(Simulation, WavefrontIsBlankOutsideThePupilOnly) {
  const Wavefront wavefront = ResultsOf(AsymmetricEye(), kRings).simulation.wavefront;
  EXPECT_EQ(std::count_if(wavefront.map.begin(), wavefront.map.end(), [](double w) { return !std::isnan(w); }), 12853);
}

TEST(Simulation, RmsIsThatOfOrthonormalCoefficientsWithoutPistonAndTilts) {
  Eye eye = PerfectEye(Millimetres(4.5));
  eye.coefficients = {kOsaConvention, {5.0, -3.0, 2.0, 0, 0, 0, 0, 0.3, 0, 0, 0, 0, -0.4}};
  EXPECT_DOUBLE_EQ(ResultsOf(eye, kRings).simulation.wavefront.rms.value(), 0.5);
}

TEST(Simulation, ThePeakBetweenSamplesIsThatOfThePsf) {
  const Simulation s = ResultsOf(AsymmetricEye(), kRings).simulation;
  constexpr double kRounding = 1e-9;
  EXPECT_NEAR(s.strehlPeak, s.strehl * PeakBetweenSamples(s.psf.data()).value, kRounding);
  EXPECT_GT(s.strehlPeak, s.strehl);
}

TEST(Simulation, WavefrontNumbersAreThoseOfADefocusedPupil) {
  // 0.0008 mm x (2 rho^2 - 1): from -0.8 um to 0.8 um, steepest from the edge inwards, where one sample of 1/64 changes
  // it by 2 x (1 - (63/64)^2) x 0.8 um.
  Eye eye = PerfectEye(Millimetres(4.5));
  SetTerm(eye, 4, 8e-4);
  const Wavefront wavefront = ResultsOf(eye, kRings).simulation.wavefront;
  EXPECT_DOUBLE_EQ(wavefront.peakToValley.value(), 1.6);
  EXPECT_NEAR(wavefront.steepestStep.value(), 2.0 * (1.0 - 63.0 * 63.0 / (64.0 * 64.0)) * 0.8, 1e-12);
  EXPECT_EQ(wavefront.aliasedShare, 0.0);
}

TEST(Simulation, AliasedShareGrowsFromTheRim) {
  // One sample along a row changes a (2 rho^2 - 1) by about 4 a |x| / 64, and along a column likewise: more than half a
  // wave where |x| or |y| exceeds q. Below sqrt(1/2) the part of the unit disc where neither does is a square of side
  // 2q.
  Eye eye = PerfectEye(Millimetres(4.5));
  SetTerm(eye, 4, 9e-3);  // q = 0.522
  const double q = 64.0 * Wavelength().value() / 2.0 / (4.0 * 9e-3);
  const double expected = 1.0 - 4.0 * q * q / std::numbers::pi;
  // Samples of the rim, 2/64 of the disc, may lack a neighbour, and the square is known to a sample on each side.
  constexpr double kShareError = 2.0 / 64.0 + 2.0 / 64.0;
  EXPECT_NEAR(ResultsOf(eye, kRings).simulation.wavefront.aliasedShare, expected, kShareError);
}

TEST(Simulation, RefusesAWavefrontOfMetres) {
  Eye eye = PerfectEye(Millimetres(4.5));
  for (const double coefficient : {1e4, -1e4, 1e308}) {
    SetTerm(eye, 4, coefficient);
    EXPECT_THROW(ResultsOf(eye, kRings), Error) << coefficient;
  }
}

TEST(Simulation, RefusesAPupilThatMakesNumbersInfinite) {
  EXPECT_THROW(ResultsOf(PerfectEye(Millimetres(1e-320)), kRings), Error);
  EXPECT_THROW(ResultsOf(PerfectEye(Millimetres(1e308)), kRings), Error);
}

TEST(Simulation, RefusesARingTooSmallToBeDrawn) {
  EXPECT_THROW(ResultsOf(AsymmetricEye(), {{250.0, Gap::kUp}}), Error);
}

TEST(Simulation, LineSpreadMtfIsThatOfTheSamplesAtTheirFrequencies) {
  const Results results = ResultsOf(AsymmetricEye(), kRings);
  const Simulation& s = results.simulation;
  const Scale& scale = results.scales.library;
  constexpr double kRounding = 1e-13;
  for (const std::size_t i : {0U, 1U, 17U, 64U, 127U}) {
    const CyclesPerDegree frequency = static_cast<double>(i) * scale.step;
    EXPECT_NEAR(MtfAt(s.lineSpreads.horizontal, scale, frequency), s.rowSection[i], kRounding) << i;
    EXPECT_NEAR(MtfAt(s.lineSpreads.vertical, scale, frequency), s.columnSection[i], kRounding) << i;
  }
  EXPECT_EQ(MtfAt(s.lineSpreads.horizontal, scale, s.frequencyRange), 0.0);
}

TEST(Simulation, LineSpreadMtfOfAPerfectEyeIsTheClosedFormAtAnyFrequency) {
  const Results results = ResultsOf(PerfectEye(Millimetres(3.0)), kRings);
  constexpr double kFlatMtfSampling = 9.5e-4;  // the staircase of the pupil's edge
  for (double share = 0.0005; share < 1.0; share += 0.00171) {
    const double expected = 2.0 / std::numbers::pi * (std::acos(share) - share * std::sqrt(1.0 - share * share));
    const CyclesPerDegree frequency = share * results.simulation.frequencyRange;
    EXPECT_NEAR(MtfAt(results.simulation.lineSpreads.vertical, results.scales.library, frequency), expected,
                kFlatMtfSampling)
        << share;
  }
}

}  // namespace
}  // namespace orvanel::evaluation
