// The numbers that a batch gives for each eye: their names, their columns, and what they need to be computed.
#ifndef ORVANEL_METRICS_METRICS_H
#define ORVANEL_METRICS_METRICS_H

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/layers.h"
#include "eye/eye.h"
#include "models/scales.h"
#include "models/section.h"
#include "orvanel/line_spread.h"

namespace orvanel::metrics {

// What the engine has to compute for a metric; each includes those before it.
enum class Cost { kPupil, kCoefficients, kWavefront, kStrehl, kPsf, kMtf };

// What a metric is computed from.
struct MeasuredEye {
  const Eye* eye = nullptr;
  Coefficients osa;  // orthonormal, micrometres, y upwards
  Scales scales;
  std::size_t doubts = 0;               // how many EyeWarnings has
  double undersampled = 0.0;            // share of the pupil's samples; from Cost::kWavefront on
  double strehl = 0.0;                  // from Cost::kStrehl on
  double strehlPeak = 0.0;              // where a metric needs Cost::kPsf
  const Section* rowSection = nullptr;  // from Cost::kMtf on, as the others
  const Section* columnSection = nullptr;
  const Section* diffractionLimit = nullptr;
  const LineSpreads* lineSpreads = nullptr;  // where the MTF is asked for at frequencies
};

struct Metric {
  const char* word;         // on the command line
  const char* description;  // for help
  Cost cost;
  bool usual;  // computed where nothing else is asked for
  std::vector<const char*> columns;
  void (*measure)(const MeasuredEye& eye, std::vector<double>& values);  // appends as many as there are columns
};

std::span<const Metric> Metrics();

// What is asked for.
struct MetricChoice {
  std::vector<const Metric*> metrics;
  std::vector<CyclesPerDegree> mtfAt;  // on the library scale
  std::vector<double> acuities;        // of rings, on the library scale
  bool doubts = true;                  // the column "implausible"
};

// "strehl,rms": each once, in the order asked for. Throws Error.
std::vector<const Metric*> MetricsNamed(std::string_view list);

// The metrics where nothing is asked for.
//   samePupil  all rows have one pupil; metrics of the pupil alone, the same in all rows, are left out then
std::vector<const Metric*> UsualMetrics(bool samePupil);

// Adds the undersampled share where it is not chosen: what comes from the grid is worth nothing without it.
void AddUndersampled(MetricChoice& choice);

constexpr const char* kUndersampledColumn = "undersampled";

// The names of all columns, with unit and scale. "implausible", the last, counts what of pupil and refraction is
// unlike a human eye's.
std::vector<std::string> Columns(const MetricChoice& choice);

Cost CostOf(const MetricChoice& choice);

// The values of all columns. Throws Error where one of them is no number.
std::vector<double> Values(const MetricChoice& choice, const MeasuredEye& eye);

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_METRICS_H
