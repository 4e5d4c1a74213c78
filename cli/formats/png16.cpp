// From samples to 16-bit pixels.
#include "cli/formats/png16.h"

#include "cli/pictures/picture_pixels.h"

namespace orvanel::cli {

std::string EncodePng16(const PlaneSet& set) { return EncodePicture({*set.planes.at(0).samples}, true, 16); }

}  // namespace orvanel::cli
