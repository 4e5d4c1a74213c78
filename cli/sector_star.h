// The library's sector star.
#ifndef ORVANEL_CLI_SECTOR_STAR_H
#define ORVANEL_CLI_SECTOR_STAR_H

#include "cli/simulation.h"

namespace orvanel::cli {

// The star as drawn: 0 and 1. Uses the exports, which serve one thread at a time.
Plane SectorStar();

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_SECTOR_STAR_H
