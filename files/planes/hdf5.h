// HDF5 files: all planes of an eye with everything that is said about them.
#ifndef ORVANEL_FILES_PLANES_HDF5_H
#define ORVANEL_FILES_PLANES_HDF5_H

#include <string>

#include "base/layers.h"
#include "files/planes/plane_set.h"

namespace orvanel::files {

// All planes as an HDF5 file: a 256 x 256 dataset of doubles for each plane, with the attributes "units", "description"
// and its spacings; the facts about the eye are attributes of the root group. In the oldest
// version of the format, which every program reads. No times, so that the same planes give the same bytes.
std::string EncodeHdf5(const PlaneSet& set);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_HDF5_H
