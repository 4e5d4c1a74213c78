// MAT writer for MATLAB, Octave and SciPy.
#ifndef ORVANEL_FILES_PLANES_MAT_H
#define ORVANEL_FILES_PLANES_MAT_H

#include <string>

#include "base/layers.h"
#include "files/planes/plane_set.h"

namespace orvanel::files {

// All planes as a MAT file of version 5: a 256 x 256 matrix for each plane, its name in MATLAB's characters.
// The structures "units", "descriptions" and "spacings" have a field for each plane; "eye" has the facts. There is no
// date, so that the same planes give the same bytes.
std::string EncodeMat(const PlaneSet& set);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_MAT_H
