// Rounds samples to 16-bit pixels.
#include "files/planes/png16.h"

#include "files/pictures/picture_pixels.h"

namespace orvanel::files {

std::string EncodePng16(const PlaneSet& set) { return EncodePicture({*set.planes.at(0).samples}, true, 16); }

}  // namespace orvanel::files
