// The user's own picture: a PNG file, or JPEG or TIFF where the program is built with their libraries.
#ifndef ORVANEL_FILES_PICTURES_PICTURE_FILE_H
#define ORVANEL_FILES_PICTURES_PICTURE_FILE_H

#include <string>

#include "base/layers.h"
#include "targets/decoded_picture.h"
#include "targets/object_picture.h"

namespace orvanel::files {

// Reads a picture, upright as the camera says. Throws Error with file, reason and remedy where there is none, where it
// is damaged or cut short, and where it is so large that decoding it could exhaust the memory.
DecodedPicture ReadPictureFile(const std::string& file);

// The picture of a request brought to the field that an eye is shown. Throws Error where the file is not a picture.
ObjectPicture ReadObjectPicture(const PictureRequest& request);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_PICTURE_FILE_H
