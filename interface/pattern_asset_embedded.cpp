// The sector star where the library embeds it among its constants.
#include "interface/pattern_asset.h"
#include "targets/sector_star.h"

namespace orvanel {

void LoadPatternAsset(double* pattern) { targets::LoadSectorStar(pattern); }

}  // namespace orvanel
