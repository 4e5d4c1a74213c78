// The light of a display: three primaries, each with its spectrum.
#ifndef ORVANEL_MODELS_PHYSICAL_DISPLAY_H
#define ORVANEL_MODELS_PHYSICAL_DISPLAY_H

#include <array>
#include <vector>

#include "models/physical/light.h"

namespace orvanel::physical {

constexpr int kPrimaries = 3;  // red, green and blue

// The weights are power times photopic sensitivity, so that the sum of a primary is its luminance at full drive.
struct Display {
  std::array<Light, kPrimaries> primaries;
};

// Primaries chosen here, of no measured display: Gaussian spectra of power, with chromaticities within 0.025 of those
// of sRGB and the luminances of sRGB. Lines are 10 nm apart.
//   red    peak 611 nm, full width at half maximum 28 nm
//   green  peak 539 nm, 78 nm
//   blue   peak 459 nm, 50 nm
Display BuiltInDisplay();

// One measured wavelength: the power of each primary per nm, in any unit that all rows share.
struct PrimaryPowers {
  double wavelengthNm = 0.0;
  std::array<double, kPrimaries> power{};
};

// The display of a measured spectrum, linear between rows. Its light between 400 and 700 nm is collected in lines 5 nm
// apart; each keeps the luminance and the mean wavelength of its light. A primary without light there has no lines.
//   rows  at increasing wavelengths
Display DisplayOf(const std::vector<PrimaryPowers>& rows);

// All primaries at full drive: the white of the display.
Light WhiteOf(const Display& display);

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_DISPLAY_H
