// The chunks of PNG files. Source: Portable Network Graphics, 2nd edition.
#include "cli/pictures/png_damage.h"

#include <zlib.h>

#include <cstdint>

namespace orvanel::cli {
namespace {

constexpr std::string_view kCutShort = "is cut short";
constexpr std::string_view kDamaged = "is damaged";

// The number in four bytes from `position`, which are there.
std::uint32_t Number(std::string_view bytes, std::size_t position) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i) number = number << 8 | static_cast<std::uint8_t>(bytes[position + i]);
  return number;
}

}  // namespace

std::string_view DamageOfPng(std::string_view bytes) {
  constexpr std::size_t kSignature = 8, kFrame = 12;  // length, letters and sum around a chunk's data
  std::size_t position = kSignature;
  while (position + kFrame <= bytes.size()) {
    const std::size_t length = Number(bytes, position);
    if (length > bytes.size() - position - kFrame) return kCutShort;
    const std::string_view summed = bytes.substr(position + 4, 4 + length);
    const uLong sum = crc32_z(0, reinterpret_cast<const Bytef*>(summed.data()), summed.size());
    if (sum != Number(bytes, position + 8 + length)) return kDamaged;
    if (summed == "IEND") return {};
    position += kFrame + length;
  }
  return kCutShort;
}

}  // namespace orvanel::cli
