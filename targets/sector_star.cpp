// Decodes the star that is embedded among the constants.
#include "targets/sector_star.h"

#include "orvanel/orvanel.h"
#include "targets/bitmap.h"

// The bytes of assets/sector_star.dib.
extern "C" const unsigned char orvanel_sector_star[];

namespace orvanel::targets {

void LoadSectorStar(double* pattern) { DecodeBitmap(orvanel_sector_star, pattern); }

Plane SectorStar() {
  Plane star(ORVANEL_PLANE_SAMPLES);
  LoadSectorStar(star.data());
  return star;
}

}  // namespace orvanel::targets
