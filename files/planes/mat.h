// MAT files, which MATLAB, Octave and SciPy load.
#ifndef ORVANEL_FILES_PLANES_MAT_H
#define ORVANEL_FILES_PLANES_MAT_H

#include <string>

#include "base/layers.h"
#include "files/planes/plane_set.h"

namespace orvanel::files {

// All planes as a MAT file of version 5: a 256 x 256 matrix for each plane, under its name with what MATLAB allows in
// one, and the structures "units", "descriptions" and "spacings" with a field for each of them; "eye" has the facts.
// No date, so that the same planes give the same bytes.
std::string EncodeMat(const PlaneSet& set);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_MAT_H
