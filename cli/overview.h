// One sheet with every picture of a simulation.
#ifndef ORVANEL_CLI_OVERVIEW_H
#define ORVANEL_CLI_OVERVIEW_H

#include "cli/png.h"
#include "cli/results.h"

namespace orvanel::cli {

ColourPicture DrawOverview(const Results& results);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_OVERVIEW_H
