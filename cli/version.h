// The text that --version prints.
#ifndef ORVANEL_CLI_VERSION_H
#define ORVANEL_CLI_VERSION_H

#include <string>

#include "base/layers.h"

namespace orvanel::cli {

// "orvanel 0.2.0", and in a second line the kernels that the library uses on this machine.
std::string VersionText();

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_VERSION_H
