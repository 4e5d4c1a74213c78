// The table of metrics, and the columns of frequencies and rings.
#include "metrics/metrics.h"

#include <algorithm>
#include <cmath>

#include "base/error.h"
#include "base/number_text.h"
#include "eye/refraction.h"
#include "eye/rms.h"
#include "models/sampling.h"

namespace orvanel::metrics {
namespace {

using Numbers = std::vector<double>;

void AddRefraction(const PowerVector& powers, Numbers& values) {
  const Refraction refraction = ToRefraction(powers, CylinderSign::kMinus);
  values.insert(values.end(), {refraction.sphere.value(), refraction.cylinder.value(), refraction.axis.value()});
}

// Under the straight lines between the samples, the last of which goes to 0 at the cut-off.
double Area(const Section& section) {
  double sum = section[0] / 2.0;
  for (std::size_t i = 1; i < section.size(); ++i) sum += section[i];
  return sum;
}

const std::vector<Metric>& Table() {  // NOLINT(readability-function-size): a table
  static const std::vector<Metric> kTable = {
      {"strehl",
       "Strehl ratio of the brightest sample",
       Cost::kStrehl,
       true,
       {"strehl_ratio"},
       [](const MeasuredEye& eye, Numbers& values) { values.push_back(eye.strehl); }},
      {"strehl_peak",
       "Strehl ratio of the peak between the samples",
       Cost::kPsf,
       true,
       {"strehl_ratio_peak"},
       [](const MeasuredEye& eye, Numbers& values) { values.push_back(eye.strehlPeak); }},
      {kUndersampledColumn,
       "share of the pupil, 0 to 1, where the wavefront is too steep for the samples",
       Cost::kWavefront,
       true,
       {kUndersampledColumn},
       [](const MeasuredEye& eye, Numbers& values) { values.push_back(eye.undersampled); }},
      {"half_width",
       "half extent of the PSF window on the retina, both scales",
       Cost::kPupil,
       true,
       {"psf_half_width_mm_library_scale", "psf_half_width_mm_optical_scale"},
       [](const MeasuredEye& eye, Numbers& values) {
         values.push_back(eye.scales.library.halfWidth.value());
         values.push_back(eye.scales.optical.halfWidth.value());
       }},
      {"frequency_range",
       "where the MTF ends, both scales",
       Cost::kPupil,
       true,
       {"mtf_frequency_range_cpd_library_scale", "cutoff_cpd_optical_scale"},
       [](const MeasuredEye& eye, Numbers& values) {
         values.push_back(FrequencyRange(eye.eye->pupil).value());
         values.push_back(eye.scales.opticalCutOff.value());
       }},
      {"rms",
       "RMS of the wavefront, orders 2 and above, 3 and above",
       Cost::kCoefficients,
       true,
       {"rms_um_orders_2_and_above", "rms_um_orders_3_and_above"},
       [](const MeasuredEye& eye, Numbers& values) {
         values.push_back(Rms(eye.osa, kLowestOrderThatBlurs).value());
         values.push_back(Rms(eye.osa, kLowestHigherOrder).value());
       }},
      {"rms_orders",
       "RMS of each order from 2 to 6",
       Cost::kCoefficients,
       false,
       {"rms_um_order_2", "rms_um_order_3", "rms_um_order_4", "rms_um_order_5", "rms_um_order_6"},
       [](const MeasuredEye& eye, Numbers& values) {
         for (int n = 2; n <= 6; ++n) values.push_back(Rms(eye.osa, n, n).value());
       }},
      {"refraction",
       "sphere, cylinder and axis by least squares",
       Cost::kCoefficients,
       true,
       {"refraction_sphere_d_least_squares", "refraction_cylinder_d_least_squares",
        "refraction_axis_deg_least_squares"},
       [](const MeasuredEye& eye, Numbers& values) {
         AddRefraction(LeastSquaresRefraction(eye.osa, eye.eye->pupil), values);
       }},
      {"paraxial",
       "sphere, cylinder and axis at the centre of the pupil",
       Cost::kCoefficients,
       false,
       {"refraction_sphere_d_paraxial", "refraction_cylinder_d_paraxial", "refraction_axis_deg_paraxial"},
       [](const MeasuredEye& eye, Numbers& values) {
         AddRefraction(ParaxialRefraction(eye.osa, eye.eye->pupil), values);
       }},
      {"power_vector",
       "M, J0 and J45 by least squares",
       Cost::kCoefficients,
       false,
       {"refraction_m_d_least_squares", "refraction_j0_d_least_squares", "refraction_j45_d_least_squares"},
       [](const MeasuredEye& eye, Numbers& values) {
         const PowerVector powers = LeastSquaresRefraction(eye.osa, eye.eye->pupil);
         values.insert(values.end(), {powers.m.value(), powers.j0.value(), powers.j45.value()});
       }},
      {"mtf_area",
       "area under the mean of both sections of the MTF, and its share of the diffraction limit's",
       Cost::kMtf,
       true,
       {"mtf_area_cpd_library_scale", "mtf_area_over_diffraction_limit"},
       [](const MeasuredEye& eye, Numbers& values) {
         const double samples = (Area(*eye.rowSection) + Area(*eye.columnSection)) / 2.0;
         values.push_back(samples * eye.scales.library.step.value());
         values.push_back(samples / Area(*eye.diffractionLimit));
       }},
      {"pupil",
       "pupil diameter",
       Cost::kPupil,
       false,
       {"simulated_pupil_diameter_mm"},
       [](const MeasuredEye& eye, Numbers& values) { values.push_back(eye.eye->pupil.value()); }},
  };
  return kTable;
}

void AddRing(const MeasuredEye& eye, double acuity, Numbers& values) {
  const int diameter = RingDiameter(eye.eye->pupil, acuity);
  const double effectiveAcuity = EffectiveAcuity(eye.eye->pupil, diameter);
  values.push_back(effectiveAcuity);
  values.push_back(OpticalAcuity(effectiveAcuity, eye.scales));
}

}  // namespace

std::span<const Metric> Metrics() { return Table(); }

std::vector<const Metric*> MetricsNamed(std::string_view list) {
  std::vector<const Metric*> chosen;
  for (std::size_t start = 0; start <= list.size();) {
    const std::size_t comma = std::min(list.find(',', start), list.size());
    const std::string_view word = list.substr(start, comma - start);
    const auto found =
        std::find_if(Table().begin(), Table().end(), [word](const Metric& metric) { return metric.word == word; });
    if (found == Table().end()) {
      std::string words;
      for (const Metric& metric : Table()) words += (words.empty() ? "" : ", ") + std::string(metric.word);
      throw Error(Quoted(word) + " is no metric; it is one of " + words);
    }
    if (std::find(chosen.begin(), chosen.end(), &*found) == chosen.end()) chosen.push_back(&*found);
    start = comma + 1;
  }
  return chosen;
}

std::vector<const Metric*> UsualMetrics(bool samePupil) {
  std::vector<const Metric*> usual;
  for (const Metric& metric : Table()) {
    if (metric.usual && !(samePupil && metric.cost == Cost::kPupil)) usual.push_back(&metric);
  }
  return usual;
}

void AddUndersampled(MetricChoice& choice) {
  const Metric* const metric = MetricsNamed(kUndersampledColumn).front();
  const auto found = std::find(choice.metrics.begin(), choice.metrics.end(), metric);
  if (found == choice.metrics.end()) choice.metrics.push_back(metric);
}

std::vector<std::string> Columns(const MetricChoice& choice) {
  std::vector<std::string> columns;
  for (const Metric* const metric : choice.metrics) {
    columns.insert(columns.end(), metric->columns.begin(), metric->columns.end());
  }
  for (const CyclesPerDegree frequency : choice.mtfAt) {
    const std::string at = "_at_" + ShortestText(frequency.value()) + "_cpd_library_scale";
    columns.push_back("mtf_horizontal" + at);
    columns.push_back("mtf_vertical" + at);
  }
  for (const double acuity : choice.acuities) {
    const std::string ring = "effective_acuity_of_ring_" + ShortestText(acuity);
    columns.push_back(ring + "_library_scale");
    columns.push_back(ring + "_optical_scale");
  }
  if (choice.doubts) columns.emplace_back("implausible");
  return columns;
}

Cost CostOf(const MetricChoice& choice) {
  Cost cost = choice.mtfAt.empty() ? Cost::kCoefficients : Cost::kMtf;
  for (const Metric* const metric : choice.metrics) cost = std::max(cost, metric->cost);
  return cost;
}

std::vector<double> Values(const MetricChoice& choice, const MeasuredEye& eye) {
  std::vector<double> values;
  for (const Metric* const metric : choice.metrics) metric->measure(eye, values);
  for (const CyclesPerDegree frequency : choice.mtfAt) {
    values.push_back(MtfAt(eye.lineSpreads->horizontal, eye.scales.library, frequency));
    values.push_back(MtfAt(eye.lineSpreads->vertical, eye.scales.library, frequency));
  }
  for (const double acuity : choice.acuities) AddRing(eye, acuity, values);
  if (choice.doubts) values.push_back(static_cast<double>(eye.doubts));
  if (!std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); })) {
    throw Error("is so far from an eye that nothing can be computed; check the units of pupil and coefficients");
  }
  for (double& value : values) value += 0.0;  // so that 0 has no sign
  return values;
}

}  // namespace orvanel::metrics
