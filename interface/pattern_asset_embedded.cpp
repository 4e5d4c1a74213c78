// Reads the sector star from the constants of the library.
#include "interface/pattern_asset.h"
#include "targets/sector_star.h"

namespace orvanel {

void LoadPatternAsset(double* pattern) { targets::LoadSectorStar(pattern); }

}  // namespace orvanel
