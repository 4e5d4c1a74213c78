// PNG writer with 16 bits per sample.
#ifndef ORVANEL_FILES_PLANES_PNG16_H
#define ORVANEL_FILES_PLANES_PNG16_H

#include <string>

#include "base/layers.h"
#include "files/planes/plane_set.h"

namespace orvanel::files {

// The set's one plane in grey: round(65535 v), values outside 0 to 1 clipped.
std::string EncodePng16(const PlaneSet& set);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_PNG16_H
