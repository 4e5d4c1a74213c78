// HDF5 files: all planes of an eye with everything that is said about them.
#ifndef ORVANEL_CLI_FORMATS_HDF5_H
#define ORVANEL_CLI_FORMATS_HDF5_H

#include <string>

#include "cli/formats/plane_set.h"

namespace orvanel::cli {

// All planes as an HDF5 file: a 256 x 256 dataset of doubles for each plane, with the attributes "units", "description"
// and its spacings; the facts about the eye are attributes of the root group. In the oldest
// version of the format, which every program reads. No times, so that the same planes give the same bytes.
std::string EncodeHdf5(const PlaneSet& set);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_FORMATS_HDF5_H
