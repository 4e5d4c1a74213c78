// Tells whether a PNG file is whole, undamaged and as large as it says, which the decoder does not always do.
#ifndef ORVANEL_FILES_PICTURES_PNG_DAMAGE_H
#define ORVANEL_FILES_PICTURES_PNG_DAMAGE_H

#include <string_view>

#include "base/layers.h"

namespace orvanel::files {

// What is wrong, such as "is cut short", from the chunks and their check sums; empty where the file is well.
std::string_view DamageOfPng(std::string_view bytes);

// Whether the data of a picture are more than its header allows, as those of a file that is made to fill the memory.
// For a file that is well.
bool PngHoldsTooMuch(std::string_view bytes);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PICTURES_PNG_DAMAGE_H
