// Decodes PNG with stb_image, whose other formats are not safe against damaged files.
#ifndef ORVANEL_FILES_PICTURES_STB_DECODER_H
#define ORVANEL_FILES_PICTURES_STB_DECODER_H

#include <string>

#include "base/layers.h"
#include "targets/decoded_picture.h"

namespace orvanel::files {

// Width, height, channels and bits without the samples; a width of 0 if this is not a picture.
DecodedPicture StbHeader(const std::string& bytes);

// The whole picture; a width of 0 if it cannot be decoded.
DecodedPicture StbDecode(const std::string& bytes);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_STB_DECODER_H
