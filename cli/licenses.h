// The text that --licenses prints.
#ifndef ORVANEL_CLI_LICENSES_H
#define ORVANEL_CLI_LICENSES_H

#include <string>

#include "base/layers.h"

namespace orvanel::cli {

// The licence of Orvanel and of its third-party parts: the files LICENSE and THIRD-PARTY-NOTICES.
std::string LicensesText();

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_LICENSES_H
