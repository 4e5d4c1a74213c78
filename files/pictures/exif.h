// Reads a JPEG file's orientation from its Exif data.
#ifndef ORVANEL_FILES_PICTURES_EXIF_H
#define ORVANEL_FILES_PICTURES_EXIF_H

#include <string_view>

#include "base/layers.h"

namespace orvanel::files {

// Exif's values 1 to 8; 1, upright, if the file does not specify one.
int OrientationOfJpeg(std::string_view bytes);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_EXIF_H
