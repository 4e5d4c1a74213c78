// Defines the table of metrics, and the columns of frequencies and rings.
#include "metrics/metrics.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/split.h"
#include "eye/refraction.h"
#include "eye/rms.h"
#include "metrics/errors.h"
#include "models/sampling.h"

namespace orvanel::metrics {
namespace {

using Numbers = std::vector<double>;

void AddRefraction(const PowerVector& powers, Numbers& values) {
  const Refraction refraction = ToRefraction(powers, CylinderSign::kMinus);
  values.insert(values.end(), {refraction.sphere.value(), refraction.cylinder.value(), refraction.axis.value()});
}

// The area by the trapezoidal rule; the MTF is 0 at the cut-off, after the last sample.
double Area(const Curve& section) {
  double sum = section[0] / 2.0;
  for (std::size_t i = 1; i < section.size(); ++i) sum += section[i];
  return sum;
}

const std::vector<Metric>& Table() {  // NOLINT(readability-function-size): a table
  static const std::vector<Metric> kTable = {
      {"strehl",
       "Strehl ratio of the brightest sample",
       {Need::kStrehl},
       Of::kEye,
       For::kClassic,
       true,
       {{"strehl_ratio", "1"}},
       [](const MetricInput& eye, Numbers& values) { values.push_back(eye.results.strehl); }},
      {"strehl_peak",
       "Strehl ratio of the peak between the samples",
       {Need::kStrehlPeak},
       Of::kEye,
       For::kClassic,
       true,
       {{"strehl_ratio_peak", "1"}},
       [](const MetricInput& eye, Numbers& values) { values.push_back(eye.results.strehlPeak); }},
      {kUndersampledColumn,
       "share of the pupil, 0 to 1, where the wavefront is too steep for the samples",
       {Need::kUndersampled},
       Of::kEye,
       For::kClassic,
       true,
       {{kUndersampledColumn, "1"}},
       [](const MetricInput& eye, Numbers& values) { values.push_back(eye.results.undersampled); }},
      {"half_width",
       "half extent of the PSF window on the retina, both scales",
       {},
       Of::kPupil,
       For::kClassic,
       true,
       {{"psf_half_width_mm_library_scale", "mm"}, {"psf_half_width_mm_optical_scale", "mm"}},
       [](const MetricInput& eye, Numbers& values) {
         values.push_back(eye.results.scales.library.halfWidth.value());
         values.push_back(eye.results.scales.optical.halfWidth.value());
       }},
      {"frequency_range",
       "frequency at which the MTF ends, both scales",
       {},
       Of::kPupil,
       For::kClassic,
       true,
       {{"mtf_frequency_range_cpd_library_scale", "cycles/degree"}, {"cutoff_cpd_optical_scale", "cycles/degree"}},
       [](const MetricInput& eye, Numbers& values) {
         values.push_back(eye.results.scales.frequencyRange.value());
         values.push_back(eye.results.scales.opticalCutOff.value());
       }},
      {"rms",
       "RMS of the wavefront, orders 2 and above, 3 and above",
       {},
       Of::kEye,
       For::kBoth,
       true,
       {{"rms_um_orders_2_and_above", "um"}, {"rms_um_orders_3_and_above", "um"}},
       [](const MetricInput& eye, Numbers& values) {
         values.push_back(Rms(eye.osa, kLowestOrderThatBlurs).value());
         values.push_back(Rms(eye.osa, kLowestHigherOrder).value());
       }},
      {"rms_orders",
       "RMS of each order from 2 to 6",
       {},
       Of::kEye,
       For::kBoth,
       false,
       {{"rms_um_order_2", "um"},
        {"rms_um_order_3", "um"},
        {"rms_um_order_4", "um"},
        {"rms_um_order_5", "um"},
        {"rms_um_order_6", "um"}},
       [](const MetricInput& eye, Numbers& values) {
         for (int n = 2; n <= 6; ++n) values.push_back(Rms(eye.osa, n, n).value());
       }},
      {"refraction",
       "sphere, cylinder and axis by least squares",
       {},
       Of::kEye,
       For::kBoth,
       true,
       {{"refraction_sphere_d_least_squares", "D"},
        {"refraction_cylinder_d_least_squares", "D"},
        {"refraction_axis_deg_least_squares", "degrees"}},
       [](const MetricInput& eye, Numbers& values) {
         AddRefraction(LeastSquaresRefraction(eye.osa, eye.results.pupil), values);
       }},
      {"paraxial",
       "sphere, cylinder and axis at the centre of the pupil",
       {},
       Of::kEye,
       For::kBoth,
       false,
       {{"refraction_sphere_d_paraxial", "D"},
        {"refraction_cylinder_d_paraxial", "D"},
        {"refraction_axis_deg_paraxial", "degrees"}},
       [](const MetricInput& eye, Numbers& values) {
         AddRefraction(ParaxialRefraction(eye.osa, eye.results.pupil), values);
       }},
      {"power_vector",
       "M, J0 and J45 by least squares",
       {},
       Of::kEye,
       For::kBoth,
       false,
       {{"refraction_m_d_least_squares", "D"},
        {"refraction_j0_d_least_squares", "D"},
        {"refraction_j45_d_least_squares", "D"}},
       [](const MetricInput& eye, Numbers& values) {
         const PowerVector powers = LeastSquaresRefraction(eye.osa, eye.results.pupil);
         values.insert(values.end(), {powers.m.value(), powers.j0.value(), powers.j45.value()});
       }},
      {"mtf_area",
       "area under the mean of both sections of the MTF, and its ratio to the diffraction limit",
       {Need::kSections},
       Of::kEye,
       For::kClassic,
       true,
       {{"mtf_area_cpd_library_scale", "cycles/degree"}, {"mtf_area_over_diffraction_limit", "1"}},
       [](const MetricInput& eye, Numbers& values) {
         const double samples = (Area(eye.results.rowSection) + Area(eye.results.columnSection)) / 2.0;
         values.push_back(samples * eye.results.scales.library.step.value());
         values.push_back(samples / Area(eye.results.diffractionLimit));
       }},
      {"strehl_axis",
       "Strehl ratio on the axis",
       {Need::kStrehl},
       Of::kEye,
       For::kPhysical,
       true,
       {{"strehl_ratio_axis_physical", "1"}},
       [](const MetricInput& eye, Numbers& values) { values.push_back(eye.results.physical->strehl.axis); }},
      {"strehl_peak",
       "Strehl ratio at the peak, and the place of the peak",
       {Need::kStrehlPeak},
       Of::kEye,
       For::kPhysical,
       true,
       {{"strehl_ratio_peak_physical", "1"},
        {"psf_peak_x_arcmin_physical", "arcmin"},
        {"psf_peak_y_arcmin_physical", "arcmin"}},
       [](const MetricInput& eye, Numbers& values) {
         const physical::StrehlRatios& strehl = eye.results.physical->strehl;
         values.insert(values.end(), {strehl.peak, strehl.peakX, strehl.peakY});
       }},
      {"cutoff",
       "cut-off frequency of the pupil",
       {},
       Of::kPupil,
       For::kPhysical,
       true,
       {{"cutoff_cpd_physical", "cycles/degree"}},
       [](const MetricInput& eye, Numbers& values) { values.push_back(eye.results.physical->cutOff.value()); }},
      {"reference",
       "wavelength at which the coefficients hold, and 1 if it is assumed",
       {},
       Of::kEye,
       For::kPhysical,
       true,
       {{"reference_wavelength_nm_physical", "nm"}, {"reference_wavelength_assumed_physical", "1"}},
       [](const MetricInput& eye, Numbers& values) {
         const PhysicalResults& own = *eye.results.physical;
         values.insert(values.end(), {own.reference.value(), own.referenceAssumed ? 1.0 : 0.0});
       }},
      {"pupil",
       "pupil diameter",
       {},
       Of::kPupil,
       For::kBoth,
       false,
       {{"simulated_pupil_diameter_mm", "mm"}},
       [](const MetricInput& eye, Numbers& values) { values.push_back(eye.results.pupil.value()); }},
  };
  return kTable;
}

void AddRing(const MetricInput& eye, double acuity, Numbers& values) {
  const int diameter = RingDiameter(eye.results.pupil, acuity);
  const double effectiveAcuity = EffectiveAcuity(eye.results.pupil, diameter);
  values.push_back(effectiveAcuity);
  values.push_back(OpticalAcuity(effectiveAcuity, eye.results.scales));
}

}  // namespace

std::span<const Metric> Metrics() { return Table(); }

bool IsFor(const Metric& metric, ModelKind model) {
  return metric.models == For::kBoth || (metric.models == For::kPhysical) == (model == ModelKind::kPhysical);
}

const Metric* MetricNamed(std::string_view word, ModelKind model) {
  const auto found = std::find_if(Table().begin(), Table().end(), [word, model](const Metric& metric) {
    return metric.word == word && IsFor(metric, model);
  });
  return found == Table().end() ? nullptr : &*found;
}

std::string MetricWords(ModelKind model) {
  std::string words;
  for (const Metric& metric : Table()) {
    if (IsFor(metric, model)) words += (words.empty() ? "" : ", ") + std::string(metric.word);
  }
  return words;
}

std::vector<const Metric*> MetricsNamed(std::string_view list, ModelKind model) {
  std::vector<const Metric*> chosen;
  for (const std::string_view word : Split(list)) {
    const Metric* const metric = MetricNamed(word, model);
    if (metric == nullptr) throw UnknownMetric(word, MetricWords(model));
    if (std::find(chosen.begin(), chosen.end(), metric) == chosen.end()) chosen.push_back(metric);
  }
  return chosen;
}

std::vector<const Metric*> UsualMetrics(bool samePupil, ModelKind model) {
  std::vector<const Metric*> usual;
  for (const Metric& metric : Table()) {
    if (metric.usual && IsFor(metric, model) && !(samePupil && metric.of == Of::kPupil)) usual.push_back(&metric);
  }
  return usual;
}

void AddUndersampled(MetricChoice& choice) {
  if (choice.model == ModelKind::kPhysical) return;  // its sampling follows the wavefront
  const Metric* const metric = MetricsNamed(kUndersampledColumn).front();
  const auto found = std::find(choice.metrics.begin(), choice.metrics.end(), metric);
  if (found == choice.metrics.end()) choice.metrics.push_back(metric);
}

std::vector<std::string> Columns(const MetricChoice& choice) {
  std::vector<std::string> columns;
  for (const Metric* const metric : choice.metrics) {
    for (const Column& column : metric->columns) columns.emplace_back(column.name);
  }
  for (const CyclesPerDegree frequency : choice.mtfAt) {
    const bool physical = choice.model == ModelKind::kPhysical;
    const std::string at =
        "_at_" + ShortestText(frequency.value()) + (physical ? "_cpd_physical" : "_cpd_library_scale");
    columns.push_back("mtf_horizontal" + at);
    columns.push_back("mtf_vertical" + at);
    if (physical) columns.push_back("mtf_mean_over_angle" + at);
  }
  for (const double acuity : choice.acuities) {
    const std::string ring = "effective_acuity_of_ring_" + ShortestText(acuity);
    columns.push_back(ring + "_library_scale");
    columns.push_back(ring + "_optical_scale");
  }
  if (choice.doubts) columns.emplace_back("implausible");
  return columns;
}

Needs NeedsOf(const MetricChoice& choice) {
  Needs needs;
  if (!choice.mtfAt.empty()) needs = {Need::kLineSpreads};
  for (const Metric* const metric : choice.metrics) needs = needs | metric->needs;
  return needs;
}

double ValueOf(std::string_view column, const MetricInput& input) {
  for (const Metric& metric : Table()) {
    const auto found = std::find_if(metric.columns.begin(), metric.columns.end(),
                                    [column](const Column& its) { return its.name == column; });
    if (found == metric.columns.end()) continue;
    std::vector<double> values;
    metric.compute(input, values);
    return values.at(static_cast<std::size_t>(found - metric.columns.begin()));
  }
  throw UnknownColumn(column);
}

std::vector<double> Values(const MetricChoice& choice, const MetricInput& input) {
  std::vector<double> values;
  for (const Metric* const metric : choice.metrics) metric->compute(input, values);
  if (choice.model == ModelKind::kPhysical) {
    for (const MtfAtFrequency& at : input.results.physical->mtfAt) {
      values.insert(values.end(), {at.horizontal, at.vertical, at.mean});
    }
  } else {
    for (const CyclesPerDegree frequency : choice.mtfAt) {
      values.push_back(MtfAt(input.results.lineSpreads.horizontal, input.results.scales.library, frequency));
      values.push_back(MtfAt(input.results.lineSpreads.vertical, input.results.scales.library, frequency));
    }
  }
  for (const double acuity : choice.acuities) AddRing(input, acuity, values);
  if (choice.doubts) values.push_back(static_cast<double>(input.doubts));
  const auto invalid = std::find_if(values.begin(), values.end(), [](double value) { return !std::isfinite(value); });
  if (invalid != values.end())
    throw ValueNotFinite(Columns(choice)[static_cast<std::size_t>(invalid - values.begin())]);
  for (double& value : values) value += 0.0;  // removes the sign of 0
  return values;
}

}  // namespace orvanel::metrics
