// Provides the built-in Siemens star (sector star) as a plane.
#ifndef ORVANEL_TARGETS_SECTOR_STAR_H
#define ORVANEL_TARGETS_SECTOR_STAR_H

#include "base/layers.h"
#include "targets/plane.h"

namespace orvanel::targets {

// The star of DrawSectorStar.
Plane SectorStar();

}  // namespace orvanel::targets

#endif  // ORVANEL_TARGETS_SECTOR_STAR_H
