// Lists the metrics of an eye: names, units, needs, and values as functions of results.
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

// The input of all metrics.
struct MetricInput {
  const Results& results;
  const Coefficients& osa;  // of the eye: orthonormal, micrometres, y up
  std::size_t doubts = 0;   // the number of EyeWarnings
};

struct Column {
  const char* name;  // with unit and scale
  const char* unit;  // "1" for pure numbers
};

enum class Of { kPupil, kEye };

// The models that give a metric.
enum class For { kBoth, kClassic, kPhysical };

struct Metric {
  const char* word;         // on the command line
  const char* description;  // for help
  Needs needs;              // of the results, in addition to pupil and scales
  Of of;                    // kPupil: depends only on the pupil
  For models;
  bool usual;  // computed by default
  std::vector<Column> columns;
  void (*compute)(const MetricInput& eye, std::vector<double>& values);  // appends one value for each column
};

std::span<const Metric> Metrics();
bool IsFor(const Metric& metric, ModelKind model);

// The metrics and columns that a host requests.
struct MetricChoice {
  std::vector<const Metric*> metrics;
  std::vector<CyclesPerDegree> mtfAt;  // on the model's scale
  std::vector<double> acuities;        // of rings, on the library scale
  bool doubts = true;                  // the column "implausible"
  ModelKind model = ModelKind::kClassic;
};

// The metric of this word; null if the model has none.
const Metric* MetricNamed(std::string_view word, ModelKind model);

// The words of a model's metrics, separated by commas.
std::string MetricWords(ModelKind model);

// Parses "strehl,rms": each metric once, in this order. Throws Error.
std::vector<const Metric*> MetricsNamed(std::string_view list, ModelKind model = ModelKind::kClassic);

// The default metrics.
//   samePupil  true if all rows have the same pupil; then metrics that depend only on the pupil are left out
std::vector<const Metric*> UsualMetrics(bool samePupil, ModelKind model = ModelKind::kClassic);

// Adds the undersampled share if it is missing, since it shows whether results of the grid are valid.
void AddUndersampled(MetricChoice& choice);

constexpr const char* kUndersampledColumn = "undersampled";

// The names of all columns, with unit and scale. The last, "implausible", counts values of pupil and refraction that
// are unlike those of a human eye.
std::vector<std::string> Columns(const MetricChoice& choice);

// The results that these columns need.
Needs NeedsOf(const MetricChoice& choice);

// The value of one column of the table.
double ValueOf(std::string_view column, const MetricInput& input);

// The values of all columns. Throws Error if one of them is not a finite number.
std::vector<double> Values(const MetricChoice& choice, const MetricInput& input);

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_METRICS_H
