// Numbers as text, in the same way whatever the locale.
#ifndef ORVANEL_CLI_NUMBER_TEXT_H
#define ORVANEL_CLI_NUMBER_TEXT_H

#include <string>

namespace orvanel::cli {

// At most `digits` significant digits, without trailing zeros.
std::string Text(double number, int digits);

// The shortest text that reads back as the same number.
std::string ShortestText(double number);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_NUMBER_TEXT_H
