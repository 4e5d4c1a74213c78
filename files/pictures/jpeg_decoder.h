// Decodes JPEG with libjpeg-turbo.
#ifndef ORVANEL_FILES_PICTURES_JPEG_DECODER_H
#define ORVANEL_FILES_PICTURES_JPEG_DECODER_H

#include <string>

#include "base/layers.h"
#include "targets/decoded_picture.h"

namespace orvanel::files {

// Both as StbHeader and StbDecode. What is cut short, damaged or in the colours of printers is not decoded.
DecodedPicture JpegHeader(const std::string& bytes);
DecodedPicture JpegDecode(const std::string& bytes);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_JPEG_DECODER_H
