// Reads the user's picture: PNG, or JPEG or TIFF if the program is built with their libraries.
#ifndef ORVANEL_FILES_PICTURES_PICTURE_FILE_H
#define ORVANEL_FILES_PICTURES_PICTURE_FILE_H

#include <string>

#include "base/layers.h"
#include "targets/decoded_picture.h"
#include "targets/object_picture.h"

namespace orvanel::files {

// Reads a picture and turns it upright. Throws Error with file, reason and fix if there is no picture, if it is damaged
// or truncated, or if it is so large that decoding could exhaust the memory.
DecodedPicture ReadPictureFile(const std::string& file);

// Resamples the picture of a request to the field of the simulation. Throws Error if the file is not a picture.
ObjectPicture ReadObjectPicture(const PictureRequest& request);

// The same picture with all its pixels. Refuses pictures of more than kLongestWholeSide pixels a side.
constexpr int kLongestWholeSide = 4096;
ObjectPicture ReadWholePicture(const PictureRequest& request);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_PICTURE_FILE_H
