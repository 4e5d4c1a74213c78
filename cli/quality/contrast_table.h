// Reads a contrast sensitivity from a CSV table.
#ifndef ORVANEL_CLI_QUALITY_CONTRAST_TABLE_H
#define ORVANEL_CLI_QUALITY_CONTRAST_TABLE_H

#include <string>

#include "base/layers.h"
#include "metrics/quality/contrast_sensitivity.h"

namespace orvanel::cli {

// Two columns: frequencies in cycles/degree, which rise, and sensitivities. A first row that is no number is a header.
// Throws ErrorAt with the row that is wrong, and Error.
ContrastSensitivity ReadContrastSensitivity(const std::string& file);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_QUALITY_CONTRAST_TABLE_H
