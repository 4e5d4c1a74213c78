// Lists the metrics of an eye: names, units, what they need, and their values as functions of results.
#ifndef ORVANEL_METRICS_METRICS_H
#define ORVANEL_METRICS_METRICS_H

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/layers.h"
#include "eye/conventions/convention.h"
#include "models/needs.h"
#include "models/results.h"

namespace orvanel::metrics {

// What metrics are computed from.
struct MetricInput {
  const Results& results;
  const Coefficients& osa;  // of the eye: orthonormal, micrometres, y upwards
  std::size_t doubts = 0;   // how many EyeWarnings the eye has
};

struct Column {
  const char* name;  // with unit and scale
  const char* unit;  // "1" where it has none
};

enum class Of { kPupil, kEye };

struct Metric {
  const char* word;         // on the command line
  const char* description;  // for help
  Needs needs;              // of the results, beside pupil and scales
  Of of;                    // a function of the pupil alone, or of more
  bool usual;               // computed where nothing else is asked for
  std::vector<Column> columns;
  void (*compute)(const MetricInput& eye, std::vector<double>& values);  // appends as many as there are columns
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

// What the results must have for these columns.
Needs NeedsOf(const MetricChoice& choice);

// The value of one column of the table.
double ValueOf(std::string_view column, const MetricInput& input);

// The values of all columns. Throws Error where one of them is no number.
std::vector<double> Values(const MetricChoice& choice, const MetricInput& input);

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_METRICS_H
