// Decodes TIFF with libtiff.
#ifndef ORVANEL_FILES_PICTURES_TIFF_DECODER_H
#define ORVANEL_FILES_PICTURES_TIFF_DECODER_H

#include <string>

#include "base/layers.h"
#include "targets/decoded_picture.h"

namespace orvanel::files {

// Behave as StbHeader and StbDecode. They decode samples of up to 8 bits, and 16-bit samples in interleaved rows from
// the top. They do not decode opacity, other 16-bit samples and floating-point samples.
DecodedPicture TiffHeader(const std::string& bytes);
DecodedPicture TiffDecode(const std::string& bytes);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_TIFF_DECODER_H
