// The built-in sector star.
#ifndef ORVANEL_INTERFACE_PATTERN_ASSET_H
#define ORVANEL_INTERFACE_PATTERN_ASSET_H

namespace orvanel {

// Decodes the embedded bitmap into 256 x 256 samples, top row first: 0.0 for black, 1.0 for white.
void LoadPatternAsset(double* pattern);

}  // namespace orvanel

#endif  // ORVANEL_INTERFACE_PATTERN_ASSET_H
