// TIFF writer for one plane of 32-bit floats.
#ifndef ORVANEL_FILES_PLANES_TIFF_H
#define ORVANEL_FILES_PLANES_TIFF_H

#include <string>

#include "base/layers.h"
#include "files/planes/plane_set.h"

namespace orvanel::files {

// The set's one plane as a TIFF file with one 32-bit float per sample. Its image description has description, units and
// scales, one per line. Its resolution is that on the retina (library scale) or in the pupil, in samples per
// centimetre. There is no date, so that the same plane gives the same bytes.
std::string EncodeTiff(const PlaneSet& set);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_TIFF_H
