// Converts channels of light to pixels.
#ifndef ORVANEL_FILES_PICTURES_PICTURE_PIXELS_H
#define ORVANEL_FILES_PICTURES_PICTURE_PIXELS_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "files/pictures/png.h"
#include "targets/plane.h"

namespace orvanel::files {

// One channel or three as 8-bit colours, for drawing.
//   linear  whether the pixels are linear light instead of sRGB values
ColourPicture PicturePixels(const std::vector<Plane>& channels, bool linear);

// A PNG file with 8 or 16 bits: grey for one channel, colour for three; marked as sRGB unless linear.
std::string EncodePicture(const std::vector<Plane>& channels, bool linear, int bits);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_PICTURE_PIXELS_H
