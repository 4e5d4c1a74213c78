// NPY files, which NumPy loads.
#ifndef ORVANEL_CLI_FORMATS_NPY_H
#define ORVANEL_CLI_FORMATS_NPY_H

#include <string>

#include "cli/formats/plane_set.h"

namespace orvanel::cli {

// The set's one plane as an NPY file of format version 1.0: little-endian doubles in C order, shape (256, 256).
std::string EncodeNpy(const PlaneSet& set);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_FORMATS_NPY_H
