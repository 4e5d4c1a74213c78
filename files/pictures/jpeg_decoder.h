// Decodes JPEG with libjpeg-turbo.
#ifndef ORVANEL_FILES_PICTURES_JPEG_DECODER_H
#define ORVANEL_FILES_PICTURES_JPEG_DECODER_H

#include <string>

#include "base/layers.h"
#include "targets/decoded_picture.h"

namespace orvanel::files {

// Behave as StbHeader and StbDecode. Truncated, damaged and CMYK files are not decoded.
DecodedPicture JpegHeader(const std::string& bytes);
DecodedPicture JpegDecode(const std::string& bytes);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_JPEG_DECODER_H
