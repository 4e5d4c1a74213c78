// Describes metrics of image quality: as JSON for programs, as lines for people.
#ifndef ORVANEL_CLI_QUALITY_QUALITY_REPORT_H
#define ORVANEL_CLI_QUALITY_QUALITY_REPORT_H

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "base/layers.h"
#include "metrics/quality/quality.h"

namespace orvanel::cli {

// Origin, reference, contrast sensitivity, Gaussian, and each metric with unit, value, limit, error, note and
// definition. Numbers without a meaning are null.
nlohmann::ordered_json QualityJson(const Quality& quality, const QualityRequest& request);

// The origin, the reference and the values alone, by name, without those that are not numbers.
nlohmann::ordered_json QualityFactsJson(const Quality& quality);

// One line for each metric, then the conditions.
std::string QualityLines(const Quality& quality, const QualityRequest& request);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_QUALITY_QUALITY_REPORT_H
