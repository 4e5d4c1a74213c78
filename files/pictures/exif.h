// How a camera was held, from the Exif data of a JPEG file.
#ifndef ORVANEL_FILES_PICTURES_EXIF_H
#define ORVANEL_FILES_PICTURES_EXIF_H

#include <string_view>

#include "base/layers.h"

namespace orvanel::files {

// 1 to 8 as Exif counts; 1, upright, where the file does not say.
int OrientationOfJpeg(std::string_view bytes);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_EXIF_H
