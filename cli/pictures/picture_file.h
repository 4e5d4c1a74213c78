// The user's own picture: a PNG file, or JPEG or TIFF where the program is built with their libraries.
#ifndef ORVANEL_CLI_PICTURES_PICTURE_FILE_H
#define ORVANEL_CLI_PICTURES_PICTURE_FILE_H

#include <string>

#include "cli/pictures/decoded_picture.h"

namespace orvanel::cli {

// Reads a picture, upright as the camera says. Throws Error with file, reason and remedy where there is none, where it
// is damaged or cut short, and where it is so large that decoding it could exhaust the memory.
DecodedPicture ReadPictureFile(const std::string& file);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_PICTURES_PICTURE_FILE_H
