// Decodes UTF-8 strictly and escapes control and other special characters.
#include "base/visible_text.h"

#include <cstddef>

namespace orvanel {
namespace {

struct Character {
  char32_t point;
  std::size_t bytes;  // 0: the text does not begin with a character
};

Character FirstOf(std::string_view text) {
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

bool IsControl(char32_t c) {
  const bool isC0 = c < 0x20 || c == 0x7f, isC1 = c >= 0x80 && c <= 0x9f;
  const bool turns =
      c == 0x61c || c == 0x200e || c == 0x200f || (c >= 0x202a && c <= 0x202e) || (c >= 0x2066 && c <= 0x2069);
  const bool separates = c == 0x2028 || c == 0x2029;
  return isC0 || isC1 || turns || separates;
}

std::string Escape(char letter, unsigned value, int digits) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text = {'\\', letter};
  while (digits > 0) text += kDigits[value >> (4U * static_cast<unsigned>(--digits)) & 0xfU];
  return text;
}

std::string Visible(std::string_view text, bool keepLineFeeds) {
  std::string visible;
  while (!text.empty()) {
    const Character first = FirstOf(text);
    if (first.bytes == 0) {
      visible += Escape('x', static_cast<unsigned char>(text[0]), 2);
    } else if (!IsControl(first.point) || (keepLineFeeds && first.point == '\n')) {
      visible += text.substr(0, first.bytes);
    } else if (first.bytes == 1) {
      visible += Escape('x', first.point, 2);
    } else {
      visible += Escape('u', first.point, 4);
    }
    text.remove_prefix(first.bytes == 0 ? 1 : first.bytes);
  }
  return visible;
}

}  // namespace

std::string VisibleText(std::string_view text) { return Visible(text, false); }

std::string VisibleLines(std::string_view text) { return Visible(text, true); }

}  // namespace orvanel
