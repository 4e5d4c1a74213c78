// Numbers through std::to_chars and std::from_chars.
#include "base/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "base/error.h"
#include "base/visible_text.h"

namespace orvanel {

std::string NumberText(double number, int digits) {
  char text[64];
  const auto written = [&](std::chars_format format, int precision) {
    return std::string(text, std::to_chars(text, text + sizeof text, number, format, precision).ptr);
  };
  std::string general = written(std::chars_format::general, digits);
  constexpr double kLargestWithoutExponent = 1e9;
  // Where the digits asked for end before the point, those up to it are written all the same.
  if (general.find("e+") == std::string::npos || std::abs(number) >= kLargestWithoutExponent) return general;
  return written(std::chars_format::fixed, 0);
}

std::string FixedText(double number, int decimals) {
  char text[400];  // the largest double has 309 digits before the point
  return {text, std::to_chars(text, text + sizeof text, number, std::chars_format::fixed, decimals).ptr};
}

std::string ShortestText(double number) {
  char text[64];
  return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

double ParseNumber(std::string_view text, char point) {
  std::string_view digits = Trimmed(text);
  if (digits.empty()) throw Error("is empty; write a number, 0 for a term that is absent");
  std::string pointed;
  if (point == ',') {
    if (digits.find('.') != std::string_view::npos) {
      throw Error(Quoted(digits) + " has a point among numbers with decimal commas; write it as 0,12");
    }
    pointed = digits;
    std::replace(pointed.begin(), pointed.end(), ',', '.');
    digits = pointed;
  }
  if (digits.size() > 1 && digits[0] == '+' && digits[1] != '-' && digits[1] != '+') digits.remove_prefix(1);
  double number = 0.0;
  const auto [rest, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (rest != digits.data() + digits.size() || error == std::errc::invalid_argument) {
    if (HasDecimalComma(digits)) throw Error(Quoted(text) + " has a decimal comma; write it with a point, as 0.12");
    throw Error(Quoted(text) + " is not a number; write it as " + (point == ',' ? "0,12 or 1,2e-1" : "0.12 or 1.2e-1"));
  }
  if (error == std::errc::result_out_of_range)
    throw Error(Quoted(text) + " is too large or too small; check its exponent");
  if (!std::isfinite(number)) throw Error(Quoted(text) + " is not finite; give a number");
  return number;
}

std::size_t ParseCount(std::string_view text, std::size_t least, std::size_t most) {
  std::size_t count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc() || end != text.data() + text.size() || count < least || count > most) {
    throw Error(Quoted(text) + " is not a whole number from " + std::to_string(least) + " to " + std::to_string(most));
  }
  return count;
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

std::string Folded(std::string_view text) {
  std::string folded(Trimmed(text));
  for (char& c : folded) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return folded;
}

bool HasDecimalComma(std::string_view text) {
  return text.find(',') != std::string_view::npos &&
         text.find_first_not_of("+-0123456789.,eE \t") == std::string_view::npos;
}

std::string Shortened(std::string_view text, std::size_t longest) {
  std::size_t end = std::min(text.size(), longest);
  // Not within a character of several bytes.
  while (end > 0 && end < text.size() && (static_cast<unsigned char>(text[end]) & 0xc0U) == 0x80U) --end;
  return VisibleText(text.substr(0, end)) + (end < text.size() ? "..." : "");
}

std::string Quoted(std::string_view text) {
  constexpr std::size_t kLongest = 60;
  std::string quoted(1, '\'');
  return quoted.append(Shortened(text, kLongest)).append(1, '\'');
}

}  // namespace orvanel
