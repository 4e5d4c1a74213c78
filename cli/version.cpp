// The version of the header, and the kernels in use.
#include "cli/version.h"

#include "orvanel/optics_engine.h"
#include "orvanel/orvanel.h"

namespace orvanel::cli {

std::string VersionText() { return "orvanel " ORVANEL_VERSION "\nkernels " + std::string(KernelVariant()); }

}  // namespace orvanel::cli
