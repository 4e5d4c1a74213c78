// Defines the constants that every step shares. Includes nothing, so that the kernels can use it too.
#ifndef ORVANEL_CONSTANTS_H
#define ORVANEL_CONSTANTS_H

namespace orvanel {

constexpr int kCoefficients = 28;             // Zernike terms of radial orders 0 to 6
constexpr double kFocalLength = 17.0;         // of the reduced eye, mm
constexpr double kWavefrontOutside = 1000.0;  // mm; marks wavefront samples outside the pupil
constexpr double kLargestInside = 999.0;      // mm; a PSF treats higher samples as outside the pupil

// contract: 587.56 nm in millimetres, the library's one wavelength; and the next double, that of the searches and of
// white light.
constexpr double kWavelength = 0x1.340cf7e020e77p-11;
constexpr double kSearchWavelength = 0x1.340cf7e020e78p-11;

// contract: the 2 pi that converts a wavefront to phases has fewer digits than a double holds.
constexpr double kShortTwoPi = 6.28318530717958;

}  // namespace orvanel

#endif  // ORVANEL_CONSTANTS_H
