// MAT files, which MATLAB, Octave and SciPy load.
#ifndef ORVANEL_CLI_FORMATS_MAT_H
#define ORVANEL_CLI_FORMATS_MAT_H

#include <string>

#include "cli/formats/plane_set.h"

namespace orvanel::cli {

// All planes as a MAT file of version 5: a 256 x 256 matrix for each plane, under its name with what MATLAB allows in
// one, and the structures "units", "descriptions" and "spacings" with a field for each of them; "eye" has the facts.
// No date, so that the same planes give the same bytes.
std::string EncodeMat(const PlaneSet& set);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_FORMATS_MAT_H
