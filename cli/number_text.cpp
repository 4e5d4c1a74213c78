// Numbers through std::to_chars.
#include "cli/number_text.h"

#include <charconv>

namespace orvanel::cli {

std::string Text(double number, int digits) {
  char text[64];
  return {text, std::to_chars(text, text + sizeof text, number, std::chars_format::general, digits).ptr};
}

std::string ShortestText(double number) {
  char text[64];
  return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

}  // namespace orvanel::cli
