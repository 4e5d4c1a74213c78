// Limits the wavelengths of light: within them, the chromatic aberration of the eye is taken as valid.
#ifndef ORVANEL_BASE_WAVELENGTH_RANGE_H
#define ORVANEL_BASE_WAVELENGTH_RANGE_H

namespace orvanel {

constexpr double kShortestNm = 300.0;
constexpr double kLongestNm = 1200.0;

}  // namespace orvanel

#endif  // ORVANEL_BASE_WAVELENGTH_RANGE_H
