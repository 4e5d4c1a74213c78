// CSV files, which everything reads.
#ifndef ORVANEL_FILES_PLANES_CSV_H
#define ORVANEL_FILES_PLANES_CSV_H

#include <string>

#include "base/layers.h"
#include "files/planes/plane_set.h"

namespace orvanel::files {

// The set's one plane as 256 lines of 256 numbers with commas between them, each the shortest text that reads back as
// the same number, NaN for what is not one. No header: the names and units of all planes are in the summary.
std::string EncodeCsv(const PlaneSet& set);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_CSV_H
