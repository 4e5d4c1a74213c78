// The built-in Siemens star (sector star).
#ifndef ORVANEL_TARGETS_SECTOR_STAR_H
#define ORVANEL_TARGETS_SECTOR_STAR_H

#include "base/layers.h"
#include "targets/plane.h"

namespace orvanel::targets {

// The star of 40 sectors: 256 x 256 samples, row-major, top row first, 0.0 for black and 1.0 for white.
void LoadSectorStar(double* pattern);

// The same as a plane of its own.
Plane SectorStar();

}  // namespace orvanel::targets

#endif  // ORVANEL_TARGETS_SECTOR_STAR_H
