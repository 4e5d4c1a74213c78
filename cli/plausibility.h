// What can be computed but is probably not what the user means.
#ifndef ORVANEL_CLI_PLAUSIBILITY_H
#define ORVANEL_CLI_PLAUSIBILITY_H

#include <string>
#include <vector>

#include "cli/simulation.h"

namespace orvanel::cli {

// One sentence for each doubt about the input; none for a usual eye.
std::vector<std::string> Warnings(const Simulation& simulation);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_PLAUSIBILITY_H
