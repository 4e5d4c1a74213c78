// The numbers of a batch are those of a simulation of the same eye.
#include "cli/batch/eye_meter.h"

#include <gtest/gtest.h>

#include "cli/error.h"
#include "cli/eyes/eye_file.h"
#include "cli/eyes/preparation.h"
#include "cli/rms.h"

namespace orvanel::cli {
namespace {

Eye StandardObserver() { return ReadEyeFile(ORVANEL_EYES "/standard_observer_6mm.json"); }

TEST(EyeMeter, HasTheBitsOfASimulation) {
  const Eye eye = StandardObserver();
  const Simulation simulation = Simulate(eye.pupil, ToLibrary(eye.convention, eye.coefficients), {{0.5, Gap::kRight}});
  const Scales scales = ScalesOf(simulation);
  MetricChoice choice{MetricsNamed("strehl,half_width,frequency_range,rms"), {CyclesPerDegree(7.5)}, {0.5}};
  const std::vector<double> expected = {simulation.strehl,
                                        scales.library.halfWidth.value(),
                                        scales.optical.halfWidth.value(),
                                        simulation.frequencyRange.value(),
                                        scales.opticalCutOff.value(),
                                        Rms(OsaCoefficients(eye), 2).value(),
                                        Rms(OsaCoefficients(eye), 3).value(),
                                        MtfAt(simulation.rowSection, scales.library, CyclesPerDegree(7.5)),
                                        MtfAt(simulation.columnSection, scales.library, CyclesPerDegree(7.5)),
                                        simulation.rings[0].effectiveAcuity,
                                        Acuity(simulation.rings[0].diameter, scales.optical)};
  EXPECT_EQ(EyeMeter(choice, false).Measure(eye), expected);
}

TEST(EyeMeter, TheStrehlRatioDoesNotDependOnWhatElseIsAskedFor) {
  const Eye eye = StandardObserver();
  const double alone = EyeMeter({MetricsNamed("strehl"), {}, {}}, false).Measure(eye)[0];
  EXPECT_EQ(EyeMeter({MetricsNamed("strehl,mtf_area"), {}, {}}, false).Measure(eye)[0], alone);
  EXPECT_EQ(EyeMeter({MetricsNamed("strehl"), {}, {}}, true).Measure(eye)[0], alone);
}

TEST(EyeMeter, OneEyeLeavesNothingBehindForTheNext) {
  const Eye eye = StandardObserver();
  Eye other = eye;
  other.pupil = Millimetres(3.5);
  other.coefficients[4] = -0.3;
  EyeMeter meter({UsualMetrics(false), {CyclesPerDegree(5)}, {}}, false);
  const std::vector<double> first = meter.Measure(eye);
  EXPECT_NE(meter.Measure(other), first);
  EXPECT_EQ(meter.Measure(eye), first);
}

TEST(EyeMeter, TheAreaUnderAPerfectEyesMtfIsThatOfTheDiffractionLimit) {
  Eye eye = StandardObserver();
  for (double& c : eye.coefficients) c = 0.0;
  const std::vector<double> values = EyeMeter({MetricsNamed("mtf_area,frequency_range"), {}, {}}, false).Measure(eye);
  // The integral of (2/pi) (arccos x - x sqrt(1 - x^2)) from 0 to 1 is 4 / (3 pi); the pupil's edge is made of samples.
  EXPECT_NEAR(values[0] / values[2], 4.0 / (3.0 * 3.14159265358979), 0.005);
  EXPECT_NEAR(values[1], 1.0, 0.01);
}

TEST(EyeMeter, AnEyeThatCannotBeSimulatedIsRefused) {
  Eye eye = StandardObserver();
  EyeMeter meter({MetricsNamed("strehl,rms"), {}, {}}, false);
  eye.coefficients[4] = 1e9;
  EXPECT_THROW(meter.Measure(eye), Error);
  eye.coefficients[4] = 0.0;
  eye.coefficients.resize(40);
  eye.coefficients[35] = 0.1;
  EXPECT_THROW(meter.Measure(eye), Error);
  EXPECT_NO_THROW(EyeMeter({MetricsNamed("rms"), {}, {}}, false).Measure(eye));
}

// For each eye of one pupil the columns left out are what the record has instead.
TEST(EyeMeter, ConstantsAreTheColumnsOfEveryEyeOfThePupil) {
  const Millimetres pupil(5.3);
  MetricChoice choice{MetricsNamed("half_width,frequency_range"), {}, {}};
  EyeMeter meter(choice, false);
  Eye eye;
  eye.pupil = pupil;
  eye.coefficients = {0, 0, 0, 1e-4, -2e-4};
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
}  // namespace orvanel::cli
