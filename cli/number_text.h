// Numbers as text and back, in the same way whatever the locale.
#ifndef ORVANEL_CLI_NUMBER_TEXT_H
#define ORVANEL_CLI_NUMBER_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace orvanel::cli {

// At most `digits` significant digits, without trailing zeros; below 1e9 all digits before the point, so that 99.6
// with two of them is 100 and no power of ten.
std::string Text(double number, int digits);

// With this many digits behind the point.
std::string FixedText(double number, int decimals);

// The shortest text that reads back as the same number.
std::string ShortestText(double number);

// The number that a text holds, and nothing else but blanks around it. Throws Error with the remedy; a decimal comma, a
// number that is not finite and an empty text are refused.
double ParseNumber(std::string_view text);

// A whole number in decimal digits, from `least` to `most`. Throws Error.
std::size_t ParseCount(std::string_view text, std::size_t least, std::size_t most);

// A piece of the user's text in single quotes for a message: control characters made visible, and no more than fits a
// line.
std::string Quoted(std::string_view text);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_NUMBER_TEXT_H
