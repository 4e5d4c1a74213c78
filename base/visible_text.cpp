// Escapes control characters, and others that are not shown.
#include "base/visible_text.h"

#include "base/utf8.h"

namespace orvanel {
namespace {

bool IsControl(char32_t c) {
  const bool isC0 = c < 0x20 || c == 0x7f, isC1 = c >= 0x80 && c <= 0x9f;
  const bool turns =
      c == 0x61c || c == 0x200e || c == 0x200f || (c >= 0x202a && c <= 0x202e) || (c >= 0x2066 && c <= 0x2069);
  const bool separates = c == 0x2028 || c == 0x2029;
  return isC0 || isC1 || turns || separates;
}

std::string EscapedPoint(char32_t point) {
  const auto high = static_cast<unsigned>(point >> 8U), low = static_cast<unsigned>(point & 0xffU);
  return "\\u" + EscapedByte(static_cast<char>(high)).substr(2) + EscapedByte(static_cast<char>(low)).substr(2);
}

std::string Visible(std::string_view text, bool keepLineFeeds) {
  std::string visible;
  while (!text.empty()) {
    const Character first = FirstCharacter(text);
    if (first.bytes == 0 || (first.bytes == 1 && IsControl(first.point) && !(keepLineFeeds && first.point == '\n'))) {
      visible += EscapedByte(text[0]);
    } else if (first.bytes == 1 || !IsControl(first.point)) {
      visible += text.substr(0, first.bytes);
    } else {
      visible += EscapedPoint(first.point);
    }
    text.remove_prefix(first.bytes == 0 ? 1 : first.bytes);
  }
  return visible;
}

}  // namespace

std::string VisibleText(std::string_view text) { return Visible(text, false); }

std::string VisibleLines(std::string_view text) { return Visible(text, true); }

}  // namespace orvanel
