// HDF5 writer for all planes of an eye, with their attributes.
#ifndef ORVANEL_FILES_PLANES_HDF5_H
#define ORVANEL_FILES_PLANES_HDF5_H

#include <string>

#include "base/layers.h"
#include "files/planes/plane_set.h"

namespace orvanel::files {

// All planes as an HDF5 file: for each plane a 256 x 256 dataset of doubles with the attributes "units", "description"
// and its spacings. The facts about the eye are attributes of the root group. The format has the oldest version, which
// every program reads. It has no times, so that the same planes give the same bytes.
std::string EncodeHdf5(const PlaneSet& set);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_HDF5_H
