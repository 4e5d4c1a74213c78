// The built-in sector star.
#ifndef ORVANEL_INTERFACE_PATTERN_ASSET_H
#define ORVANEL_INTERFACE_PATTERN_ASSET_H

namespace orvanel {

// The star as 256 x 256 samples, top row first: 0.0 for black, 1.0 for white.
void LoadPatternAsset(double* pattern);

#ifdef _WIN32
// The two ways to the star in the library's resources, which give the same samples: as Windows renders it for the
// screen, which is false where a pixel of the screen has not 32 bits; and without a screen.
bool LoadRenderedPattern(double* pattern);
void LoadPatternResource(double* pattern);
#endif

}  // namespace orvanel

#endif  // ORVANEL_INTERFACE_PATTERN_ASSET_H
