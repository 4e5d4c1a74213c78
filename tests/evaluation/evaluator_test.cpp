// Tests that the numbers of a batch are those of a simulation of the same eye.
#include "evaluation/evaluator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/error.h"
#include "evaluation/errors.h"
#include "eye/adjustments.h"
#include "eye/rms.h"
#include "targets/sector_star.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::evaluation {
namespace {

TEST(Evaluator, HasTheBitsOfASimulation) {
  const Eye eye = StandardObserver();
  const Results simulation = Simulated(eye, {{0.5, Gap::kRight}}).results;
  const Scales& scales = simulation.scales;
  MetricChoice choice{MetricsNamed("strehl,strehl_peak,half_width,frequency_range,rms"), {CyclesPerDegree(7.5)}, {0.5}};
  const std::vector<double> expected = {simulation.strehl,
                                        simulation.strehlPeak,
                                        scales.library.halfWidth.value(),
                                        scales.optical.halfWidth.value(),
                                        scales.frequencyRange.value(),
                                        scales.opticalCutOff.value(),
                                        Rms(eye.coefficients.osa(), 2).value(),
                                        Rms(eye.coefficients.osa(), 3).value(),
                                        MtfAt(simulation.lineSpreads.horizontal, scales.library, CyclesPerDegree(7.5)),
                                        MtfAt(simulation.lineSpreads.vertical, scales.library, CyclesPerDegree(7.5)),
                                        simulation.rings[0].effectiveAcuity,
                                        OpticalAcuity(simulation.rings[0].effectiveAcuity, scales),
                                        0.0};
  EXPECT_EQ(Evaluator().Measure(eye, choice), expected);
}

TEST(Evaluator, TheStrehlRatioDoesNotDependOnWhatElseIsAskedFor) {
  const Eye eye = StandardObserver();
  const double alone = Evaluator().Measure(eye, {MetricsNamed("strehl"), {}, {}})[0];
  EXPECT_EQ(Evaluator().Measure(eye, {MetricsNamed("strehl,mtf_area"), {}, {}})[0], alone);
  EXPECT_EQ(Evaluator().Measure(eye, {MetricsNamed("strehl,strehl_peak"), {}, {}})[0], alone);
  for (const Need need : {Need::kPsf, Need::kMtf, Need::kWavefront, Need::kImages}) {
    EXPECT_EQ(Evaluator().Measure(eye, {MetricsNamed("strehl"), {}, {}}, {need})[0], alone);
  }
}

TEST(Evaluator, ThePeakBetweenSamplesDoesNotDependOnWhatElseIsAskedFor) {
  const Eye eye = StandardObserver();
  const double alone = Evaluator().Measure(eye, {MetricsNamed("strehl_peak"), {}, {}})[0];
  EXPECT_GT(alone, Evaluator().Measure(eye, {MetricsNamed("strehl"), {}, {}})[0]);
  EXPECT_EQ(Evaluator().Measure(eye, {MetricsNamed("strehl_peak,mtf_area"), {}, {}})[0], alone);
}

TEST(Evaluator, ColumnsOfBothScalesHaveOneRatio) {
  MetricChoice choice{{}, {}, {0.3, 0.5, 1.0}};
  for (const Metric& metric : Metrics()) {
    if (IsFor(metric, choice.model)) choice.metrics.push_back(&metric);
  }
  const std::vector<std::string> columns = Columns(choice);
  const std::vector<double> values = Evaluator().Measure(StandardObserver(), choice);
  const auto value = [&](const std::string& name) {
    return values.at(static_cast<std::size_t>(std::find(columns.begin(), columns.end(), name) - columns.begin()));
  };
  const double ratio = 2.0 / (17.0 * std::atan(1.0 / 17.0));
  constexpr double kRounding = 1e-12;
  int pairs = 0;
  for (const std::string& column : columns) {
    const std::string ending = "_optical_scale";
    if (!column.ends_with(ending) || column.starts_with("cutoff")) continue;
    const double quotient = value(column.substr(0, column.size() - ending.size()) + "_library_scale") / value(column);
    EXPECT_NEAR(std::max(quotient, 1.0 / quotient), ratio, kRounding) << column;
    ++pairs;
  }
  EXPECT_EQ(pairs, 4);  // half width and three rings
  EXPECT_NEAR(value("mtf_frequency_range_cpd_library_scale") / value("cutoff_cpd_optical_scale"), ratio, kRounding);
}

TEST(Evaluator, OneEyeLeavesNothingBehindForTheNext) {
  const Eye eye = StandardObserver();
  Eye other = eye;
  other.pupil = Millimetres(3.5);
  SetTerm(other, 4, -0.3);
  const MetricChoice choice{UsualMetrics(false), {CyclesPerDegree(5)}, {}};
  Evaluator evaluator;
  const std::vector<double> first = evaluator.Measure(eye, choice);
  EXPECT_NE(evaluator.Measure(other, choice), first);
  EXPECT_EQ(evaluator.Measure(eye, choice), first);
}

TEST(Evaluator, TheAreaUnderAPerfectEyesMtfIsThatOfTheDiffractionLimit) {
  Eye eye = StandardObserver();
  eye.coefficients = {kOsaConvention, {0.0}};
  const std::vector<double> values = Evaluator().Measure(eye, {MetricsNamed("mtf_area,frequency_range"), {}, {}});
  // The integral of (2/pi) (arccos x - x sqrt(1 - x^2)) from 0 to 1 is 4 / (3 pi). No sample is further from the curve
  // than the staircase of the pupil's edge makes it, and straight lines between them lose less than 1e-5.
  constexpr double kFlatMtfSampling = 9.5e-4, kStraightLines = 1e-5;
  const double expected = 4.0 / (3.0 * 3.14159265358979);
  EXPECT_NEAR(values[0] / values[2], expected, kFlatMtfSampling + kStraightLines);
  EXPECT_NEAR(values[1], 1.0, kFlatMtfSampling / expected);
}

TEST(Evaluator, CountsWhatIsUnlikeAnEyeWhateverElseIsAskedFor) {
  Eye eye = StandardObserver();
  const MetricChoice choice{MetricsNamed("rms"), {}, {}};
  Evaluator evaluator;
  EXPECT_EQ(evaluator.Measure(eye, choice).back(), 0.0);
  SetTerm(eye, 4, 80.0);
  EXPECT_EQ(evaluator.Measure(eye, choice).back(), 1.0);
  eye.pupil = Millimetres(0.4);
  EXPECT_EQ(evaluator.Measure(eye, choice).back(), 2.0);
}

TEST(Evaluator, AnEyeThatCannotBeSimulatedIsRefused) {
  Eye eye = StandardObserver();
  const MetricChoice choice{MetricsNamed("strehl,rms"), {}, {}};
  Evaluator evaluator;
  SetTerm(eye, 4, 1e9);
  EXPECT_THROW(evaluator.Measure(eye, choice), Error);
  SetTerm(eye, 4, 0.0);
  SetTerm(eye, 35, 0.1);
  EXPECT_THROW(evaluator.Measure(eye, choice), Error);
  EXPECT_NO_THROW(Evaluator().Measure(eye, {MetricsNamed("rms"), {}, {}}));
}

TEST(Evaluator, ResultsHaveWhatIsNeededAndNothingOfTheEyeBefore) {
  const Eye eye = StandardObserver();
  Evaluator evaluator;
  evaluator.Evaluate(eye, {Need::kUndersampled, Need::kWavefront, Need::kWavefrontRange, Need::kStrehl,
                           Need::kStrehlPeak, Need::kPsf, Need::kMtf, Need::kSections, Need::kLineSpreads});
  const Results& results = evaluator.Evaluate(eye, {Need::kPsf});
  EXPECT_EQ(results.psf.size(), std::size_t{ORVANEL_PLANE_SAMPLES});
  EXPECT_TRUE(results.mtf.empty());
  EXPECT_TRUE(results.wavefront.map.empty());
  EXPECT_EQ(results.wavefront.rms, Micrometres(0.0));
  EXPECT_EQ(results.wavefront.steepestStep, Micrometres(0.0));
  EXPECT_EQ(results.strehl, 0.0);
  EXPECT_EQ(results.strehlPeak, 0.0);
  EXPECT_EQ(results.rowSection, Curve{});
  EXPECT_EQ(results.lineSpreads.vertical, LineSpread{});
  EXPECT_EQ(results.pupil, eye.pupil);
}

TEST(Evaluator, KeepsThePlanesOfItsResults) {
  Eye eye = StandardObserver();
  Evaluator evaluator;
  const double* const psf = evaluator.Evaluate(eye, {Need::kPsf}).psf.data();
  SetTerm(eye, 4, 0.1);
  EXPECT_TRUE(evaluator.Evaluate(eye, {}).psf.empty());
  EXPECT_EQ(evaluator.Evaluate(eye, {Need::kPsf, Need::kMtf}).psf.data(), psf);
}

TEST(Evaluator, GoesOnAfterAMove) {
  const Eye eye = StandardObserver();
  Evaluator evaluator;
  const Plane star = SectorStar();
  const PrecomputedObject object = evaluator.Precompute(star);
  Plane before, after;
  evaluator.Evaluate(eye, {Need::kImages});
  evaluator.ImageOf(object, ImageKind::kTotalLight, before);
  Evaluator moved = std::move(evaluator);
  EXPECT_EQ(moved.results().pupil, eye.pupil);
  moved.ImageOf(object, ImageKind::kTotalLight, after);
  EXPECT_EQ(after, before);
  EXPECT_EQ(moved.ImageOf(star, ImageKind::kTotalLight), before);
}

TEST(Evaluator, FindsTheFocusOfItsModel) {
  const Eye eye = StandardObserver();
  const FocusRequest request{FocusMethodsOf(ModelKind::kClassic).front()};
  const BestFocus best = Evaluator().FindBestFocus(eye, request);
  const BestFocus expected = MakeModel({ModelKind::kClassic, {}})->FindBestFocus(eye, request);
  EXPECT_EQ(best.eye.coefficients, expected.eye.coefficients);
  EXPECT_GT(best.after.strehl, best.before.strehl);
  EXPECT_EQ(best.after.strehl, expected.after.strehl);
}

// A model reads only the coefficients, so that its results would be those of an eye without the prescription.
TEST(Evaluator, RefusesAnEyeWhosePrescriptionIsNotAdded) {
  Eye eye = StandardObserver();
  eye.prescription = PowerVector{Dioptres(-1.0), Dioptres(0.0), Dioptres(0.0)};
  EXPECT_THROW(Evaluator().Evaluate(eye, {Need::kStrehl}), PrescriptionPending);
  const FocusRequest request{FocusMethodsOf(ModelKind::kClassic).front()};
  EXPECT_THROW(Evaluator().FindBestFocus(eye, request), PrescriptionPending);
  EXPECT_NO_THROW(Evaluator().Evaluate(Adjusted(eye, {}), {Need::kStrehl}));
}

TEST(Evaluator, AColumnHasItsValue) {
  const SimulatedEye simulated = Simulated(StandardObserver(), {});
  EXPECT_EQ(ValueOf(simulated.eye, simulated.results, "strehl_ratio_peak"), simulated.results.strehlPeak);
  EXPECT_EQ(ValueOf(simulated.eye, simulated.results, "cutoff_cpd_optical_scale"),
            simulated.results.scales.opticalCutOff.value());
}

// For each eye of one pupil the columns left out are what the record has instead.
TEST(Evaluator, ConstantsAreTheColumnsOfEveryEyeOfThePupil) {
  const Millimetres pupil(5.3);
  MetricChoice choice{MetricsNamed("half_width,frequency_range"), {}, {}};
  choice.doubts = false;
  Evaluator evaluator;
  Eye eye;
  eye.pupil = pupil;
  eye.coefficients = {kLibraryConvention, {0, 0, 0, 1e-4, -2e-4}};
  const std::vector<double> values = evaluator.Measure(eye, choice);
  const auto constants = ConstantsOf(pupil);
  const std::vector<std::string> columns = Columns(choice);
  ASSERT_EQ(constants.size(), columns.size());
  for (std::size_t i = 0; i < columns.size(); ++i) {
    EXPECT_EQ(constants[i].first, columns[i]);
    EXPECT_EQ(constants[i].second, values[i]);
  }
}

}  // namespace
}  // namespace orvanel::evaluation
