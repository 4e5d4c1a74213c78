// Whether the bytes of a PNG file are all there and undamaged, which the decoder does not always tell.
#ifndef ORVANEL_CLI_PICTURES_PNG_DAMAGE_H
#define ORVANEL_CLI_PICTURES_PNG_DAMAGE_H

#include <string_view>

namespace orvanel::cli {

// What is wrong, such as "is cut short", from the chunks and their check sums; empty where the file is well.
std::string_view DamageOfPng(std::string_view bytes);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_PICTURES_PNG_DAMAGE_H
