// Reads the spectrum of a light, or of the primaries of a display: a CSV table of wavelengths and weights or powers.
#ifndef ORVANEL_FILES_TABLES_SPECTRUM_H
#define ORVANEL_FILES_TABLES_SPECTRUM_H

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "base/layers.h"
#include "base/units.h"

namespace orvanel::files {

// Two columns: wavelengths in nm and weights, at least 0. A first row that is no number is a header and is skipped. At
// most 1000 rows. Throws ErrorAt and Error.
std::vector<std::pair<Nanometres, double>> ReadSpectrum(const std::string& file);

// The power of red, green and blue at one wavelength.
struct PrimariesRow {
  Nanometres wavelength;
  std::array<double, 3> power{};
};

// Four columns: increasing wavelengths in nm, and the powers of the three primaries. The other rules are those of
// ReadSpectrum.
std::vector<PrimariesRow> ReadPrimaries(const std::string& file);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_TABLES_SPECTRUM_H
