// Reads the sector star from the constants of the library.
#include "interface/pattern_asset.h"
#include "orvanel/sector_star.h"

namespace orvanel {

void LoadPatternAsset(double* pattern) { DrawSectorStar(pattern); }

}  // namespace orvanel
