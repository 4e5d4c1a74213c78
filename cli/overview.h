// One sheet with every picture of a simulation.
#ifndef ORVANEL_CLI_OVERVIEW_H
#define ORVANEL_CLI_OVERVIEW_H

#include <string>
#include <vector>

#include "cli/eye_file.h"
#include "cli/png.h"
#include "cli/scales.h"
#include "cli/simulation.h"

namespace orvanel::cli {

ColourPicture DrawOverview(const Eye& eye, const Simulation& simulation, const Scales& scales,
                           const std::vector<std::string>& warnings);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_OVERVIEW_H
