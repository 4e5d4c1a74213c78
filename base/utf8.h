// Decodes UTF-8 strictly: without overlong forms, surrogates and numbers above 10ffff.
#ifndef ORVANEL_BASE_UTF8_H
#define ORVANEL_BASE_UTF8_H

#include <cstddef>
#include <string>
#include <string_view>

namespace orvanel {

struct Character {
  char32_t point;
  std::size_t bytes;  // 0: the text does not begin with a character
};

// The first character of a text that is not empty.
Character FirstCharacter(std::string_view text);

bool IsUtf8(std::string_view text);

// A byte as it is shown: \xff.
std::string EscapedByte(char byte);

// The text, with bytes that are no UTF-8 as \xff.
std::string Utf8Of(std::string_view text);

}  // namespace orvanel

#endif  // ORVANEL_BASE_UTF8_H
