// NPY writer for NumPy.
#ifndef ORVANEL_FILES_PLANES_NPY_H
#define ORVANEL_FILES_PLANES_NPY_H

#include <string>

#include "base/layers.h"
#include "files/planes/plane_set.h"

namespace orvanel::files {

// The set's one plane as an NPY file of format version 1.0: little-endian doubles in C order, shape (256, 256).
std::string EncodeNpy(const PlaneSet& set);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_NPY_H
