// Decodes the star from the constants of the program.
#include "orvanel/sector_star.h"

#include "orvanel/orvanel.h"
#include "targets/bitmap.h"
#include "targets/sector_star.h"

// The bytes of assets/sector_star.dib.
extern "C" const unsigned char orvanel_sector_star[];

namespace orvanel {

void DrawSectorStar(double* plane) { targets::DecodeBitmap(orvanel_sector_star, plane); }

namespace targets {

Plane SectorStar() {
  Plane star(ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
  DrawSectorStar(star.data());
  return star;
}

}  // namespace targets
}  // namespace orvanel
