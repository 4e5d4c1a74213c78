// NPY files, which NumPy loads.
#ifndef ORVANEL_CLI_NPY_H
#define ORVANEL_CLI_NPY_H

#include <string>
#include <vector>

namespace orvanel::cli {

// The bytes of an NPY file of format version 1.0: little-endian doubles in C order, shape (side, side).
std::string EncodeNpy(const std::vector<double>& plane, int side);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_NPY_H
