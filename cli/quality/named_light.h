// Parses the names of lights: a wavelength, white, display, or a file of a spectrum.
#ifndef ORVANEL_CLI_QUALITY_NAMED_LIGHT_H
#define ORVANEL_CLI_QUALITY_NAMED_LIGHT_H

#include <string>

#include "base/layers.h"
#include "models/physical_settings.h"

namespace orvanel::cli {

// Whether this is no wavelength and no word, and so the name of a file.
bool NamesSpectrumFile(const std::string& light);

// Sets the light, and its display where it is that of one. Throws Error for wavelengths out of range, and ErrorAt for
// rows of the file that are wrong.
void SetLight(PhysicalSettings& settings, const std::string& light);

// The light becomes the white of the display.
void SetDisplay(PhysicalSettings& settings, physical::Display display);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_QUALITY_NAMED_LIGHT_H
