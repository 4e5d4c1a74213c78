// TIFF files of floating-point samples, which image programs of laboratories read.
#ifndef ORVANEL_FILES_PLANES_TIFF_H
#define ORVANEL_FILES_PLANES_TIFF_H

#include <string>

#include "base/layers.h"
#include "files/planes/plane_set.h"

namespace orvanel::files {

// The set's one plane as a TIFF file of one 32-bit float a sample. Description, units and scales stand in its image
// description, one a line; its resolution is that on the retina (library scale) or in the pupil, in samples a
// centimetre. No date, so that the same plane gives the same bytes.
std::string EncodeTiff(const PlaneSet& set);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_TIFF_H
