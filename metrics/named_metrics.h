// Parses lists of metrics. The table of metrics and the catalogue of image quality have one name space.
#ifndef ORVANEL_METRICS_NAMED_METRICS_H
#define ORVANEL_METRICS_NAMED_METRICS_H

#include <string_view>
#include <vector>

#include "base/layers.h"
#include "metrics/metrics.h"
#include "metrics/quality/catalogue.h"

namespace orvanel::metrics {

struct NamedMetrics {
  std::vector<const Metric*> table;
  std::vector<QualityMetric> quality;
};

// Parses "rms,VSX": each metric once, in this order. A name is looked up in the table, then in the catalogue, where
// letter case does not count. "all" means all metrics of the model. Throws UnknownMetric and MetricOfPhysicalModel.
NamedMetrics AnyMetricsNamed(std::string_view list, ModelKind model);

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_NAMED_METRICS_H
