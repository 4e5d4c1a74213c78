// Reports the comparison of two eyes: as text and as JSON.
#ifndef ORVANEL_CLI_QUALITY_COMPARISON_REPORT_H
#define ORVANEL_CLI_QUALITY_COMPARISON_REPORT_H

#include <string>

#include "base/layers.h"
#include "evaluation/comparison/comparison.h"

namespace orvanel::cli {

// The lines of each eye, then a line for each number: A, B, and B - A.
std::string ComparisonText(const Comparison& comparison);

std::string ComparisonJson(const Comparison& comparison);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_QUALITY_COMPARISON_REPORT_H
