// Numbers as text and back, in the same way whatever the locale.
#ifndef ORVANEL_BASE_NUMBER_TEXT_H
#define ORVANEL_BASE_NUMBER_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace orvanel {

// At most `digits` significant digits, without trailing zeros; below 1e9 all digits before the point, so that 99.6
// with two of them is 100 and no power of ten.
std::string NumberText(double number, int digits);

// With this many digits behind the point.
std::string FixedText(double number, int decimals);

// The shortest text that reads back as the same number.
std::string ShortestText(double number);

// Parses a text that holds one number; blanks around it are allowed. Throws Error, which says how to fix the text, for
// an empty text, a number that is not finite, and a decimal point or comma other than `point`.
double ParseNumber(std::string_view text, char point = '.');

// Whether a text would be a number without its commas: "0,12", "1.234,5".
bool HasDecimalComma(std::string_view text);

// The text without blanks and tabulators around it.
std::string_view Trimmed(std::string_view text);

// The same in lower case, as far as letters of English go: for words that may be written in either case.
std::string Folded(std::string_view text);

// The beginning of a text, of at most so many bytes of whole characters, with control characters made visible; "..."
// stands for the rest.
std::string Shortened(std::string_view text, std::size_t longest);

// A whole number in decimal digits, from `least` to `most`. Throws Error.
std::size_t ParseCount(std::string_view text, std::size_t least, std::size_t most);

// A piece of the user's text in single quotes for a message: control characters made visible, and no more than fits a
// line.
std::string Quoted(std::string_view text);

}  // namespace orvanel

#endif  // ORVANEL_BASE_NUMBER_TEXT_H
