// The numbers of a batch are those of a simulation of the same eye.
#include "evaluation/evaluator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "base/error.h"
#include "eye/adjustments.h"
#include "eye/rms.h"
#include "tests/evaluation/simulated_eyes.h"

namespace orvanel::evaluation {
namespace {

TEST(EyeMeter, HasTheBitsOfASimulation) {
  const Eye eye = StandardObserver();
  const Simulation simulation = Simulate(eye.pupil, ToLibrary(eye.coefficients), {{0.5, Gap::kRight}});
  const Scales scales = ScalesOf(eye.pupil);
  MetricChoice choice{MetricsNamed("strehl,strehl_peak,half_width,frequency_range,rms"), {CyclesPerDegree(7.5)}, {0.5}};
  const std::vector<double> expected = {simulation.strehl,
                                        simulation.strehlPeak,
                                        scales.library.halfWidth.value(),
                                        scales.optical.halfWidth.value(),
                                        simulation.frequencyRange.value(),
                                        scales.opticalCutOff.value(),
                                        Rms(eye.coefficients.osa(), 2).value(),
                                        Rms(eye.coefficients.osa(), 3).value(),
                                        MtfAt(simulation.lineSpreads.horizontal, scales.library, CyclesPerDegree(7.5)),
                                        MtfAt(simulation.lineSpreads.vertical, scales.library, CyclesPerDegree(7.5)),
                                        simulation.rings[0].effectiveAcuity,
                                        OpticalAcuity(simulation.rings[0].effectiveAcuity, scales),
                                        0.0};
  EXPECT_EQ(EyeMeter(choice, false).Measure(eye), expected);
}

TEST(EyeMeter, TheStrehlRatioDoesNotDependOnWhatElseIsAskedFor) {
  const Eye eye = StandardObserver();
  const double alone = EyeMeter({MetricsNamed("strehl"), {}, {}}, false).Measure(eye)[0];
  EXPECT_EQ(EyeMeter({MetricsNamed("strehl,mtf_area"), {}, {}}, false).Measure(eye)[0], alone);
  EXPECT_EQ(EyeMeter({MetricsNamed("strehl,strehl_peak"), {}, {}}, false).Measure(eye)[0], alone);
  EXPECT_EQ(EyeMeter({MetricsNamed("strehl"), {}, {}}, true).Measure(eye)[0], alone);
}

TEST(EyeMeter, ThePeakBetweenSamplesDoesNotDependOnWhatElseIsAskedFor) {
  const Eye eye = StandardObserver();
  const double alone = EyeMeter({MetricsNamed("strehl_peak"), {}, {}}, false).Measure(eye)[0];
  EXPECT_GT(alone, EyeMeter({MetricsNamed("strehl"), {}, {}}, false).Measure(eye)[0]);
  EXPECT_EQ(EyeMeter({MetricsNamed("strehl_peak,mtf_area"), {}, {}}, false).Measure(eye)[0], alone);
}

TEST(EyeMeter, ColumnsOfBothScalesHaveOneRatio) {
  MetricChoice choice{{}, {}, {0.3, 0.5, 1.0}};
  for (const Metric& metric : Metrics()) choice.metrics.push_back(&metric);
  const std::vector<std::string> columns = Columns(choice);
  const std::vector<double> values = EyeMeter(choice, false).Measure(StandardObserver());
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

TEST(EyeMeter, OneEyeLeavesNothingBehindForTheNext) {
  const Eye eye = StandardObserver();
  Eye other = eye;
  other.pupil = Millimetres(3.5);
  SetTerm(other, 4, -0.3);
  EyeMeter meter({UsualMetrics(false), {CyclesPerDegree(5)}, {}}, false);
  const std::vector<double> first = meter.Measure(eye);
  EXPECT_NE(meter.Measure(other), first);
  EXPECT_EQ(meter.Measure(eye), first);
}

TEST(EyeMeter, TheAreaUnderAPerfectEyesMtfIsThatOfTheDiffractionLimit) {
  Eye eye = StandardObserver();
  eye.coefficients = {kOsaConvention, {0.0}};
  const std::vector<double> values = EyeMeter({MetricsNamed("mtf_area,frequency_range"), {}, {}}, false).Measure(eye);
  // The integral of (2/pi) (arccos x - x sqrt(1 - x^2)) from 0 to 1 is 4 / (3 pi). No sample is further from the curve
  // than the staircase of the pupil's edge makes it, and straight lines between them lose less than 1e-5.
  constexpr double kFlatMtfSampling = 9.5e-4, kStraightLines = 1e-5;
  const double expected = 4.0 / (3.0 * 3.14159265358979);
  EXPECT_NEAR(values[0] / values[2], expected, kFlatMtfSampling + kStraightLines);
  EXPECT_NEAR(values[1], 1.0, kFlatMtfSampling / expected);
}

TEST(EyeMeter, CountsWhatIsUnlikeAnEyeWhateverElseIsAskedFor) {
  Eye eye = StandardObserver();
  EyeMeter meter({MetricsNamed("rms"), {}, {}}, false);
  EXPECT_EQ(meter.Measure(eye).back(), 0.0);
  SetTerm(eye, 4, 80.0);
  EXPECT_EQ(meter.Measure(eye).back(), 1.0);
  eye.pupil = Millimetres(0.4);
  EXPECT_EQ(meter.Measure(eye).back(), 2.0);
}

TEST(EyeMeter, AnEyeThatCannotBeSimulatedIsRefused) {
  Eye eye = StandardObserver();
  EyeMeter meter({MetricsNamed("strehl,rms"), {}, {}}, false);
  SetTerm(eye, 4, 1e9);
  EXPECT_THROW(meter.Measure(eye), Error);
  SetTerm(eye, 4, 0.0);
  SetTerm(eye, 35, 0.1);
  EXPECT_THROW(meter.Measure(eye), Error);
  EXPECT_NO_THROW(EyeMeter({MetricsNamed("rms"), {}, {}}, false).Measure(eye));
}

// For each eye of one pupil the columns left out are what the record has instead.
TEST(EyeMeter, ConstantsAreTheColumnsOfEveryEyeOfThePupil) {
  const Millimetres pupil(5.3);
  MetricChoice choice{MetricsNamed("half_width,frequency_range"), {}, {}};
  choice.doubts = false;
  EyeMeter meter(choice, false);
  Eye eye;
  eye.pupil = pupil;
  eye.coefficients = {kLibraryConvention, {0, 0, 0, 1e-4, -2e-4}};
  const std::vector<double> values = meter.Measure(eye);
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
