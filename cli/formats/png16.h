// PNG files with 16 bits a sample.
#ifndef ORVANEL_CLI_FORMATS_PNG16_H
#define ORVANEL_CLI_FORMATS_PNG16_H

#include <string>

#include "cli/formats/plane_set.h"

namespace orvanel::cli {

// The set's one plane in grey: round(65535 v), values outside 0 to 1 clipped.
std::string EncodePng16(const PlaneSet& set);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_FORMATS_PNG16_H
