// Decodes JPEG with libjpeg-turbo.
#ifndef ORVANEL_CLI_PICTURES_JPEG_DECODER_H
#define ORVANEL_CLI_PICTURES_JPEG_DECODER_H

#include <string>

#include "cli/pictures/decoded_picture.h"

namespace orvanel::cli {

// Both as StbHeader and StbDecode. What is cut short, damaged or in the colours of printers is not decoded.
DecodedPicture JpegHeader(const std::string& bytes);
DecodedPicture JpegDecode(const std::string& bytes);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_PICTURES_JPEG_DECODER_H
