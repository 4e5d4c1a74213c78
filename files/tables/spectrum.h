// Reads the spectrum of a light: a CSV table of wavelengths and weights.
#ifndef ORVANEL_FILES_TABLES_SPECTRUM_H
#define ORVANEL_FILES_TABLES_SPECTRUM_H

#include <string>
#include <utility>
#include <vector>

#include "base/layers.h"
#include "base/units.h"

namespace orvanel::files {

// Two columns: wavelengths in nm and weights, at least 0. A first row that is no number is a header and is skipped. At
// most 1000 rows. Throws ErrorAt and Error.
std::vector<std::pair<Nanometres, double>> ReadSpectrum(const std::string& file);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_TABLES_SPECTRUM_H
