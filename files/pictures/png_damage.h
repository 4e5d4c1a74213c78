// Checks whether a PNG file is complete, undamaged and as large as its header says; stb_image does not.
#ifndef ORVANEL_FILES_PICTURES_PNG_DAMAGE_H
#define ORVANEL_FILES_PICTURES_PNG_DAMAGE_H

#include <string_view>

#include "base/layers.h"

namespace orvanel::files {

// The damage, such as "is cut short", found by the chunks and their checksums; empty for an intact file.
std::string_view DamageOfPng(std::string_view bytes);

// Whether a picture has more data than its header allows, as a decompression bomb has. For an intact file.
bool PngHoldsTooMuch(std::string_view bytes);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_PNG_DAMAGE_H
