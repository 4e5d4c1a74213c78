// The sector star where it is embedded among the constants.
#include "interface/pattern_asset.h"

// The bytes of assets/sector_star.dib.
extern "C" const unsigned char orvanel_sector_star[];

namespace orvanel {

void LoadPatternAsset(double* pattern) { DecodeBitmap(orvanel_sector_star, pattern); }

}  // namespace orvanel
