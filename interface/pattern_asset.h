// Declares the built-in sector star (Siemens star).
#ifndef ORVANEL_INTERFACE_PATTERN_ASSET_H
#define ORVANEL_INTERFACE_PATTERN_ASSET_H

namespace orvanel {

// The star as 256 x 256 samples, top row first: 0.0 for black, 1.0 for white.
void LoadPatternAsset(double* pattern);

#ifdef _WIN32
// Two ways to read the star from the library's resources, with the same samples: as Windows renders it for the screen,
// and without a screen. The first returns false if a pixel of the screen does not have 32 bits.
bool LoadRenderedPattern(double* pattern);
void LoadPatternResource(double* pattern);
#endif

}  // namespace orvanel

#endif  // ORVANEL_INTERFACE_PATTERN_ASSET_H
