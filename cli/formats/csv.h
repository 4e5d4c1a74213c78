// CSV files, which everything reads.
#ifndef ORVANEL_CLI_FORMATS_CSV_H
#define ORVANEL_CLI_FORMATS_CSV_H

#include <string>

#include "cli/formats/plane_set.h"

namespace orvanel::cli {

// The set's one plane as 256 lines of 256 numbers with commas between them, each the shortest text that reads back as
// the same number, NaN for what is not one. No header: the names and units of all planes are in the summary.
std::string EncodeCsv(const PlaneSet& set);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_FORMATS_CSV_H
