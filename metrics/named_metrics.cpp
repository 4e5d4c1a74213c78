// Looks names up in both tables.
#include "metrics/named_metrics.h"

#include <algorithm>
#include <optional>
#include <string>

#include "base/split.h"
#include "metrics/errors.h"
#include "metrics/quality_names.h"

namespace orvanel::metrics {
namespace {

constexpr std::string_view kAll = "all";

template <class Item>
void AddOnce(std::vector<Item>& items, Item item) {
  if (std::find(items.begin(), items.end(), item) == items.end()) items.push_back(item);
}

void AddAll(NamedMetrics& chosen, ModelKind model) {
  for (const Metric& metric : Metrics()) {
    if (IsFor(metric, model)) AddOnce(chosen.table, &metric);
  }
  if (model != ModelKind::kPhysical) return;
  for (const QualityRow& row : QualityCatalogue()) AddOnce(chosen.quality, row.metric);
}

}  // namespace

NamedMetrics AnyMetricsNamed(std::string_view list, ModelKind model) {
  const bool physical = model == ModelKind::kPhysical;
  NamedMetrics chosen;
  for (const std::string_view name : Split(list)) {
    if (name == kAll) {
      AddAll(chosen, model);
      continue;
    }
    if (const Metric* const metric = MetricNamed(name, model)) {
      AddOnce(chosen.table, metric);
      continue;
    }
    const std::optional<QualityMetric> quality = QualityMetricNamed(name);
    if (quality && !physical) throw MetricOfPhysicalModel(name);
    if (!quality) {
      throw UnknownMetric(name,
                          MetricWords(model) + (physical ? ", " + QualityMetricNames() : "") + ", " + std::string(kAll),
                          physical ? QualityMetricNamesNear(name) : "");
    }
    AddOnce(chosen.quality, *quality);
  }
  return chosen;
}

}  // namespace orvanel::metrics
