// Decodes the bitmap format of the built-in Siemens star (sector star).
#ifndef ORVANEL_TARGETS_BITMAP_H
#define ORVANEL_TARGETS_BITMAP_H

#include "base/layers.h"

namespace orvanel::targets {

constexpr double kByteToUnit = 0.00392156862745098;  // 1/255; 255 times it is exactly 1.0

// Decodes a device-independent bitmap of 256 x 256 pixels, 8 bits each, bottom row first.
//   pattern  256 x 256 doubles, row-major, top row first: the blue channel, 0 to 1
void DecodeBitmap(const unsigned char* bitmap, double* pattern);

}  // namespace orvanel::targets

#endif  // ORVANEL_TARGETS_BITMAP_H
