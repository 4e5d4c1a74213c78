// Tests that every value of a simulation is that of the exports.
#include "evaluation/simulation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "models/errors.h"
#include "models/sampling.h"
#include "orvanel/psf_peak.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::evaluation {
namespace {

const std::vector<RingRequest> kRings = {{0.7, Gap::kLeft}, {1.9, Gap::kDown}};

// Gives the eye of the results to the library anew.
void Enter(const SimulatedEye& simulated) {
  const auto coefficients = Bare(ToLibrary(simulated.eye.coefficients));
  OrvanelInputPupil(simulated.results.pupil.value());
  ASSERT_EQ(OrvanelInputZer(coefficients.data()), 1);
}

TEST(Simulation, PointSpreadAndTransferAreThoseOfTheLibrary) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  const Results& s = simulated.results;
  Enter(simulated);
  Plane plane(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
  double strehl, halfWidth, range;
  ASSERT_EQ(OrvanelGetPSF(plane.data(), &strehl, &halfWidth), 1);
  EXPECT_EQ(s.psf, plane);
  EXPECT_EQ(s.strehl, strehl);
  EXPECT_EQ(s.scales.library.halfWidth, Millimetres(halfWidth));
  ASSERT_EQ(OrvanelGetMTF(plane.data(), &range), 1);
  EXPECT_EQ(s.mtf, plane);
  EXPECT_EQ(s.scales.frequencyRange, CyclesPerDegree(range));
  Curve row(ORVANEL_SECTION_SAMPLES), column(ORVANEL_SECTION_SAMPLES), limit(ORVANEL_SECTION_SAMPLES);
  ASSERT_EQ(OrvanelGetMTFGraph(row.data(), column.data(), limit.data(), &range), 1);
  EXPECT_EQ(s.rowSection, row);
  EXPECT_EQ(s.columnSection, column);
  EXPECT_EQ(s.diffractionLimit, limit);
}

TEST(Simulation, RingsAreThoseOfTheLibrary) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  Enter(simulated);
  Plane seen(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE), original(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
  for (const auto& [index, direction] : {std::pair<std::size_t, int>{0, 4}, {1, 1}}) {
    const Ring& ring = simulated.results.rings.at(index);
    double acuity;
    ASSERT_EQ(OrvanelGetOrvanel(kRings[index].acuity, seen.data(), &acuity, original.data(), direction), 1);
    EXPECT_EQ(ring.seen, seen);
    EXPECT_EQ(ring.original, original);
    EXPECT_EQ(ring.effectiveAcuity, acuity);
  }
}

TEST(Simulation, RingDiameterIsThatOfTheDrawing) {
  for (const Ring& ring : Simulated(AsymmetricEye(), kRings).results.rings) {
    // Neither gap is above; even rings are centred between rows 128 and 129, odd ones on row 128.
    int top = 0;
    while (ring.original[static_cast<std::size_t>(top * ORVANEL_GRID_SIZE + ORVANEL_GRID_SIZE / 2)] == 1.0) ++top;
    EXPECT_EQ(ring.diameter, ring.diameter % 2 == 0 ? 2 * (129 - top) : 2 * (128 - top) + 1) << ring.request.acuity;
  }
}

TEST(Simulation, StarComesStretchedAndWithItsTotalLight) {
  const Results s = Simulated(AsymmetricEye(), kRings).results;
  const auto [least, most] = std::minmax_element(s.star.stretched.begin(), s.star.stretched.end());
  EXPECT_EQ(*least, 0.0);
  EXPECT_EQ(*most, 1.0);
  EXPECT_EQ(std::accumulate(s.star.original.begin(), s.star.original.end(), 0.0), 32402.0);
  const double light = std::accumulate(s.star.totalLight.begin(), s.star.totalLight.end(), 0.0);
  EXPECT_GT(light, 0.9 * 32402.0);
  EXPECT_LE(light, 32402.0 * (1.0 + 1e-9));
  EXPECT_NE(s.star.totalLight, s.star.stretched);
}

TEST(Simulation, WavefrontIsBlankOutsideThePupilOnly) {
  const Wavefront wavefront = Simulated(AsymmetricEye(), kRings).results.wavefront;
  EXPECT_EQ(std::count_if(wavefront.map.begin(), wavefront.map.end(), [](double w) { return !std::isnan(w); }), 12853);
}

TEST(Simulation, RmsIsThatOfOrthonormalCoefficientsWithoutPistonAndTilts) {
  Eye eye = PerfectEye(Millimetres(4.5));
  eye.coefficients = {kOsaConvention, {5.0, -3.0, 2.0, 0, 0, 0, 0, 0.3, 0, 0, 0, 0, -0.4}};
  EXPECT_DOUBLE_EQ(Simulated(eye, kRings).results.wavefront.rms.value(), 0.5);
}

TEST(Simulation, ThePeakBetweenSamplesIsThatOfThePsf) {
  const Results s = Simulated(AsymmetricEye(), kRings).results;
  constexpr double kRounding = 1e-9;
  EXPECT_NEAR(s.strehlPeak, s.strehl * PeakBetweenSamples(s.psf.data()).value, kRounding);
  EXPECT_GT(s.strehlPeak, s.strehl);
}

TEST(Simulation, WavefrontNumbersAreThoseOfADefocusedPupil) {
  // 0.0008 mm x (2 rho^2 - 1): from -0.8 um to 0.8 um, steepest from the edge inwards, where one sample of 1/64 changes
  // it by 2 x (1 - (63/64)^2) x 0.8 um.
  Eye eye = PerfectEye(Millimetres(4.5));
  SetTerm(eye, 4, 8e-4);
  const Results results = Simulated(eye, kRings).results;
  const Wavefront& wavefront = results.wavefront;
  EXPECT_DOUBLE_EQ(wavefront.peakToValley.value(), 1.6);
  EXPECT_NEAR(wavefront.steepestStep.value(), 2.0 * (1.0 - 63.0 * 63.0 / (64.0 * 64.0)) * 0.8, 1e-12);
  EXPECT_EQ(results.undersampled, 0.0);
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
  EXPECT_NEAR(Simulated(eye, kRings).results.undersampled, expected, kShareError);
}

TEST(Simulation, RefusesAWavefrontOfMetres) {
  Eye eye = PerfectEye(Millimetres(4.5));
  for (const double coefficient : {1e4, -1e4, 1e308}) {
    SetTerm(eye, 4, coefficient);
    EXPECT_THROW(Simulated(eye, kRings), WavefrontTooHigh) << coefficient;
  }
}

TEST(Simulation, RefusesAPupilThatMakesNumbersInfinite) {
  EXPECT_THROW(Simulated(PerfectEye(Millimetres(1e-320)), kRings), PupilOutOfRange);
  EXPECT_THROW(Simulated(PerfectEye(Millimetres(1e308)), kRings), PupilOutOfRange);
}

TEST(Simulation, RefusesARingTooSmallToBeDrawn) {
  EXPECT_THROW(Simulated(AsymmetricEye(), {{250.0, Gap::kUp}}), RingTooSmall);
}

TEST(Simulation, LineSpreadMtfIsThatOfTheSamplesAtTheirFrequencies) {
  const SimulatedEye simulated = Simulated(AsymmetricEye(), kRings);
  const Results& s = simulated.results;
  const Scale& scale = simulated.results.scales.library;
  constexpr double kRounding = 1e-13;
  for (const std::size_t i : {0U, 1U, 17U, 64U, 127U}) {
    const CyclesPerDegree frequency = static_cast<double>(i) * scale.step;
    EXPECT_NEAR(MtfAt(s.lineSpreads.horizontal, scale, frequency), s.rowSection[i], kRounding) << i;
    EXPECT_NEAR(MtfAt(s.lineSpreads.vertical, scale, frequency), s.columnSection[i], kRounding) << i;
  }
  EXPECT_EQ(MtfAt(s.lineSpreads.horizontal, scale, s.scales.frequencyRange), 0.0);
}

TEST(Simulation, LineSpreadMtfOfAPerfectEyeIsTheClosedFormAtAnyFrequency) {
  const SimulatedEye simulated = Simulated(PerfectEye(Millimetres(3.0)), kRings);
  constexpr double kFlatMtfSampling = 9.5e-4;  // the staircase of the pupil's edge
  for (double share = 0.0005; share < 1.0; share += 0.00171) {
    const double expected = 2.0 / std::numbers::pi * (std::acos(share) - share * std::sqrt(1.0 - share * share));
    const CyclesPerDegree frequency = share * simulated.results.scales.frequencyRange;
    EXPECT_NEAR(MtfAt(simulated.results.lineSpreads.vertical, simulated.results.scales.library, frequency), expected,
                kFlatMtfSampling)
        << share;
  }
}

}  // namespace
}  // namespace orvanel::evaluation
