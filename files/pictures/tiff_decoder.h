// Decodes TIFF with libtiff.
#ifndef ORVANEL_FILES_PICTURES_TIFF_DECODER_H
#define ORVANEL_FILES_PICTURES_TIFF_DECODER_H

#include <string>

#include "base/layers.h"
#include "targets/decoded_picture.h"

namespace orvanel::files {

// Both as StbHeader and StbDecode. Samples of 16 bits are decoded where they stand pixel by pixel in rows from the top,
// and everything of up to 8 bits; opacity, other samples of 16 bits and numbers that are not whole are not.
DecodedPicture TiffHeader(const std::string& bytes);
DecodedPicture TiffDecode(const std::string& bytes);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_TIFF_DECODER_H
