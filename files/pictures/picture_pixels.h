// Channels of light as the pixels of a picture.
#ifndef ORVANEL_FILES_PICTURES_PICTURE_PIXELS_H
#define ORVANEL_FILES_PICTURES_PICTURE_PIXELS_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "files/pictures/png.h"
#include "targets/plane.h"

namespace orvanel::files {

// One channel or three, in 8 bits and in colour, to be drawn.
//   linear  whether the pixels are to be the light itself, not its sRGB values
ColourPicture PicturePixels(const std::vector<Plane>& channels, bool linear);

// A PNG file of 8 or 16 bits: grey for one channel, in colour for three; marked as sRGB unless linear.
std::string EncodePicture(const std::vector<Plane>& channels, bool linear, int bits);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_PICTURE_PIXELS_H
