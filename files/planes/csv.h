// CSV writer for one plane.
#ifndef ORVANEL_FILES_PLANES_CSV_H
#define ORVANEL_FILES_PLANES_CSV_H

#include <string>

#include "base/layers.h"
#include "files/planes/plane_set.h"

namespace orvanel::files {

// The set's one plane as 256 lines of 256 numbers with commas. Each number is the shortest text that reads back
// as the same number, or NaN. There is no header: the summary has names and units of all planes.
std::string EncodeCsv(const PlaneSet& set);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_CSV_H
