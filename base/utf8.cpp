// Decodes UTF-8, and escapes bytes that are none.
#include "base/utf8.h"

namespace orvanel {

Character FirstCharacter(std::string_view text) {
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80U) return {lead, 1};
  const std::size_t bytes = lead >= 0xf0U ? 4 : lead >= 0xe0U ? 3 : 2;
  if (lead < 0xc2U || lead > 0xf4U || text.size() < bytes) return {0, 0};
  char32_t point = lead & (0x7fU >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) {
    if ((byte(i) & 0xc0U) != 0x80U) return {0, 0};
    point = point << 6U | (byte(i) & 0x3fU);
  }
  constexpr char32_t kMin[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = point >= 0xd800 && point <= 0xdfff;
  if (point < kMin[bytes] || point > 0x10ffff || isSurrogate) return {0, 0};
  return {point, bytes};
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t bytes = FirstCharacter(text).bytes;
    if (bytes == 0) return false;
    text.remove_prefix(bytes);
  }
  return true;
}

std::string EscapedByte(char byte) {
  constexpr char kDigits[] = "0123456789abcdef";
  const auto value = static_cast<unsigned char>(byte);
  return {'\\', 'x', kDigits[value >> 4U], kDigits[value & 0xfU]};
}

std::string Utf8Of(std::string_view text) {
  std::string clean;
  while (!text.empty()) {
    const std::size_t bytes = FirstCharacter(text).bytes;
    if (bytes == 0) {
      clean += EscapedByte(text[0]);
      text.remove_prefix(1);
    } else {
      clean += text.substr(0, bytes);
      text.remove_prefix(bytes);
    }
  }
  return clean;
}

}  // namespace orvanel
