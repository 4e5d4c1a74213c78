// Formats the version of the header and the name of the kernels.
#include "cli/version.h"

#include "orvanel/optics_engine.h"
#include "orvanel/orvanel.h"

namespace orvanel::cli {

std::string VersionText() { return "orvanel " ORVANEL_VERSION "\nkernels " + std::string(KernelVariant()); }

}  // namespace orvanel::cli
