// Names of metrics of image quality in lists, and the words for their origin, reference and notes.
#ifndef ORVANEL_METRICS_QUALITY_NAMES_H
#define ORVANEL_METRICS_QUALITY_NAMES_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/layers.h"
#include "metrics/quality/quality.h"

namespace orvanel::metrics {

// Parses "VSX,srx": names of the catalogue in any letter case, each metric once, in this order. "all" means all
// metrics, in the order of the catalogue. Throws UnknownMetric, with the names that are nearest.
std::vector<QualityMetric> QualityMetricsNamed(std::string_view list);

// The same, and the MTF at frequencies in cycles/degree, mean over all directions: "VSX,MTF@10". They replace the
// metrics and frequencies of the request. Throws Error for a frequency that is none.
void NameMetrics(std::string_view list, QualityRequest& request);

// "MTF@10".
std::string MtfName(double frequencyCpd);

// A number that a request asks for.
struct QualityColumn {
  std::string name;       // of the catalogue, or "MTF@10"
  const char* unit = "";  // "1" for pure numbers
  bool higherIsBetter = true;
  bool isSmooth = true;  // in the modes
  bool hasZero = true;   // the value may be compared by ratios; not so ENT, whose zero depends on the unit of area
};

// The metrics, then the MTF at the frequencies; and their values.
std::vector<QualityColumn> ColumnsOf(const QualityRequest& request);
std::vector<double> ValuesOf(const Quality& quality);

// All names, and those that a slip of the keyboard may have meant; separated by commas.
std::string QualityMetricNames();
std::string QualityMetricNamesNear(std::string_view name);

// The name of a column of its values: "VSX_origin_best_reference_same_light_physical". It has the unit, and what the
// values depend on: the origin, the reference, the Gaussian of NS, and whether the contrast sensitivity is a user's.
std::string ColumnNameOf(QualityMetric metric, const QualityRequest& request);

// "axis", "peak", "centroid", "best".
const char* Word(QualityOrigin origin);
std::optional<QualityOrigin> QualityOriginNamed(std::string_view word);

// "same-light", "monochromatic".
const char* Word(QualityReference reference);
std::optional<QualityReference> QualityReferenceNamed(std::string_view word);

// "place-not-unique", and a sentence without its full stop; both empty for kNone.
const char* Word(QualityNote note);
std::string TextOf(QualityNote note);

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_QUALITY_NAMES_H
